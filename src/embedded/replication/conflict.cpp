#include "embedded/replication/conflict.h"

#include <QtEndian>
#include <tuple>

namespace lens {
namespace {

// Instants in order, whatever their zones.
quint64 orderOf(const TimeDate& time) {
  return quint64(time.innards[1] & 0x00FFFFFF) << 32 | time.innards[0];
}

// The random half follows from the version; the other half is a time, as in every UNID.
Unid conflictUnid(const VersionStamp& stamp, const TimeDate& time) {
  const VersionStamp derived = derivedStamp(stamp, "conflict");
  QByteArray bytes(8, Qt::Uninitialized);
  qToLittleEndian(derived.writer, bytes.data());
  appendTimeDate(bytes, time);
  return Unid::fromBytes(bytes);
}

}  // namespace

bool outranks(const NoteVersion& a, const NoteVersion& b) {
  const auto rank = [](const NoteVersion& version) {
    return std::tuple(version.live, version.sequence, orderOf(version.sequenceTime), version.stamp.writer,
                      version.stamp.count);
  };
  return rank(a) > rank(b);
}

bool leavesConflict(const Note& note) {
  return noteclass::base(note.header.noteClass) == noteclass::Document && !isProfile(note);
}

Note conflictDocument(const Note& loser, const VersionStamp& stamp) {
  Note conflict = loser;
  conflict.header.id = 0;
  conflict.header.unid = conflictUnid(stamp, loser.header.sequenceTime);
  conflict.header.parent = loser.header.unid;
  conflict.items.removeIf([](const Item& item) {
    return sameItemName(item.name, u"$REF") || sameItemName(item.name, u"$Conflict");
  });
  conflict.add(QStringLiteral("$REF"), itemflag::Summary, noteRefsValue({loser.header.unid.text()}));
  conflict.add(QStringLiteral("$Conflict"), itemflag::Summary, textValue(u""));
  return conflict;
}

}  // namespace lens
