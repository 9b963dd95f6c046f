#include "embedded/format/packed_items.h"

#include <QRandomGenerator>
#include <QtEndian>

#include "embedded/support/store_test.h"

namespace lens {
namespace {

QVector<Item> threeItems() {
  return {{QStringLiteral("Form"), itemflag::Summary, textValue(u"Memo")},
          {QStringLiteral(u"Größe"), itemflag::Names | itemflag::Readers, numberValue(3)},
          {QStringLiteral("form"), 0, rawValue(itemtype::Unknown, {})}};
}

bool same(const QVector<Item>& a, const QVector<Item>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Item& x, const Item& y) {
    return x.name == y.name && x.flags == y.flags && x.value == y.value;
  });
}

QVector<Item> randomItems(QRandomGenerator& random) {
  QVector<Item> items;
  for (int count = random.bounded(12); count > 0; --count) {
    QString name;
    for (int length = random.bounded(20); length > 0; --length)
      name.append(QChar(char16_t(1 + random.bounded(random.bounded(2) ? 0x7E : 0xD7FE))));
    QByteArray value(2 + random.bounded(300), Qt::Uninitialized);
    for (char& byte : value) byte = char(random.bounded(256));
    items.push_back({name, quint16(random.bounded(65536)), value});
  }
  return items;
}

TEST(PackedItems, AnyItemsComeBackInOrder) {
  QRandomGenerator random(7);
  for (int round = 0; round < 500; ++round) {
    const QVector<Item> items = randomItems(random);
    EXPECT_TRUE(same(unpackItems(packItems(items)), items)) << round;
  }
}

TEST(PackedItems, NoItemsAreEightBytes) {
  EXPECT_EQ(packItems({}), QByteArray("TLI1\0\0\0\0", 8));
  EXPECT_TRUE(unpackItems(packItems({})).isEmpty());
}

TEST(PackedItems, FirstItemOfANameIsFoundWithoutRegardToCase) {
  const QByteArray packed = packItems(threeItems());
  Item found;
  ASSERT_TRUE(findPackedItem(packed, u"FORM", found));
  EXPECT_EQ(found.name, QStringLiteral("Form"));
  EXPECT_EQ(found.value, textValue(u"Memo"));
  ASSERT_TRUE(findPackedItem(packed, u"GRÖßE", found));
  EXPECT_EQ(found.flags, itemflag::Names | itemflag::Readers);
  EXPECT_FALSE(findPackedItem(packed, u"For", found));
  EXPECT_FALSE(findPackedItem(packed, u"Forms", found));
  EXPECT_FALSE(findPackedItem(packed, u"", found));
}

TEST(PackedItems, EveryTruncationIsRefusedByName) {
  const QByteArray packed = packItems(threeItems());
  for (qsizetype size = 0; size < packed.size(); ++size) {
    const QByteArray cut(packed.constData(), size);
    QString description;
    EXPECT_EQ(errorNumber([&] { unpackItems(cut); }, &description), enginefault::Damaged) << size;
    EXPECT_TRUE(description.startsWith(u"Damaged items: ")) << size;
    EXPECT_EQ(errorNumber([&] { checkPackedItems(cut); }), enginefault::Damaged) << size;
  }
}

TEST(PackedItems, EveryFlippedByteIsSurvived) {
  const QByteArray packed = packItems(threeItems());
  for (qsizetype place = 0; place < packed.size(); ++place)
    for (int flip : {0x01, 0x7F, 0x80, 0xFF}) {
      QByteArray hostile(packed.constData(), packed.size());
      hostile[place] = char(hostile[place] ^ flip);
      const int unpacked = errorNumber([&] { unpackItems(hostile); });
      EXPECT_TRUE(unpacked == 0 || unpacked == enginefault::Damaged);
      EXPECT_EQ(errorNumber([&] { checkPackedItems(hostile); }), unpacked);
      Item found;
      errorNumber([&] { findPackedItem(hostile, u"absent", found); });
    }
}

TEST(PackedItems, LengthOfTwoGigabytesIsRefused) {
  for (quint32 length : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
    QByteArray packed = packItems(threeItems());
    qToLittleEndian(length, packed.data() + 8 + 12);
    QString description;
    EXPECT_EQ(errorNumber([&] { unpackItems(packed); }, &description), enginefault::Damaged);
    EXPECT_TRUE(description.contains(u"value of item 1"));
  }
}

TEST(PackedItems, HugeCountIsRefusedBeforeAnythingIsReserved) {
  QByteArray packed = packItems(threeItems());
  qToLittleEndian(0xFFFFFFFFu, packed.data() + 4);
  EXPECT_EQ(errorNumber([&] { unpackItems(packed); }), enginefault::Damaged);
}

TEST(PackedItems, EntriesThatShareOneLargeValueAreRefused) {
  QByteArray packed = packItems({{QStringLiteral("a"), 0, rawValue(1, QByteArray(1000, 'x'))},
                                 {QStringLiteral("b"), 0, rawValue(1, QByteArray(10, 'y'))}});
  const quint32 valueAt = qFromLittleEndian<quint32>(packed.constData() + 8 + 8);
  qToLittleEndian(valueAt, packed.data() + 24 + 8);
  qToLittleEndian(1002u, packed.data() + 24 + 12);
  EXPECT_EQ(errorNumber([&] { unpackItems(packed); }), enginefault::Damaged);
}

TEST(PackedItems, LookedAtWhereTheyLieTheySayTheSame) {
  QRandomGenerator random(8);
  for (int round = 0; round < 300; ++round) {
    const QVector<Item> items = randomItems(random);
    const QByteArray packed = packItems(items);
    const PackedItems view(packed);
    ASSERT_EQ(view.count(), items.size());
    QVector<Item> seen;
    for (qsizetype i = 0; i < view.count(); ++i) seen.push_back(view[i].toItem());
    EXPECT_TRUE(same(seen, items)) << round;
  }
  EXPECT_EQ(errorNumber([] { PackedItems(QByteArrayView("TLI1\1\0\0\0", 8)); }), enginefault::Damaged);
}

// Short names of few letters, so that many collide; with letters whose other case is not ASCII.
QString shortName(QRandomGenerator& random) {
  static const QString letters = QStringLiteral(u"aAbB_kKsS\u212A\u017FéÉ");
  QString name;
  for (int length = random.bounded(4); length >= 0; --length) name += letters[random.bounded(letters.size())];
  return name;
}

TEST(PackedItems, WantedItemsAreTheFirstOnesOfTheirNames) {
  QRandomGenerator random(9);
  for (int round = 0; round < 2000; ++round) {
    QVector<Item> items;
    for (int count = random.bounded(15); count > 0; --count)
      items.push_back(
          {shortName(random), random.bounded(2) ? itemflag::Summary : quint16(0), textValue(u"x")});
    QStringList names;
    for (int count = random.bounded(15); count > 0; --count) names.append(shortName(random));
    const QByteArray packed = packItems(items);
    const PackedItems view(packed);
    std::vector<qint32> places;
    WantedItems(std::vector<ItemName>(names.begin(), names.end())).find(view, itemflag::Summary, places);
    for (qsizetype n = 0; n < names.size(); ++n) {
      qsizetype expected = 0;
      while (expected < items.size() &&
             !((items[expected].flags & itemflag::Summary) && sameItemName(items[expected].name, names[n])))
        ++expected;
      if (expected == items.size()) expected = -1;
      EXPECT_EQ(places[std::size_t(n)], expected) << names[n].toStdString();
      EXPECT_EQ(view.find(names[n], itemflag::Summary), expected) << names[n].toStdString();
    }
  }
}

TEST(PackedItems, ValueWithoutATypeIsNotPacked) {
  EXPECT_EQ(errorNumber([] { packItems({{QStringLiteral("a"), 0, QByteArray("x")}}); }), err::InvalidCall);
}

TEST(PackedItems, NameBeyondItsLengthWordIsNotPacked) {
  EXPECT_EQ(errorNumber([] {
              packItems({{QString(65536, QChar(u'x')), 0, textValue(u"")}});
            }),
            enginefault::NotSaved);
}

}  // namespace
}  // namespace lens
