// Blocks are unpacked as real files have them; what is wrong in them ends the work with its reason.
#include "embedded/nsf/cx_stream.h"

#include <random>

#include "embedded/nsf/nsf_test.h"

namespace lens::made {
namespace {

// Bits from the lowest one of each byte on.
class Bits {
 public:
  Bits& put(quint32 number, int count) {
    for (int i = 0; i < count; ++i, ++used_) {
      if (used_ % 8 == 0) bytes_.append('\0');
      bytes_.back() = char(bytes_.back() | (number >> i & 1) << used_ % 8);
    }
    return *this;
  }
  Bits& mode() { return put(4, 3); }
  Bits& literal(char byte) { return put(0, 1).put(quint8(byte), 8); }
  // A one behind so many zeros, then so many bits.
  Bits& run(int zeros, quint32 rest) { return put(0, zeros).put(1, 1).put(rest, zeros); }
  QByteArray bytes() const { return bytes_; }

 private:
  QByteArray bytes_;
  int used_ = 0;
};

TEST(NsfPacking, UnpacksWhatWasMadeElsewhere) {
  EXPECT_EQ(inflateCx(QByteArray::fromHex("14460c"), 2).bytes, "ab");
  const CxOutput long_ = inflateCx(QByteArray::fromHex("e4648ad10311070004f0ca002189d14a00"), 624);
  EXPECT_EQ(long_.result, CxResult::Whole);
  EXPECT_EQ(long_.bytes, "NSFNSFNSFNSFNS" + QByteArray(601, '\0') + "!NSFNS" + QByteArray(3, '\0'));
}

TEST(NsfPacking, UnpacksWhateverIsPacked) {
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    QByteArray bytes;
    const int letters = 1 + int(random() % 256), size = int(random() % 9000);
    while (bytes.size() < size) {
      if (random() % 5 == 0 && !bytes.isEmpty())
        bytes += bytes.sliced(qsizetype(random() % size_t(bytes.size()))).first(1);
      else if (random() % 40 == 0)
        bytes += bytes.last(std::min<qsizetype>(bytes.size(), qsizetype(random() % 700)));
      else
        bytes += char(random() % unsigned(letters));
    }
    for (const Packing packing : {Packing::Literals, Packing::Matches}) {
      const QByteArray packed = packedBits(bytes, packing);
      const CxOutput unpacked = inflateCx(packed, bytes.size());
      ASSERT_EQ(unpacked.result, CxResult::Whole) << round;
      ASSERT_EQ(unpacked.bytes, bytes) << round;
      EXPECT_GE(unpacked.unread, 1);
      EXPECT_LE(unpacked.unread, 4);
    }
  }
}

TEST(NsfPacking, RepeatsWhatIsJustWritten) {
  // "a", then eight more from one byte back.
  EXPECT_EQ(inflateCx(Bits().mode().literal('a').put(1, 1).run(2, 3).run(0, 0).put(1, 8).bytes(), 9).bytes,
            QByteArray(9, 'a'));
  // Two bytes from two back have no high part.
  EXPECT_EQ(inflateCx(Bits().mode().literal('a').literal('b').put(1, 1).run(0, 0).put(2, 8).bytes(), 4).bytes,
            "abab");
}

TEST(NsfPacking, FarDistancesHaveAHighPart) {
  Bits bits;
  bits.mode();
  QByteArray expected;
  for (int i = 0; i < 600; ++i) {
    bits.literal(char(i * 7));
    expected += char(i * 7);
  }
  // Three bytes from 600 back: high part 2, low part 88.
  bits.put(1, 1).run(1, 0).run(1, 1).put(88, 8);
  EXPECT_EQ(inflateCx(bits.bytes(), 603).bytes, expected + expected.first(3));
}

TEST(NsfPacking, TellsWhatIsWrong) {
  const auto resultOf = [](const Bits& bits, qsizetype wanted) {
    const CxOutput output = inflateCx(bits.bytes(), wanted);
    EXPECT_TRUE(output.result == CxResult::Whole || output.bytes.isEmpty());
    return output.result;
  };
  EXPECT_EQ(resultOf(Bits().put(3, 3).literal('a'), 1), CxResult::WrongMode);
  EXPECT_EQ(resultOf(Bits().put(0, 3).literal('a'), 1), CxResult::WrongMode);
  EXPECT_EQ(resultOf(Bits().mode().literal('a'), 5), CxResult::CutShort);
  EXPECT_EQ(inflateCx({}, 5).result, CxResult::CutShort);
  // Distance 0, a distance from before the start, more than is wanted.
  EXPECT_EQ(resultOf(Bits().mode().literal('a').put(1, 1).run(0, 0).put(0, 8), 3), CxResult::Damaged);
  EXPECT_EQ(resultOf(Bits().mode().literal('a').put(1, 1).run(0, 0).put(2, 8), 3), CxResult::Damaged);
  EXPECT_EQ(resultOf(Bits().mode().literal('a').put(1, 1).run(0, 0).put(1, 8), 2), CxResult::Damaged);
  // A run that says more than any block has.
  const CxResult run = resultOf(Bits().mode().literal('a').put(1, 1).put(0, 30).put(1, 1).put(0, 40), 100);
  EXPECT_TRUE(run == CxResult::Damaged || run == CxResult::CutShort);
  EXPECT_EQ(inflateCx(QByteArray(10, '\x04'), kMaxCxBlock + 1).result, CxResult::TooLarge);
  EXPECT_NE(inflateCx(QByteArray(10, '\x04'), -1).result, CxResult::Whole);
}

TEST(NsfPacking, NothingWantedIsWhole) {
  EXPECT_EQ(inflateCx(QByteArray::fromHex("14460c"), 0).bytes, QByteArray());
}

}  // namespace
}  // namespace lens::made
