// Compiled formulas from the fuzzer: no byte outside is read, whatever source comes out is that of the bytes,
// and a source that is written comes back as the same formula.
#include "check.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/formula/compiled/support/checked_reading.h"
#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {

void tryBytes(QByteArrayView bytes) {
  const TestEnvironment environment;
  const CompiledReading reading = readCompiled(bytes, environment);
  const QString complaint = complaintOf(reading, environment);
  check(complaint.isEmpty(), "A reading is not honest.", QString(complaint + u'\n' + reading.source));
  readCompiled(bytes, environment, ShownSelect::Always);
  shownFormula(bytes);
  check(compiledSize(bytes) <= bytes.size(), "A formula is longer than its bytes.");
}

// With the size word that the bytes would have.
void tryResized(QByteArrayView bytes) {
  if (bytes.size() < 2 || bytes.size() > 0xFFFF) return;
  QByteArray resized = bytes.toByteArray();
  resized[0] = char(resized.size() & 0xFF);
  resized[1] = char(resized.size() >> 8);
  tryBytes(resized);
}

void trySource(const QString& source) {
  const TestEnvironment environment;
  const Written written = writeCompiled(source, environment);
  if (written.bytes.isEmpty()) return;
  const CompiledReading reading = readCompiled(written.bytes, environment);
  check(reading.state == CompiledReading::State::Source, "What was written is not read.", source);
  check(reading.sureness <= Sureness::Context, "A guessed code was written.", source);
  // Line breaks inside of texts are of one kind afterwards, and characters that no text can hold are none.
  if (source.contains(u'\r') || source.contains(QChar(0xFFFD)) || !reading.exact) return;
  check(sameTree(parse(source, environment).tree, reading.tree), "It is read as something else.", source);
  check(writeCompiled(reading.source, environment).bytes == written.bytes, "It changes each time.", source);
}

}  // namespace
}  // namespace lens::formula

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const QByteArrayView bytes(reinterpret_cast<const char*>(data), qsizetype(size));
  lens::formula::tryBytes(bytes);
  lens::formula::tryResized(bytes);
  lens::formula::trySource(QString::fromUtf8(bytes));
  return 0;
}
