// Which notes and objects a real database has: each ID in use with its place, proven or not.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QVector>
#include <memory>
#include <vector>

#include "embedded/nsf/bucket_map.h"
#include "embedded/nsf/id_buckets.h"
#include "embedded/nsf/note_record.h"
#include "embedded/nsf/nsf_note.h"
#include "embedded/nsf/nsf_report.h"

namespace lens {

enum class NsfKind : quint8 { Unproven, Note, Stub, Object };

struct NsfEntry {
  quint32 id = 0;
  quint32 place = 0;  // number of the bucket, or the position
  quint16 slot = 0;
  quint16 noteClass = 0, status = 0;
  NsfKind kind = NsfKind::Unproven;
  bool inBucket = false;  // else it lies by itself, at the position
  bool overlaps = false;  // what it has outside its record runs into something proven
  bool counted = false;   // in the report
};

// The record of a note with what keeps its bytes.
struct HeldRecord {
  NoteRecord record;
  qint64 position = -1;  // in the file
  std::shared_ptr<const SummaryBucket> bucket;
  QByteArray bytes;
};

class NsfIndex {
 public:
  NsfIndex(const NsfSource& source, BucketMap& buckets, NsfReport& report);

  void add(const IdPlace& place);
  // Records that no entry leads to: they are found by looking through all buckets. With "all" the entries of
  // notes count for nothing before them.
  void addFoundRecords(bool all);
  // Looks at the head of everything once. Afterwards nothing is added.
  void prove();

  const std::vector<NsfEntry>& entries() const { return entries_; }  // in order of ID
  NsfEntry* find(quint32 id);
  const NsfEntry* find(quint32 id) const { return const_cast<NsfIndex*>(this)->find(id); }
  NoteId noteIdOf(const Unid& unid) const;
  const QVector<NsfStub>& stubs() const { return stubs_; }
  // "" with the record of a note or stub; else why it cannot be shown.
  QString readRecord(const NsfEntry& entry, HeldRecord& held) const;

 private:
  struct KnownUnid {
    quint64 file, note;
    quint32 id;
    auto operator<=>(const KnownUnid&) const = default;
  };
  // Bytes of the file that an entry claims for itself outside the buckets.
  struct Claim {
    qint64 at, end;
    quint32 entry;
    bool isProven;
  };
  void sortEntries();
  void proveInBucket(quint32 place);
  void proveByItself(quint32 place);
  void acceptNote(quint32 place, const NoteRecord& record, qint64 position);
  void refuse(NsfEntry& entry, NsfProblemKind kind, qint64 position, const QString& reason);
  bool readBlockHead(const NsfEntry& entry) const;
  void findOverlaps();
  void findDoubleUnids();
  static KnownUnid keyOf(const Unid& unid, quint32 id);

  const NsfSource& source_;
  BucketMap& buckets_;
  NsfReport& report_;
  std::vector<NsfEntry> entries_;
  std::vector<KnownUnid> unids_;
  std::vector<Claim> claims_;
  QVector<NsfStub> stubs_;
};

}  // namespace lens
