// The block that an evaluated formula leaves, read from bytes. Libraries may tell anything of their lists.
#include "design/evaluation_result.h"

#include <gtest/gtest.h>

#include <QtEndian>

#include "embedded/format/item_value.h"
#include "support/printers.h"

namespace lens {
namespace {

using namespace Qt::StringLiterals;

// A list as somebody tells it.
class ToldList : public TextListReader {
 public:
  quint32 told = 0;
  QVector<QByteArrayView> entries;
  int failing = -1;  // this entry raises
  int asked = 0;

  quint32 count() override { return told; }
  QByteArrayView entry(quint16 index) override {
    ++asked;
    if (index == failing) throw RuntimeError(70);
    return index < entries.size() ? entries[index] : QByteArrayView();
  }
};

QByteArray bytes(const char* hex) {
  return QByteArray::fromHex(hex);
}

class ReadEvaluation : public testing::Test {
 protected:
  // A list of texts; its entries are told as they are.
  void putTexts(const QStringList& texts) {
    block = textListValue(texts);
    list = {};
    list.told = quint32(texts.size());
    qsizetype at = 4 + 2 * texts.size();
    for (const QString& text : texts) {
      list.entries += QByteArrayView(block).sliced(at, text.size());
      at += text.size();
    }
  }
  QStringList read() {
    QStringList texts;
    for (const Value& value : readEvaluation(block, list, toText)) texts += value.text();
    return texts;
  }
  int failure() {
    try {
      readEvaluation(block, list, toText);
    } catch (const RuntimeError& error) {
      return error.number();
    }
    return 0;
  }

  QByteArray block;
  ToldList list;
  std::function<QString(QByteArrayView)> toText = [](QByteArrayView text) {
    return QString::fromLatin1(text);
  };
};

TEST_F(ReadEvaluation, GivesTextsInTheirOrder) {
  putTexts({u"a"_s, QString(), u"bcd"_s});
  EXPECT_EQ(read(), QStringList({u"a"_s, QString(), u"bcd"_s}));
}

TEST_F(ReadEvaluation, OneEmptyEntryIsOneEmptyText) {
  putTexts({QString()});
  EXPECT_EQ(read(), QStringList(QString()));
}

TEST_F(ReadEvaluation, AListWithoutEntriesHasOneEmptyText) {
  putTexts({});
  EXPECT_EQ(read(), QStringList(QString()));
}

TEST_F(ReadEvaluation, GoesOnBehindACountThatIsShort) {
  putTexts({u"a"_s, u"b"_s, u"c"_s});
  list.told = 1;
  EXPECT_EQ(read(), QStringList({u"a"_s, u"b"_s, u"c"_s}));
  EXPECT_LE(list.asked, 2 * 4) << "and does not begin anew for each entry";
}

TEST_F(ReadEvaluation, ACountThatIsLongGivesEmptyTexts) {
  putTexts({u"a"_s, u"bcdef"_s});
  list.told = 4;
  EXPECT_EQ(read(), QStringList({u"a"_s, u"bcdef"_s, QString(), QString()}));
  list.told = 0xFFFFFFFF;
  EXPECT_EQ(read().size(), 5) << "no more than the block has room for";
}

TEST_F(ReadEvaluation, NothingOutsideTheBlockIsRead) {
  const QByteArray elsewhere("secret");
  putTexts({u"ab"_s, u"cd"_s, u"ef"_s});
  list.entries[0] = elsewhere;
  list.entries[1] = QByteArrayView(block.constData() + block.size() - 2, 3);
  EXPECT_EQ(read(), QStringList({QString(), QString(), u"ef"_s}));
}

TEST_F(ReadEvaluation, EntriesThatOverlapGiveNoMoreThanTheBlockHolds) {
  putTexts(QStringList(100, u"x"_s));
  for (QByteArrayView& entry : list.entries) entry = QByteArrayView(block).sliced(4);
  qsizetype length = 0;
  for (const QString& text : read()) length += text.size();
  EXPECT_LE(length, block.size());
}

// The statement behind a failed one goes on with what was there.
TEST_F(ReadEvaluation, AnEntryThatFailsRepeatsTheOneBefore) {
  putTexts({u"a"_s, u"b"_s, u"c"_s});
  list.failing = 1;
  EXPECT_EQ(read(), QStringList({u"a"_s, u"a"_s, u"c"_s}));
  list.failing = 0;
  EXPECT_EQ(read(), QStringList({QString(), u"b"_s, u"c"_s}));
}

TEST_F(ReadEvaluation, ATextThatCannotBeConvertedStaysEmpty) {
  putTexts({u"a"_s, u"b"_s, u"c"_s});
  toText = [](QByteArrayView text) {
    if (text == "b") throw RuntimeError(err::Overflow);
    return QString::fromLatin1(text);
  };
  EXPECT_EQ(read(), QStringList({u"a"_s, QString(), u"c"_s}));
}

TEST_F(ReadEvaluation, ACountThatFailsIsAFailure) {
  class NoList : public TextListReader {
    quint32 count() override { throw RuntimeError(453); }
    QByteArrayView entry(quint16) override { return {}; }
  } none;
  EXPECT_THROW(readEvaluation(bytes("01050000"), none, toText), RuntimeError);
}

TEST_F(ReadEvaluation, GivesNumbers) {
  block = numberListValue({1.5, -2, 1.0 / 3, 1e15});
  EXPECT_EQ(read(), QStringList({u"1.5"_s, u"-2"_s, u"0.333333333333333"_s, u"1E+15"_s}));
}

TEST_F(ReadEvaluation, TheCountOfRangesMakesALongList) {
  block = numberListValue({1, 2, 3});
  block[4] = 1;
  EXPECT_EQ(read(), QStringList({u"1"_s, u"2"_s, u"3"_s})) << "of which only what is there is read";
}

TEST_F(ReadEvaluation, NumbersThatEndEarlyGiveTheWholeOnes) {
  block = numberListValue({1, 2});
  block.chop(1);
  EXPECT_EQ(read(), QStringList(u"1"_s));
  block.truncate(9);
  EXPECT_EQ(read(), QStringList(QString()));
  block.truncate(5);
  EXPECT_EQ(read(), QStringList(QString()));
}

TEST_F(ReadEvaluation, AListOfNumbersWithoutANumberHasNoArray) {
  block = bytes("010300000000");
  EXPECT_EQ(failure(), err::SubscriptOutOfRange);
  block = bytes("0103FFFFFFFF");
  EXPECT_EQ(failure(), err::SubscriptOutOfRange);
}

TEST_F(ReadEvaluation, EverythingElseIsOneEmptyText) {
  for (const QByteArray& other :
       {QByteArray(), bytes("01"), bytes("0000"), timeListValue({timeDateOfDate(QDate(2024, 3, 11))}),
        textValue(u"abc"), numberValue(2), bytes("0105"), bytes("0103")}) {
    block = other;
    list = {};
    EXPECT_EQ(read(), QStringList(QString())) << other.toHex().toStdString();
  }
}

TEST_F(ReadEvaluation, TheLongestListHasAllItsEntries) {
  block = bytes("0105") + QByteArray(65'533, '\0');
  list.told = 40'000;
  EXPECT_EQ(read().size(), 32'765) << "as many as the block has room for";
}

}  // namespace
}  // namespace lens
