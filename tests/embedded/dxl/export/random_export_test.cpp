// Random notes: whatever the store takes, an export gives back.
#include <QRandomGenerator>

#include "embedded/dxl/export/export_fixture.h"
#include "embedded/dxl/import_context.h"
#include "embedded/format/source_formula.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

class Dice {
 public:
  explicit Dice(quint32 seed) : generator_(seed) {}
  int below(int bound) { return int(generator_.bounded(bound)); }
  bool chance(int percent) { return below(100) < percent; }
  quint32 word() { return generator_.generate(); }

  QString text(int most) {
    QString text;
    for (int i = below(most + 1); i > 0; --i) {
      const int kind = below(20);
      if (kind < 12) text += QChar(u' ' + below(95));
      if (kind == 12) text += QChar(below(32));
      if (kind == 13) text += QChar(0x80 + below(0x3000));
      if (kind == 14) text += QChar(0xD800 + below(0x800));
      if (kind == 15) text += QString::fromUcs4(U"\U0001F600", 1);
      if (kind == 16) text += QChar(0xFFFD + below(3));
      if (kind == 17) text += u'\n';
      if (kind == 18) text += u"  ";
      if (kind == 19) text += u"]]><!--&amp;";
    }
    return text;
  }
  QByteArray bytes(int most) {
    QByteArray bytes(below(most + 1), '\0');
    for (char& byte : bytes) byte = char(chance(30) ? below(4) : below(256));
    return bytes;
  }
  TimeDate time() {
    if (chance(15)) return {{word(), word()}};
    if (chance(10)) return timeDateOfDate(QDate(1900 + below(200), 1 + below(12), 1 + below(28)));
    if (chance(10)) return timeDateOfTime(QTime(below(24), below(60), below(60), below(100) * 10));
    const QDateTime instant =
        QDateTime::fromMSecsSinceEpoch(qint64(word()) * 1000 + below(100) * 10, Qt::UTC);
    return timeDateOf(instant, {(below(120) - 60) * 15, chance(50)});
  }
  double number() {
    if (chance(50)) return below(1000) / 8.0;
    QByteArray bytes;
    appendU32(bytes, word());
    appendU32(bytes, word());
    return ByteReader(bytes).f64();
  }

 private:
  QRandomGenerator generator_;
};

QByteArray randomRichText(Dice& dice) {
  RichText text;
  int tables = 0;
  for (int i = dice.below(12); i > 0; --i) {
    const int kind = dice.below(8);
    if (kind == 0) text.beginParagraph();
    if (kind == 1 || kind == 2)
      text.appendText(dice.text(12), {quint8(dice.below(6)), quint8(dice.chance(50) ? dice.below(256) : 0),
                                      quint8(dice.below(18)), quint8(dice.below(256))});
    if (kind == 3) text.appendBreak();
    if (kind == 4) text.appendAttachment(dice.text(5), dice.text(5));
    if (kind == 5) text.appendDocLink(u"85257AA6004F5595"_s, {}, {}, dice.text(5).remove(QChar(0)));
    if (kind == 6) {
      text.beginTable(2, 2);
      text.beginCell(dice.below(2), dice.below(2));
      ++tables;
    }
    if (kind == 7 && tables > 0) {
      text.endTable();
      --tables;
    }
  }
  QByteArray bytes = text.toBytes();
  if (dice.chance(15) && !bytes.isEmpty()) bytes[dice.below(int(bytes.size()))] = char(dice.below(256));
  if (dice.chance(10))
    bytes.chop(dice.below(4) > bytes.size() ? 0 : qMin<qsizetype>(bytes.size(), dice.below(4)));
  return rawValue(itemtype::RichText, bytes);
}

QByteArray randomValue(Dice& dice, Database& database) {
  switch (dice.below(12)) {
    case 0:
      return storedTextValue(dice.text(30));
    case 1: {
      QStringList texts;
      for (int i = dice.below(4); i > 0; --i) texts.push_back(dice.text(10));
      return storedTextListValue(texts);
    }
    case 2:
      return numberValue(dice.number());
    case 3:
      return numberListValue({dice.number(), dice.number()});
    case 4:
      return timeValue(dice.time());
    case 5:
      return timeListValue({dice.time()}, {{dice.time(), dice.time()}});
    case 6:
      return sourceFormulaValue(dice.text(30));
    case 7:
      return randomRichText(dice);
    case 8: {
      QBuffer bytes;
      bytes.setData(dice.bytes(200));
      bytes.open(QIODevice::ReadOnly);
      const StoredObject stored = database.objects().add(bytes);
      FileObject file{stored.id, dice.text(8), quint32(stored.size), dice.time(), dice.time(), 0, 0, 0, 0};
      if (dice.chance(20)) file.hostType = quint16(dice.below(0x1000));
      if (dice.chance(20)) file.flags = quint16(dice.below(256));
      return fileObjectValue(file);
    }
    case 9: {
      constexpr quint16 kTypes[] = {itemtype::Text,        itemtype::TextList, itemtype::Number,
                                    itemtype::NumberRange, itemtype::Time,     itemtype::TimeRange,
                                    itemtype::Formula,     itemtype::RichText};
      return rawValue(kTypes[dice.below(8)], dice.bytes(20));
    }
    default: {
      const quint16 type = dice.chance(50) ? quint16(dice.below(0x20)) : quint16(dice.word());
      return rawValue(type == itemtype::Object ? itemtype::UserData : type, dice.bytes(40));
    }
  }
}

Note randomNote(Dice& dice, Database& database) {
  constexpr quint16 kClasses[] = {0x0001, 0x0001, 0x0001, 0x0004, 0x0008, 0x0200, 0x0400, 0x0800};
  Note note;
  note.header.unid = Unid::create();
  note.header.noteClass = kClasses[dice.below(8)] | quint16(dice.chance(20) ? noteclass::Default : 0) |
                          quint16(dice.chance(20) ? noteclass::Private : 0);
  note.header.sequence = dice.word();
  if (dice.chance(30)) note.header.parent = Unid::create();
  for (TimeDate* time : {&note.header.sequenceTime, &note.header.created, &note.header.modified,
                         &note.header.added, &note.header.accessed})
    *time = dice.time();
  static const QStringList kNames = {u"Form"_s, u"$REF"_s, u"$Name"_s, u"Body"_s, u"$FILE"_s, u"$Conflict"_s};
  for (int i = dice.below(8); i > 0; --i) {
    // What a name cannot hold in the store is no matter of the export.
    QString name = dice.chance(40) ? kNames[dice.below(6)] : dice.text(10);
    name = QString::fromUtf8(name.toUtf8());
    const quint16 flags = dice.chance(50) ? itemflag::Summary : quint16(dice.word());
    note.add(name, flags, randomValue(dice, database));
  }
  return note;
}

TEST_F(DxlExport, GivesRandomNotesBack) {
  for (quint32 seed = 1; seed <= 8; ++seed) {
    SCOPED_TRACE(seed);
    Dice dice(seed);
    source_ = create();
    {
      Database::Transaction transaction(*source_);
      for (int i = 0; i < 100; ++i) {
        Note note = randomNote(dice, *source_);
        source_->notes().saveAsGiven(note);
      }
      transaction.commit();
    }
    const QByteArray dxl = roundTrip();
    EXPECT_TRUE(dxl.contains("<richtext>") && dxl.contains("<text>") && dxl.contains("<rawitemdata"));
    // What was imported is exported as the same.
    const std::shared_ptr<Database> again = imported(dxl);
    EXPECT_EQ(difference(*source_, *again).toStdString(), "");
    if (HasFailure()) return;
  }
}

}  // namespace
}  // namespace lens
