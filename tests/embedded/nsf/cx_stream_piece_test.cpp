#include <gtest/gtest.h>

#include "embedded/nsf/cx_stream.h"
#include "embedded/nsf/cx_writer.h"

namespace lens {
namespace {

QByteArray inflated(const QByteArray& packed, qsizetype wanted) {
  const CxOutput output = inflateCx(packed, wanted);
  EXPECT_EQ(output.result, CxResult::Whole);
  return output.bytes;
}

TEST(CxStream, ReadsSingleBytes) {
  EXPECT_EQ(inflated(QByteArray::fromHex("14460c"), 2), "ab");
  EXPECT_EQ(CxWriter().literal('a').literal('b').bytes(), QByteArray::fromHex("14460c"));
}

TEST(CxStream, ReadsCopiesAsFoundInRealFiles) {
  const QByteArray bytes = inflated(QByteArray::fromHex("e4648ad10311070004f0ca002189d14a00"), 624);
  EXPECT_EQ(bytes, QByteArray("NSFNSFNSFNSFNS") + QByteArray(601, '\0') + "!NSFNS" + QByteArray(3, '\0'));
}

TEST(CxStream, CopiesOfTwoHaveAShortDistance) {
  const CxWriter writer = CxWriter().literal('x').literal('y').copy(2, 2);
  EXPECT_EQ(inflated(writer.bytes(), 4), "xyxy");
}

TEST(CxStream, CopiesMayRunIntoWhatTheyWriteAndReachFarBack) {
  CxWriter writer;
  QByteArray wanted;
  for (int i = 0; i < 700; ++i) {
    writer.literal(char(i * 7));
    wanted.append(char(i * 7));
  }
  writer.copy(40, 700).copy(1000, 1).copy(3, 513);
  wanted += wanted.first(40);
  wanted += QByteArray(1000, wanted.back());
  wanted += wanted.mid(wanted.size() - 513, 3);
  EXPECT_EQ(inflated(writer.bytes(), wanted.size()), wanted);
}

TEST(CxStream, NothingIsWantedAndNothingComes) {
  EXPECT_EQ(inflated(CxWriter().bytes(), 0), QByteArray());
}

TEST(CxStream, TellsWhyItCannotBeRead) {
  EXPECT_EQ(inflateCx({}, 1).result, CxResult::CutShort);
  EXPECT_EQ(inflateCx(QByteArray::fromHex("13460c"), 2).result, CxResult::WrongMode);
  EXPECT_EQ(inflateCx(QByteArray::fromHex("14460c"), 3).result, CxResult::CutShort);
  EXPECT_EQ(inflateCx(QByteArray::fromHex("14460c"), kMaxCxBlock + 1).result, CxResult::TooLarge);
  EXPECT_EQ(inflateCx(CxWriter().literal('a').copy(3, 2).bytes(), 4).result, CxResult::Damaged);  // too far
  EXPECT_EQ(inflateCx(CxWriter().literal('a').copy(3, 0).bytes(), 4).result, CxResult::Damaged);
  EXPECT_EQ(inflateCx(CxWriter().literal('a').copy(4, 1).bytes(), 4).result, CxResult::Damaged);  // too long
  // A run of zeros that no block can be long enough for.
  EXPECT_EQ(inflateCx(CxWriter().literal('a').bits(1, 1).bits(0, 31).bits(0xFFFFFFFF, 32).bytes(), 9).result,
            CxResult::CutShort);
}

TEST(CxStream, GivesNothingOfADamagedBlock) {
  EXPECT_TRUE(inflateCx(CxWriter().literal('a').copy(3, 2).bytes(), 4).bytes.isEmpty());
}

TEST(CxStream, CountsTheBytesThatItDidNotTouch) {
  EXPECT_EQ(inflateCx(QByteArray::fromHex("14460c010203"), 2).unread, 3);
}

}  // namespace
}  // namespace lens
