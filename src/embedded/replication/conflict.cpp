#include "embedded/replication/conflict.h"

#include <QtEndian>
#include <tuple>

#include "embedded/format/set_item.h"
#include "notes/literals.h"

namespace lens {
namespace {

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
    return std::tuple(version.live, version.sequence, instantOrder(version.sequenceTime),
                      version.stamp.writer, version.stamp.count);
  };
  return rank(a) > rank(b);
}

bool leavesConflict(const Note& note) {
  return noteclass::base(note.header.noteClass) == noteclass::Document && !isProfile(note);
}

void answerAsConflict(Note& note, const Unid& staying) {
  note.header.parent = staying;
  setItem(note, u"$REF"_s, noteRefsValue({staying}));
  setItem(note, u"$Conflict"_s, textValue(u""));
}

Note conflictDocument(const Note& loser, const VersionStamp& stamp) {
  Note conflict = loser;
  conflict.header.id = {};
  conflict.header.unid = conflictUnid(stamp, loser.header.sequenceTime);
  answerAsConflict(conflict, loser.header.unid);
  return conflict;
}

}  // namespace lens
