#include "embedded/format/lmbcs.h"

#include <QRandomGenerator>
#include <thread>

#include "embedded/support/store_test.h"

namespace lens {
namespace {

struct Pair {
  QString text;
  QByteArray bytes;
};

QVector<Pair> knownPairs() {
  const auto pair = [](char32_t character, const char* hex) {
    return Pair{QString::fromUcs4(&character, 1), QByteArray::fromHex(hex)};
  };
  return {pair(U'A', "41"),       pair(U'\t', "09"),      pair(U'\n', "0A"),
          pair(U'\r', "0D"),      pair(U'é', "82"),       pair(U'§', "F5"),
          pair(0xA0, "FF"),       pair(U'Ω', "02 D5"),    pair(U'Ж', "05 C6"),
          pair(U'Ā', "06 2E"),    pair(U'ő', "06 8B"),    pair(U'€', "03 80"),
          pair(0x4E00, "1088EA"), pair(0x1E00, "14F61E"), pair(0x1F600, "14D83D14F6DE"),
          pair(0x07, "0F27"),     pair(0x85, "0F85")};
}

TEST(Lmbcs, WritesTheKnownCharacters) {
  for (const Pair& pair : knownPairs()) EXPECT_EQ(toLmbcs(pair.text), pair.bytes) << pair.text.toStdString();
}

TEST(Lmbcs, ReadsTheKnownCharacters) {
  for (const Pair& pair : knownPairs())
    EXPECT_EQ(fromLmbcs(pair.bytes), pair.text) << pair.text.toStdString();
}

TEST(Lmbcs, ReadsWesternWordsAmongForeignOnes) {
  EXPECT_EQ(fromLmbcs(QByteArray::fromHex("42657374847420 02D5 41 05C6 82")), QStringLiteral(u"Bestät ΩAЖé"));
}

TEST(Lmbcs, EveryCharacterOfTheBasicPlaneComesBack) {
  QString all;
  for (int unit = 1; unit < 0xFFFE; ++unit)
    if (!QChar::isSurrogate(char32_t(unit))) all.append(QChar(char16_t(unit)));
  EXPECT_EQ(fromLmbcs(toLmbcs(all)), all);
}

TEST(Lmbcs, NoTextWithoutNulGivesANul) {
  QString all;
  for (int unit = 1; unit < 0xFFFE; ++unit) all.append(QChar(char16_t(unit)));
  EXPECT_FALSE(toLmbcs(all).contains('\0'));
}

TEST(Lmbcs, NulStaysNulBothWays) {
  const QString text = QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b");
  EXPECT_EQ(toLmbcs(text), QByteArray("a\0b", 3));
  EXPECT_EQ(fromLmbcs(QByteArray("a\0b", 3)), text);
}

TEST(Lmbcs, MalformedSequencesBecomeReplacementCharacters) {
  EXPECT_EQ(fromLmbcs(QByteArray::fromHex("41 07 42")), QStringLiteral(u"A\uFFFDB"));
  EXPECT_TRUE(fromLmbcs(QByteArray::fromHex("41 14")).startsWith(u'A'));
  EXPECT_TRUE(fromLmbcs(QByteArray::fromHex("14F6")).contains(QChar::ReplacementCharacter));
}

TEST(Lmbcs, EverySequenceOfThreeBytesIsSurvived) {
  for (int lead = 0; lead < 0x20; ++lead)
    for (int second = 0; second < 256; ++second)
      for (int third : {0x00, 0x01, 0x10, 0x14, 0x20, 0x41, 0x80, 0xF6, 0xFF}) {
        const char bytes[] = {char(lead), char(second), char(third)};
        for (int length = 1; length <= 3; ++length) {
          const QByteArray exact(bytes, length);  // its end is guarded by the sanitizer
          ASSERT_LE(fromLmbcs(exact).size(), 6);
        }
      }
}

TEST(Lmbcs, LongTextsCrossTheInnerBuffers) {
  QString text;
  for (int i = 0; i < 50000; ++i) text.append(i % 3 ? QChar(u'Ж') : QChar(char16_t(0x4E00 + i % 500)));
  EXPECT_EQ(fromLmbcs(toLmbcs(text)), text);
}

TEST(Lmbcs, EveryThreadConvertsForItself) {
  QString first, second;
  std::thread one([&] { first = fromLmbcs(toLmbcs(QString(2000, QChar(u'Ω')))); });
  std::thread two([&] { second = fromLmbcs(toLmbcs(QString(2000, QChar(u'Ж')))); });
  one.join();
  two.join();
  EXPECT_EQ(first, QString(2000, QChar(u'Ω')));
  EXPECT_EQ(second, QString(2000, QChar(u'Ж')));
}

TEST(Lmbcs, EmptyTextIsNoBytes) {
  EXPECT_TRUE(toLmbcs(QString()).isEmpty());
  EXPECT_TRUE(fromLmbcs(QByteArray()).isEmpty());
}

}  // namespace
}  // namespace lens
