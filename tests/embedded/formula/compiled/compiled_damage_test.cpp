// Damaged formulas: nothing is read outside the bytes, and whatever source comes out is that of the bytes.
#include <gtest/gtest.h>

#include <random>

#include "embedded/formula/compiled/compiled_formula.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/compiled/support/checked_reading.h"
#include "embedded/formula/compiled/vectors.h"
#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {

// In memory of exactly that size, so that a byte beyond it is noticed.
CompiledReading readExactly(QByteArrayView bytes) {
  const std::vector<char> exact(bytes.begin(), bytes.end());
  return readCompiled(QByteArrayView(exact.data(), qsizetype(exact.size())), TestEnvironment());
}

void expectHonest(const QByteArray& bytes) {
  const CompiledReading reading = readExactly(bytes);
  const QString complaint = complaintOf(reading, TestEnvironment());
  ASSERT_TRUE(complaint.isEmpty()) << complaint.toStdString() << "\n"
                                   << reading.source.toStdString() << "\n"
                                   << bytes.toHex().toStdString();
}

QByteArray resized(QByteArray bytes) {
  bytes[0] = char(bytes.size() & 0xFF);
  bytes[1] = char(bytes.size() >> 8);
  return bytes;
}

TEST(DamagedFormulas, AreNotReadWhenTheyAreCut) {
  for (const CompiledVector& vector : compiledVectors()) {
    for (qsizetype size = 0; size < vector.bytes.size(); ++size) {
      const CompiledReading cut = readExactly(vector.bytes.first(size));
      ASSERT_EQ(cut.state, CompiledReading::State::Unreadable) << vector.line << " at " << size;
      ASSERT_TRUE(cut.source.isEmpty()) << vector.line << " at " << size;
      // With a size word that says so, only whole statements are left.
      if (size >= 2) expectHonest(resized(vector.bytes.first(size)));
    }
  }
}

TEST(DamagedFormulas, GiveNoSourceThatIsNotThere) {
  for (const CompiledVector& vector : compiledVectors()) {
    for (qsizetype at = 0; at < vector.bytes.size(); ++at) {
      for (const int flip : {0xFF, 0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80}) {
        QByteArray damaged = vector.bytes;
        damaged[at] = char(quint8(damaged[at]) ^ flip);
        expectHonest(damaged);
        if (HasFatalFailure()) return;
      }
    }
  }
}

TEST(DamagedFormulas, MayBeAnything) {
  std::mt19937 random(5);
  for (int i = 0; i < 20'000; ++i) {
    QByteArray bytes(qsizetype(2 + random() % 60), '\0');
    for (char& byte : bytes) byte = char(random() % (random() % 2 ? 256 : 12));
    expectHonest(resized(bytes));
    if (HasFatalFailure()) return;
  }
}

}  // namespace
}  // namespace lens::formula
