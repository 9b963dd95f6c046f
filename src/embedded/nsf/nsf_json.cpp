#include "embedded/nsf/nsf_json.h"

#include <QCryptographicHash>
#include <QJsonArray>

#include "notes/literals.h"

namespace lens {
namespace {

QString hexWord(quint16 word) {
  return u"%1"_s.arg(word, 4, 16, QLatin1Char('0')).toUpper();
}

// In UTC with hundredths; null for no time, the two words as digits for what is none.
QJsonValue timeJson(const TimeDate& time) {
  if (isClearedTime(time)) return QJsonValue::Null;
  const QDateTime instant = instantOf(time);
  if (!instant.isValid()) return timeDateHex(time);
  return instant.toString(
      u"yyyy-MM-ddTHH:mm:ss.%1Z"_s.arg(instant.time().msec() / 10, 2, 10, QLatin1Char('0')));
}

QJsonObject itemJson(const NsfItem& item) {
  const QByteArrayView data = item.item.data();
  QJsonObject json{{u"name"_s, item.item.name},
                   {u"type"_s, hexWord(item.item.type())},
                   {u"flags"_s, hexWord(item.item.flags)},
                   {u"size"_s, qint64(data.size())},
                   {u"state"_s, QString(nsfStateText(item.state))}};
  if (item.state != NsfItemState::Unreadable)
    json[u"sha256"_s] =
        QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex());
  return json;
}

QJsonObject identityJson(QLatin1String kind, NoteId id, const Unid& unid, quint16 noteClass, quint32 sequence,
                         const TimeDate& sequenceTime) {
  return {{u"kind"_s, QString(kind)},        {u"id"_s, id.hexText()},
          {u"unid"_s, unid.text()},          {u"class"_s, hexWord(noteClass)},
          {u"sequence"_s, qint64(sequence)}, {u"sequenceTime"_s, timeJson(sequenceTime)}};
}

}  // namespace

QLatin1String nsfStateText(NsfItemState state) {
  switch (state) {
    case NsfItemState::Whole:
      return "whole"_L1;
    case NsfItemState::Sealed:
      return "encrypted"_L1;
    case NsfItemState::Damaged:
      return "damaged"_L1;
    case NsfItemState::Unreadable:
      break;
  }
  return "unreadable"_L1;
}

QJsonObject nsfNoteJson(const NsfNote& note) {
  const NoteHeader& header = note.header;
  QJsonObject json =
      identityJson("note"_L1, header.id, header.unid, header.noteClass, header.sequence, header.sequenceTime);
  json[u"status"_s] = hexWord(note.status);
  json[u"created"_s] = timeJson(header.created);
  json[u"modified"_s] = timeJson(header.modified);
  json[u"added"_s] = timeJson(header.added);
  json[u"accessed"_s] = timeJson(header.accessed);
  if (note.parentId) json[u"parent"_s] = note.parentId.hexText();
  QJsonArray responses, items;
  for (const NoteId id : note.responses) responses.append(id.hexText());
  for (const NsfItem& item : note.items) items.append(itemJson(item));
  json[u"responses"_s] = responses;
  json[u"items"_s] = items;
  return json;
}

QJsonObject nsfStubJson(const NsfStub& stub) {
  QJsonObject json =
      identityJson("stub"_L1, stub.id, stub.unid, stub.noteClass, stub.sequence, stub.sequenceTime);
  json[u"deleted"_s] = timeJson(stub.deleted);
  return json;
}

QJsonObject nsfAclJson(const NsfAcl& acl) {
  QJsonArray entries;
  for (const NsfAclEntry& entry : acl.entries)
    entries.append(QJsonObject{{u"name"_s, entry.name},
                               {u"level"_s, entry.level},
                               {u"flags"_s, hexWord(entry.flags)},
                               {u"roles"_s, QJsonArray::fromStringList(acl.rolesOf(entry))}});
  QJsonArray roles;
  for (qsizetype i = 0; i < acl.roleNames.size(); ++i)
    if (!acl.roleNames[i].isEmpty()) roles.append(acl.role(i));
  return {
      {u"entries"_s, entries}, {u"roles"_s, roles}, {u"history"_s, QJsonArray::fromStringList(acl.history)}};
}

}  // namespace lens
