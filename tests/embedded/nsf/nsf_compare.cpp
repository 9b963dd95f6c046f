#include "embedded/nsf/nsf_compare.h"

#include <map>

#include "embedded/nsf/maker/made_bytes.h"
#include "notes/literals.h"

namespace lens::made {
namespace {

bool sameTime(const TimeDate& a, const TimeDate& b) {
  return a.innards[0] == b.innards[0] && a.innards[1] == b.innards[1];
}

bool isSealedType(quint16 type) {
  return (type >= 0x0009 && type <= 0x000B) || type == 0x001F;
}

// Names of the tests have these letters of code page 850 beyond ASCII.
QString nameText(const QByteArray& stored) {
  QString text;
  for (const char byte : stored)
    text += byte == '\x81' ? QChar(0xFC) : byte == '\x82' ? QChar(0xE9) : QLatin1Char(byte);
  return text;
}

struct Difference {
  QString text;
  // The first one is told.
  void unless(bool same, const QString& what) {
    if (!same && text.isEmpty()) text = what;
  }
};

QString itemDifference(const NsfItem& read, const MadeItem& made) {
  QByteArray value;
  add16(value, made.type);
  value += made.value;
  const NsfItemState state = isSealedType(made.type) ? NsfItemState::Sealed : NsfItemState::Whole;
  Difference found;
  found.unless(read.item.value == value,
               u"value of %1 and not %2 bytes, type %3 and not %4"_s.arg(read.item.value.size())
                   .arg(value.size())
                   .arg(read.item.value.size() >= 2 ? read.item.type() : 0xFFFF, 0, 16)
                   .arg(made.type, 0, 16));
  found.unless(read.item.flags == made.flags,
               u"flags %1 and not %2"_s.arg(read.item.flags, 0, 16).arg(made.flags, 0, 16));
  found.unless(made.part < 0 || read.part == made.part, u"part %1"_s.arg(read.part));
  found.unless(read.changedIn == made.changedIn, u"changed in %1"_s.arg(read.changedIn));
  found.unless(read.state == state, u"state %1"_s.arg(int(read.state)));
  return found.text;
}

TimeDate createdIn(const QByteArray& unid) {
  return {{get32(unid, 8), get32(unid, 12)}};
}

}  // namespace

QString difference(const NsfNote& read, const MadeNote& made) {
  const NoteHeader& header = read.header;
  Difference found;
  found.unless(header.id.value() == made.id, u"ID %1"_s.arg(header.id.hexText()));
  found.unless(header.unid.text() == unidText(made.unid), u"UNID %1"_s.arg(header.unid.text()));
  found.unless(header.noteClass == made.noteClass, u"class %1"_s.arg(header.noteClass, 0, 16));
  found.unless(header.sequence == made.sequence,
               u"sequence %1 and not %2"_s.arg(header.sequence).arg(made.sequence));
  found.unless(sameTime(header.sequenceTime, made.sequenceTime), u"sequence time"_s);
  found.unless(sameTime(header.created, createdIn(made.unid)), u"time of creation"_s);
  found.unless(sameTime(header.modified, made.modified), u"time of change"_s);
  found.unless(sameTime(header.added, made.added), u"time of arrival"_s);
  found.unless(sameTime(header.accessed, made.accessed), u"time of access"_s);
  constexpr quint16 kByItself = status::HasObject | status::BodyInRecord;
  found.unless((read.status & ~kByItself) == (made.status & ~kByItself),
               u"status %1"_s.arg(read.status, 0, 16));
  found.unless(read.parentId.value() == made.parent, u"parent %1"_s.arg(read.parentId.hexText()));
  found.unless(read.responses.size() == made.responses.size(), u"%1 responses"_s.arg(read.responses.size()));
  for (qsizetype i = 0; i < std::min(read.responses.size(), made.responses.size()); ++i)
    found.unless(read.responses[i].value() == made.responses[i], u"response %1"_s.arg(i));
  found.unless(read.items.size() == made.items.size(),
               u"%1 items and not %2"_s.arg(read.items.size()).arg(made.items.size()));
  std::map<QByteArray, QString> written;
  for (qsizetype i = 0; i < std::min(read.items.size(), made.items.size()) && found.text.isEmpty(); ++i) {
    const QString item = u"item %1, %2: "_s.arg(i).arg(nameText(made.items[i].name));
    found.unless(read.items[i].item.name == nameText(made.items[i].name), item + read.items[i].item.name);
    const QString inItem = itemDifference(read.items[i], made.items[i]);
    found.unless(inItem.isEmpty(), item + inItem);
  }
  return found.text;
}

QString difference(NsfDatabase& read, const MadeDatabase& made, const QSet<quint32>& besides) {
  if (!read.isOpen()) return u"not opened: "_s + read.report().refused;
  std::map<quint32, const MadeNote*> notes, stubs;
  for (const MadeNote& note : made.notes) (note.stub ? stubs : notes)[note.id] = &note;
  std::map<quint32, bool> seen;
  Difference found;
  read.forEachNote([&](NsfNote& note) {
    const quint32 id = note.header.id.value();
    const QString name = u"note %1: "_s.arg(note.header.id.hexText());
    found.unless(seen.empty() || id > seen.rbegin()->first, name + u"out of order"_s);
    seen[id] = true;
    const auto described = notes.find(id);
    found.unless(described != notes.end(), name + u"nobody wrote it"_s);
    if (described == notes.end() || besides.contains(id)) return true;
    const QString inNote = difference(note, *described->second);
    found.unless(inNote.isEmpty(), name + inNote);
    return true;
  });
  for (const auto& [id, note] : notes)
    found.unless(seen.contains(id) || besides.contains(id), u"note %1 is missing"_s.arg(id, 0, 16));
  std::map<quint32, bool> seenStubs;
  for (const NsfStub& stub : read.stubs()) {
    const auto described = stubs.find(stub.id.value());
    const QString name = u"stub %1: "_s.arg(stub.id.hexText());
    seenStubs[stub.id.value()] = true;
    found.unless(described != stubs.end() || besides.contains(stub.id.value()), name + u"nobody wrote it"_s);
    if (described == stubs.end() || besides.contains(stub.id.value())) continue;
    const MadeNote& note = *described->second;
    found.unless(stub.unid.text() == unidText(note.unid), name + u"UNID"_s);
    found.unless(stub.noteClass == note.noteClass, name + u"class"_s);
    found.unless(stub.sequence == note.sequence, name + u"sequence"_s);
    found.unless(sameTime(stub.sequenceTime, note.sequenceTime), name + u"sequence time"_s);
    found.unless(sameTime(stub.deleted, note.modified), name + u"time"_s);
  }
  for (const auto& [id, note] : stubs)
    found.unless(seenStubs.contains(id) || besides.contains(id), u"stub %1 is missing"_s.arg(id, 0, 16));
  return found.text;
}

QString objectsDifference(NsfDatabase& read, const MadeDatabase& made) {
  Difference found;
  found.unless(read.objectIds().size() == made.objects.size(), u"%1 objects"_s.arg(read.objectIds().size()));
  for (const MadeObject& object : made.objects) {
    const QString name = u"object %1: "_s.arg(object.id, 0, 16);
    NsfObject shown;
    found.unless(read.object(object.id, shown), name + u"not shown"_s);
    found.unless(shown.payloadSize == object.payload.size(), name + u"size"_s);
    found.unless(shown.ownerClass == object.noteClass && shown.type == object.type,
                 name + u"class or type"_s);
    found.unless(shown.key.isEmpty() == !object.keyed, name + u"key"_s);
    QByteArray payload;
    const QString reason = read.readPayload(object.id, [&](QByteArrayView piece) {
      payload.append(piece);
      return true;
    });
    found.unless(reason.isEmpty(), name + reason);
    found.unless(payload == object.payload, name + u"bytes"_s);
  }
  return found.text;
}

std::unique_ptr<NsfDatabase> readBytes(const QByteArray& bytes, NsfReading reading) {
  return std::make_unique<NsfDatabase>(std::make_unique<NsfBytesSource>(bytes), reading);
}

}  // namespace lens::made
