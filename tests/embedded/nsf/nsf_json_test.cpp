// What programs are told of a note: each key against what was described, worked out here by itself.
#include "embedded/nsf/nsf_json.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>

#include "embedded/nsf/nsf_test.h"

namespace lens::made {
namespace {

QString digits(quint64 number, int width) {
  return u"%1"_s.arg(number, width, 16, QLatin1Char('0')).toUpper();
}

// Times of the tests lie on one day.
QJsonValue timeText(const TimeDate& time) {
  if (time.innards[0] == 0 && time.innards[1] == 0) return QJsonValue::Null;
  if ((time.innards[1] & 0xFFFFFF) != (someTime().innards[1] & 0xFFFFFF))
    return digits(time.innards[1], 8) + digits(time.innards[0], 8);
  const quint32 hundredths = time.innards[0];
  return u"2024-03-11T%1:%2:%3.%4Z"_s.arg(hundredths / 360000, 2, 10, QLatin1Char('0'))
      .arg(hundredths / 6000 % 60, 2, 10, QLatin1Char('0'))
      .arg(hundredths / 100 % 60, 2, 10, QLatin1Char('0'))
      .arg(hundredths % 100, 2, 10, QLatin1Char('0'));
}

QString nameOf(const MadeItem& item) {
  return QString::fromLatin1(item.name).replace(QChar(0x81), QChar(0xFC));
}

QJsonObject itemObject(const MadeItem& item) {
  const bool isEncrypted = item.type == 0x0009;
  return {{u"name"_s, nameOf(item)},
          {u"type"_s, digits(item.type, 4)},
          {u"flags"_s, digits(item.flags, 4)},
          {u"size"_s, item.value.size()},
          {u"sha256"_s,
           QString::fromLatin1(QCryptographicHash::hash(item.value, QCryptographicHash::Sha256).toHex())},
          {u"state"_s, isEncrypted ? u"encrypted"_s : u"whole"_s}};
}

quint16 statusOf(const MadeNote& note, bool bodyInRecord) {
  quint16 word = note.status;
  for (const MadeItem& item : note.items)
    if (item.type == 0x0003) word |= status::HasObject;
  return bodyInRecord ? word | status::BodyInRecord : word;
}

QJsonObject noteObject(const MadeNote& note) {
  QJsonArray responses, items;
  for (const quint32 id : note.responses) responses.append(digits(id, 0));
  for (const MadeItem& item : note.items) items.append(itemObject(item));
  QJsonObject object{
      {u"kind"_s, u"note"_s},
      {u"id"_s, digits(note.id, 0)},
      {u"unid"_s, unidText(note.unid)},
      {u"class"_s, digits(note.noteClass, 4)},
      {u"status"_s, digits(statusOf(note, note.bodyInRecord), 4)},
      {u"sequence"_s, qint64(note.sequence)},
      {u"sequenceTime"_s, timeText(note.sequenceTime)},
      {u"created"_s, timeText({{get32(note.unid, 8), get32(note.unid, 12)}})},
      {u"modified"_s, timeText(note.modified)},
      {u"added"_s, timeText(note.added)},
      {u"accessed"_s, timeText(note.accessed)},
      {u"responses"_s, responses},
      {u"items"_s, items},
  };
  if (note.parent) object[u"parent"_s] = digits(note.parent, 0);
  return object;
}

QJsonObject stubObject(const MadeNote& note) {
  return {{u"kind"_s, u"stub"_s},
          {u"id"_s, digits(note.id, 0)},
          {u"unid"_s, unidText(note.unid)},
          {u"class"_s, digits(note.noteClass, 4)},
          {u"sequence"_s, qint64(note.sequence)},
          {u"sequenceTime"_s, timeText(note.sequenceTime)},
          {u"deleted"_s, timeText(note.modified)}};
}

std::string textOf(const QJsonObject& object) {
  return QJsonDocument(object).toJson().toStdString();
}

TEST(NsfJson, EveryKeyOfEveryNoteIsWhatTheFileHas) {
  SampleIds ids;
  MadeDatabase described = sampleDatabase(&ids);
  MadeNote& odd = described.note(ids.parent);
  odd.accessed = {};
  odd.added = {{0x12345678, 0x00000001}};
  odd.sequence = 0x80000003;
  odd.noteClass = 0x9001;
  const auto read = readBytes(makeFile(described).bytes);
  int notes = 0;
  for (const MadeNote& note : described.notes) {
    if (note.stub) continue;
    ++notes;
    EXPECT_EQ(textOf(nsfNoteJson(noteOf(*read, note.id))), textOf(noteObject(note))) << note.id;
  }
  EXPECT_GT(notes, 30);
  ASSERT_EQ(read->stubs().size(), 1);
  EXPECT_EQ(textOf(nsfStubJson(read->stubs()[0])), textOf(stubObject(described.note(ids.stub))));
}

TEST(NsfJson, AnItemThatCannotBeReadHasNoDigest) {
  ChangedSample sample;
  sample.described.note(sample.ids.plain).bodyInBucket = true;
  const auto read = sample.read();
  const QJsonArray items = nsfNoteJson(noteOf(*read, sample.ids.plain))[u"items"].toArray();
  const QJsonObject body = items[5].toObject();
  EXPECT_EQ(body[u"state"], u"unreadable"_s);
  EXPECT_FALSE(body.contains(u"sha256"));
  EXPECT_EQ(body[u"size"].toInt(-1), 0);
  EXPECT_EQ(items[0].toObject(), itemObject(sample.described.note(sample.ids.plain).items[0]));
}

TEST(NsfJson, ADamagedItemIsMarkedAndHasItsBytes) {
  MadeDatabase described;
  MadeNote note = document(1);
  note.items.push_back({"Number", 0x0300, flag::Summary, "seven"});
  const quint32 id = described.add(note);
  const auto read = readBytes(makeFile(described).bytes);
  QJsonObject wanted = itemObject(note.items[1]);
  wanted[u"state"_s] = u"damaged"_s;
  EXPECT_EQ(nsfNoteJson(noteOf(*read, id))[u"items"].toArray()[1].toObject(), wanted);
}

TEST(NsfJson, AnAccessControlListHasItsFlagsAsTheyAre) {
  const auto read = readBytes(makeFile(sampleDatabase()).bytes);
  const QJsonObject json = nsfAclJson(*read->acl());
  EXPECT_EQ(json.keys(), QStringList({u"entries"_s, u"history"_s, u"roles"_s}));
  const QJsonObject ada = json[u"entries"].toArray()[1].toObject();
  const QJsonObject wanted{{u"name"_s, u"CN=Ada/O=T"_s},
                           {u"level"_s, 6},
                           {u"flags"_s, u"0020"_s},
                           {u"roles"_s, QJsonArray{u"[Clerk]"_s, u"[Boss]"_s}}};
  EXPECT_EQ(textOf(ada), textOf(wanted));
  EXPECT_EQ(json[u"roles"].toArray(), (QJsonArray{u"[Clerk]"_s, u"[Boss]"_s}));
  EXPECT_EQ(json[u"history"].toArray(), (QJsonArray{u"first line"_s, u"second line"_s}));
}

}  // namespace
}  // namespace lens::made
