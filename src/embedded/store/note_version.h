// Versions of a note across the replicas of its database: which one came out of which.
//
// Every saved state of a note has a stamp, and a note remembers the stamps that went before: its version
// vector. A version whose stamp the other one's version vector knows is older; two that do not know each
// other were changed on both sides since they were the same. That holds in chains of replicas as well as in
// pairs, and needs no memory of who replicated with whom.
//
// A stamp is a writer, new with every opening of a file, and its count of saves. One writer's saves of a
// note follow each other, so a version vector keeps only the last of each. A copied or restored file is no
// danger: whoever opens it next is another writer.
#pragma once

#include "embedded/format/note.h"

namespace lens {

struct VersionStamp {
  quint64 writer = 0;
  quint64 count = 0;
  bool operator==(const VersionStamp&) const = default;
};

// The stamp of a note that was never changed since it came into being: the same wherever it is computed.
VersionStamp originalStamp(const Unid& unid, quint32 sequence, const TimeDate& sequenceTime);
// A stamp that follows from another one, alike in every replica where it is made for the same reason.
VersionStamp derivedStamp(const VersionStamp& from, QByteArrayView reason);

class VersionVector {
 public:
  VersionVector() = default;
  explicit VersionVector(const VersionStamp& first) { add(first); }
  static VersionVector fromBytes(QByteArrayView bytes);
  QByteArray bytes() const;

  // Of the version itself; the last that was added.
  const VersionStamp& stamp() const { return stamps_.last(); }
  bool isNull() const { return stamps_.isEmpty(); }
  // Whether that version went into this one, or is it.
  bool knows(const VersionStamp& stamp) const;
  // A new version that comes out of this one. The oldest stamps are forgotten after some hundred writers;
  // a replica that was away for so long gets a conflict document rather than a lost change.
  void add(const VersionStamp& stamp);
  // Takes over what the other one knows; the version stays what it is.
  void absorb(const VersionVector& other);

 private:
  QVector<VersionStamp> stamps_;
};

// A live note or a stub, without its items.
struct NoteVersion {
  NoteId id;
  Unid unid;
  quint16 noteClass = 0;
  bool live = false;
  quint32 sequence = 0;
  TimeDate sequenceTime;
  VersionStamp stamp;
};

}  // namespace lens
