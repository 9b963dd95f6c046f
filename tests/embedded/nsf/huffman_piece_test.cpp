#include <gtest/gtest.h>

#include "embedded/nsf/huffman_stream.h"

namespace lens {
namespace {

// As found in real files: sum, an unknown word, size of the tree, tree, codes.
const QByteArray kAbracadabra = QByteArray::fromHex(
    "5404 0200 1400"
    "6100 ffff feff fdff 0001 6200 7200 fcff 6300 6400"
    "a31851b0");

struct Unpacked {
  QString fault;
  QByteArray bytes;
};
Unpacked unpack(const QByteArray& packed, qint64 wanted, qsizetype piece = 64 * 1024) {
  Unpacked result;
  qsizetype at = 0;
  result.fault = inflateHuffman(
      [&](qsizetype most) {
        const QByteArray some = packed.mid(at, qMin(most, piece));
        at += some.size();
        return some;
      },
      wanted,
      [&](QByteArrayView some) {
        result.bytes += some;
        return true;
      });
  return result;
}

TEST(HuffmanStream, UnpacksABlock) {
  const Unpacked result = unpack(kAbracadabra, 11);
  EXPECT_EQ(result.fault, QString());
  EXPECT_EQ(result.bytes, "abracadabra");
}

TEST(HuffmanStream, TakesItsInputInPiecesOfAnySize) {
  for (qsizetype piece = 1; piece < 8; ++piece)
    EXPECT_EQ(unpack(kAbracadabra, 11, piece).bytes, "abracadabra");
}

TEST(HuffmanStream, GoesOnWithAnotherBlockWhereMoreIsWanted) {
  const Unpacked result = unpack(kAbracadabra + kAbracadabra + kAbracadabra, 33);
  EXPECT_EQ(result.fault, QString());
  EXPECT_EQ(result.bytes, "abracadabraabracadabraabracadabra");
}

TEST(HuffmanStream, AnEmptyFileNeedsNoBlock) {
  EXPECT_EQ(unpack({}, 0).fault, QString());
}

TEST(HuffmanStream, RefusesSizesThatDoNotComeOut) {
  EXPECT_NE(unpack(kAbracadabra, 10).fault, QString());
  EXPECT_NE(unpack(kAbracadabra, 12).fault, QString());
  EXPECT_NE(unpack(kAbracadabra + kAbracadabra, 21).fault, QString());
}

TEST(HuffmanStream, RefusesEveryCutAndEveryWrongSum) {
  for (qsizetype size = 0; size < kAbracadabra.size(); ++size)
    EXPECT_NE(unpack(kAbracadabra.first(size), 11).fault, QString()) << size;
  for (qsizetype at : {0, 1}) {
    QByteArray wrong = kAbracadabra;
    wrong[at] = char(wrong[at] ^ 1);
    EXPECT_NE(unpack(wrong, 11).fault, QString());
  }
}

TEST(HuffmanStream, NoFlippedBitOfTheTreeOrTheCodesGivesOtherBytes) {
  for (qsizetype at = 4; at < kAbracadabra.size(); ++at) {
    for (int bit = 0; bit < 8; ++bit) {
      QByteArray wrong = kAbracadabra;
      wrong[at] = char(wrong[at] ^ 1 << bit);
      const Unpacked result = unpack(wrong, 11);
      // The sum cannot tell apart what differs in order only.
      if (!result.fault.isEmpty()) continue;
      QByteArray sorted = result.bytes, wanted = "abracadabra";
      quint32 sum = 0, wantedSum = 0;
      for (char byte : sorted) sum += quint8(byte);
      for (char byte : wanted) wantedSum += quint8(byte);
      EXPECT_EQ(sum, wantedSum) << at << ' ' << bit;
    }
  }
}

TEST(HuffmanStream, ALoopInTheTreeEndsWithTheInput) {
  // Both ways of the second node lead back to it.
  const QByteArray loop =
      QByteArray::fromHex("0000 0200 0800 ffff ffff ffff ffff") + QByteArray(1000, '\x55');
  EXPECT_NE(unpack(loop, 5).fault, QString());
}

TEST(HuffmanStream, EndsWhereNobodyTakesTheBytes) {
  EXPECT_NE(inflateHuffman([](qsizetype) { return kAbracadabra; }, 11, [](QByteArrayView) { return false; }),
            QString());
}

}  // namespace
}  // namespace lens
