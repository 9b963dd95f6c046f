#include "embedded/format/stored_lists.h"

#include <gtest/gtest.h>

#include <QRandomGenerator>

#include "embedded/format/item_value.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

const QString kUnid = u"0123456789ABCDEF0123456789ABCDEF"_s;

QByteArrayView dataOf(const QByteArray& value) {
  return QByteArrayView(value).sliced(2);
}

// Each text as it came; one that is cut has a "~" behind it.
QString textsIn(QByteArrayView data) {
  QStringList texts;
  StoredTexts(data).forEach([&](QByteArrayView text, bool whole) {
    texts.append(QString::fromLatin1(text) + (whole ? u""_s : u"~"_s));
  });
  return texts.join(u'|');
}

TEST(StoredTexts, AreVisitedWhereTheyLie) {
  const QByteArray value = textListValue({u"one"_s, u""_s, u"three"_s});
  const StoredTexts texts(dataOf(value));
  EXPECT_EQ(texts.claimed(), 3);
  EXPECT_EQ(texts.count(), 3);
  EXPECT_EQ(texts.claimedBytes(), 8);
  EXPECT_TRUE(texts.fits());
  EXPECT_EQ(textsIn(dataOf(value)), u"one||three"_s);
  texts.forEach([&](QByteArrayView text, bool) {
    EXPECT_TRUE(text.data() >= value.constData() && text.data() <= value.constData() + value.size());
  });
}

TEST(StoredTexts, ThatAreCutShortGiveWhatIsThere) {
  const QByteArray value = textListValue({u"one"_s, u"two"_s});
  const QByteArrayView data = dataOf(value);
  EXPECT_EQ(textsIn(data.chopped(1)), u"one|tw~"_s);
  EXPECT_EQ(textsIn(data.chopped(3)), u"one"_s) << "of the second nothing is there";
  EXPECT_EQ(textsIn(data.chopped(7)), QString()) << "a length is missing";
  EXPECT_FALSE(StoredTexts(data.chopped(1)).fits());
  EXPECT_FALSE(StoredTexts(data.chopped(7)).hasLengths());
  EXPECT_EQ(StoredTexts(data.chopped(7)).count(), 0);
  EXPECT_EQ(textsIn({}), QString());
  EXPECT_FALSE(StoredTexts({}).fits());
}

TEST(StoredRanges, HaveSingleEntriesThenPairs) {
  const TimeDate day{{kAllDay, 2460000}}, next{{kAllDay, 2460001}};
  const QByteArray value = timeListValue({day}, {{day, next}, {next, day}});
  const StoredRange range(dataOf(value));
  EXPECT_EQ(range.entries(), 5);
  EXPECT_EQ(range.singles(), 1);
  EXPECT_EQ(range.pairs(), 2);
  EXPECT_TRUE(range.isExact());
  EXPECT_TRUE(sameTimeDate(range.time(0), day));
  EXPECT_TRUE(sameTimeDate(range.to(0), next));
  EXPECT_TRUE(sameTimeDate(range.from(1), next));
  const QByteArray numbers = numberListValue({1.5, -2});
  EXPECT_EQ(StoredRange(dataOf(numbers)).number(1), -2);
}

TEST(StoredRanges, ThatAreCutShortGiveWholeEntriesOnly) {
  const TimeDate day{{kAllDay, 2460000}};
  const QByteArray value = timeListValue({day, day}, {{day, day}});
  const QByteArrayView data = dataOf(value);
  const auto counts = [&](qsizetype cut) {
    const StoredRange range(data.chopped(cut));
    EXPECT_FALSE(range.fits()) << cut;
    return QVector<qsizetype>{range.singles(), range.pairs(), range.entries()};
  };
  EXPECT_EQ(counts(1), QVector<qsizetype>({2, 0, 3})) << "half a pair is an entry";
  EXPECT_EQ(counts(16), QVector<qsizetype>({2, 0, 2}));
  EXPECT_EQ(counts(17), QVector<qsizetype>({1, 0, 1}));
  EXPECT_EQ(counts(data.size()), QVector<qsizetype>({0, 0, 0}));
  const QByteArray longer = value + 'x';
  EXPECT_TRUE(StoredRange(dataOf(longer)).fits());
  EXPECT_FALSE(StoredRange(dataOf(longer)).isExact());
}

TEST(StoredReferences, AreUnids) {
  const QByteArray value = noteRefsValue({Unid::fromText(kUnid), Unid::fromText(kUnid)});
  const StoredReferences references(dataOf(value));
  EXPECT_EQ(references.count(), 2);
  EXPECT_EQ(references.unid(1).text(), kUnid);
  EXPECT_TRUE(references.fits());
  const StoredReferences cut(dataOf(value).chopped(1));
  EXPECT_EQ(cut.count(), 1);
  EXPECT_FALSE(cut.fits());
  EXPECT_EQ(cut.first().text(), kUnid);
  EXPECT_TRUE(StoredReferences(dataOf(value).first(17)).first().isNull());
  EXPECT_TRUE(StoredReferences({}).first().isNull());
}

TEST(StoredLists, OfAnyBytesAreReadWithinThem) {
  QRandomGenerator random(4);
  for (int round = 0; round < 20'000; ++round) {
    QByteArray bytes(random.bounded(60), Qt::Uninitialized);
    for (char& byte : bytes) byte = char(random.bounded(4) ? random.bounded(4) : random.bounded(256));
    const QByteArrayView data(bytes);
    qsizetype taken = 0;
    const StoredTexts texts(data);
    texts.forEach([&](QByteArrayView text, bool) { taken += text.size(); });
    EXPECT_LE(taken, data.size());
    if (texts.fits()) {
      EXPECT_EQ(taken, texts.claimedBytes());
    }
    const StoredRange range(data);
    for (qsizetype i = 0; i < range.entries(); ++i) (void)range.number(i), (void)range.time(i);
    EXPECT_LE(range.singles() + 2 * range.pairs(), range.entries());
    const StoredReferences references(data);
    for (qsizetype i = 0; i < references.count(); ++i) (void)references.unid(i);
  }
}

TEST(StoredObjects, HaveANumberThatCanBeReplaced) {
  FileObject file;
  file.objectId = 7;
  file.name = u"a.txt"_s;
  QByteArray value = fileObjectValue(file);
  EXPECT_EQ(objectIdOf(dataOf(value)), 7u);
  EXPECT_TRUE(isFileKind(dataOf(value)));
  replaceObjectId(value, 0x01020304);
  EXPECT_EQ(objectIdOf(dataOf(value)), 0x01020304u);
  FileObject again;
  ASSERT_TRUE(readFileObject(dataOf(value), again));
  EXPECT_EQ(again.objectId, 0x01020304u);
  EXPECT_EQ(again.name, u"a.txt"_s);
  EXPECT_EQ(objectIdOf(dataOf(value).first(5)), 0u) << "cut short";
}

}  // namespace
}  // namespace lens
