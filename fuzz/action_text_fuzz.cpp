// Action values from the fuzzer: what is shown is legible, comes from behind the pointer byte for byte and
// is never longer than the count or than what is there.

#include "check.h"
#include "notes/note_reading.h"

namespace lens {
namespace {

bool isLegible(QChar c) {
  return (c >= u' ' && c <= u'}') || c == u'\r' || c == u'\n';
}

void checkText(QByteArrayView value, qsizetype pointer, qint16 count) {
  const QString text = actionText(value, pointer, count);
  const qsizetype behind = pointer < 0 ? 0 : qMax<qsizetype>(0, value.size() - pointer - 1);
  const qsizetype longest = qMin<qsizetype>(qMax<qint16>(0, count), behind);
  check(text.size() <= longest, "More is shown than there is.");
  for (qsizetype i = 0; i < text.size(); ++i) {
    const char byte = value[pointer + 1 + i];
    check(isLegible(text[i]), "An illegible letter is shown.");
    check(byte != 0 && (text[i] == u' ' || text[i] == QLatin1Char(byte)), "Another letter is shown.");
  }
  check(text.size() == longest || value[pointer + 1 + text.size()] == 0, "The text ends without a reason.");
}

// The first two bytes are the place of a pointer, so that any may come; then the one where agents have it.
void tryValue(QByteArrayView input) {
  const auto word = [&](qsizetype at) {
    return at + 2 <= input.size() ? qint16(quint8(input[at]) | quint8(input[at + 1]) << 8) : qint16(0);
  };
  checkText(input, word(0), word(6));
  checkText(input, 8, word(6));
  checkText(input, 8, 32767);
  checkText(input, -1, 32767);
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryValue(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}
