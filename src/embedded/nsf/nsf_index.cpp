#include "embedded/nsf/nsf_index.h"

#include <algorithm>
#include <cstring>
#include <numeric>

#include "embedded/nsf/note_data.h"
#include "embedded/nsf/object_frame.h"
#include "embedded/nsf/record_bytes.h"
#include "notes/literals.h"

namespace lens {
namespace {

// A note by itself is read whole.
constexpr qint64 kLargestRecord = 32 * 1024 * 1024;

}  // namespace

NsfIndex::NsfIndex(const NsfSource& source, BucketMap& buckets, NsfReport& report)
    : source_(source), buckets_(buckets), report_(report) {}

void NsfIndex::add(const IdPlace& place) {
  NsfEntry entry;
  entry.id = place.id;
  entry.inBucket = place.inBucket;
  entry.place = place.inBucket ? place.bucket : quint32(place.position / 256);
  entry.slot = quint16(place.slot);
  entries_.push_back(entry);
}

void NsfIndex::sortEntries() {
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const NsfEntry& a, const NsfEntry& b) { return a.id < b.id; });
}

QString NsfIndex::readRecord(const NsfEntry& entry, HeldRecord& held) const {
  QByteArrayView bytes;
  if (entry.inBucket) {
    held.bucket = buckets_.bucket(entry.place);
    if (!held.bucket) return u"bucket %1 of its table cannot be read"_s.arg(entry.place);
    qint64 offset = 0;
    const bool isSound = held.bucket->record(entry.slot, bytes, offset);
    held.position = buckets_.position(entry.place) + offset;
    if (!isSound) return u"slot %1 of bucket %2 leads nowhere"_s.arg(entry.slot).arg(entry.place);
    if (bytes.isEmpty()) return u"slot %1 of bucket %2 is empty"_s.arg(entry.slot).arg(entry.place);
  } else {
    held.position = bytePosition(entry.place);
    QByteArray head;
    if (!source_.read(held.position, NoteRecord::kStubHead, head))
      return u"it lies beyond the end of the file"_s;
    const qint64 size = RecordBytes(head).u32(2);
    if (size > kLargestRecord || !source_.read(held.position, qMax(size, NoteRecord::kStubHead), held.bytes))
      return u"it reaches beyond the end of the file"_s;
    bytes = held.bytes;
  }
  return readNoteRecord(bytes, entry.id, held.record);
}

void NsfIndex::refuse(NsfEntry& entry, NsfProblemKind kind, qint64 position, const QString& reason) {
  entry.kind = NsfKind::Unproven;
  report_.add({kind, entry.id, position, reason});
}

void NsfIndex::acceptNote(quint32 place, const NoteRecord& record, qint64 position) {
  NsfEntry& entry = entries_[place];
  entry.noteClass = record.header.noteClass;
  entry.status = record.status;
  if (record.isStub()) {
    entry.kind = NsfKind::Stub;
    ++report_.stubsFound;
    ++report_.stubsProven;
    stubs_.push_back(record.toStub());
    return;
  }
  entry.kind = NsfKind::Note;
  ++report_.notesFound;
  ++report_.notesProven;
  unids_.push_back(keyOf(record.header.unid, entry.id));
  if (!entry.inBucket) claims_.push_back({position, position + record.bytes.size(), place, true});
  if (record.hasDataOutside() && record.hasKnownPlace()) {
    const qint64 at = bytePosition(record.dataPlace);
    claims_.push_back({at, at + record.dataSize, place, false});
  }
}

void NsfIndex::proveInBucket(quint32 place) {
  HeldRecord held;
  const QString fault = readRecord(entries_[place], held);
  if (fault.isEmpty()) {
    acceptNote(place, held.record, held.position);
    return;
  }
  ++report_.notesFound;
  refuse(entries_[place], NsfProblemKind::NoteRecord, held.position, fault);
}

void NsfIndex::proveByItself(quint32 place) {
  NsfEntry& entry = entries_[place];
  const qint64 position = bytePosition(entry.place);
  QByteArray mark;
  if (source_.read(position, 2, mark) && RecordBytes(mark).isSigned(nsfsignature::Note)) {
    proveInBucket(place);
    return;
  }
  ++report_.objectsFound;
  NsfObject object;
  const QString fault = readObjectFrame(source_, entry.id, position, object);
  if (!fault.isEmpty()) {
    refuse(entry, NsfProblemKind::ObjectRecord, position, fault);
    return;
  }
  ++report_.objectsProven;
  entry.kind = NsfKind::Object;
  claims_.push_back({position, position + kObjectFrame + object.payloadSize, place, true});
}

void NsfIndex::prove() {
  sortEntries();
  report_.entries = int(entries_.size());
  // Bucket by bucket, so that each is read once, wherever the notes of neighbouring IDs lie.
  std::vector<quint32> order(entries_.size());
  std::iota(order.begin(), order.end(), 0);
  std::sort(order.begin(), order.end(), [this](quint32 a, quint32 b) {
    const NsfEntry &left = entries_[a], &right = entries_[b];
    return std::tuple(left.inBucket, left.place, left.slot, left.id) <
           std::tuple(right.inBucket, right.place, right.slot, right.id);
  });
  for (const quint32 place : order) {
    if (entries_[place].inBucket)
      proveInBucket(place);
    else
      proveByItself(place);
  }
  std::sort(stubs_.begin(), stubs_.end(), [](const NsfStub& a, const NsfStub& b) { return a.id < b.id; });
  findOverlaps();
  findDoubleUnids();
}

bool NsfIndex::readBlockHead(const NsfEntry& entry) const {
  HeldRecord held;
  QByteArray head;
  return readRecord(entry, held).isEmpty() &&
         source_.read(bytePosition(held.record.dataPlace), NoteData::kBlockHead, head) &&
         NoteData::isBlockOf(head, held.record);
}

// What runs into the proven head of something else claims too much. Without this a few bytes could be shown
// as the contents of thousands of notes.
void NsfIndex::findOverlaps() {
  std::sort(claims_.begin(), claims_.end(),
            [](const Claim& a, const Claim& b) { return std::tie(a.at, a.entry) < std::tie(b.at, b.entry); });
  qint64 end = 0;
  bool anyOverlap = false;
  for (const Claim& claim : claims_) {
    anyOverlap |= claim.at < end;
    end = qMax(end, claim.end);
  }
  if (anyOverlap) {
    for (Claim& claim : claims_) claim.isProven = claim.isProven || readBlockHead(entries_[claim.entry]);
    qint64 nextProven = source_.size();
    for (auto claim = claims_.rbegin(); claim != claims_.rend(); ++claim) {
      if (claim->isProven && claim->end > nextProven) {
        NsfEntry& entry = entries_[claim->entry];
        const QString reason = u"it runs into what lies at byte %1"_s.arg(nextProven);
        if (entry.kind == NsfKind::Object) {
          --report_.objectsProven;
          refuse(entry, NsfProblemKind::ObjectRecord, claim->at, reason);
        } else {
          entry.overlaps = true;
          report_.add({NsfProblemKind::NonSummary, entry.id, claim->at, reason});
        }
      }
      if (claim->isProven) nextProven = claim->at;
    }
  }
  claims_ = {};
}

NsfIndex::KnownUnid NsfIndex::keyOf(const Unid& unid, quint32 id) {
  const QByteArray bytes = unid.bytes();
  KnownUnid key{0, 0, id};
  std::memcpy(&key.file, bytes.constData(), 8);
  std::memcpy(&key.note, bytes.constData() + 8, 8);
  return key;
}

void NsfIndex::findDoubleUnids() {
  std::sort(unids_.begin(), unids_.end());
  for (size_t i = 1; i < unids_.size(); ++i) {
    const KnownUnid &before = unids_[i - 1], &here = unids_[i];
    if (before.file == here.file && before.note == here.note)
      report_.add({NsfProblemKind::NoteRecord, here.id, -1,
                   u"note %1 has the same UNID"_s.arg(NoteId(before.id).hexText()), true});
  }
}

NsfEntry* NsfIndex::find(quint32 id) {
  const auto found =
      std::lower_bound(entries_.begin(), entries_.end(), id,
                       [](const NsfEntry& entry, quint32 wanted) { return entry.id < wanted; });
  return found != entries_.end() && found->id == id ? &*found : nullptr;
}

NoteId NsfIndex::noteIdOf(const Unid& unid) const {
  const KnownUnid wanted = keyOf(unid, 0);
  const auto known = std::lower_bound(unids_.begin(), unids_.end(), wanted);
  return known != unids_.end() && known->file == wanted.file && known->note == wanted.note ? NoteId(known->id)
                                                                                           : NoteId();
}

void NsfIndex::addFoundRecords(bool all) {
  struct Found {
    quint32 sequence;
    quint64 modified;
    NsfEntry entry;
  };
  QHash<quint32, Found> found;
  for (const quint32 number : buckets_.searchAll()) {
    const auto bucket = buckets_.bucket(number);
    if (!bucket) continue;
    for (quint32 slot = 1; slot <= bucket->slots(); ++slot) {
      QByteArrayView bytes;
      qint64 offset = 0;
      NoteRecord record;
      if (!bucket->record(slot, bytes, offset) || bytes.isEmpty()) continue;
      const quint32 id = RecordBytes(bytes).u32(6);
      if (id % 4 != 2 || !readNoteRecord(bytes, id, record).isEmpty()) continue;
      const Found here{record.header.sequence,
                       instantOrder(record.header.modified),
                       {.id = id, .place = number, .slot = quint16(slot), .inBucket = true}};
      const auto known = found.constFind(id);
      if (known == found.constEnd() ||
          std::tie(known->sequence, known->modified) < std::tie(here.sequence, here.modified))
        found.insert(id, here);
    }
  }
  if (all) std::erase_if(entries_, [](const NsfEntry& entry) { return entry.inBucket; });
  sortEntries();
  const qsizetype known = qsizetype(entries_.size());
  for (const Found& record : std::as_const(found)) {
    const auto place =
        std::lower_bound(entries_.begin(), entries_.begin() + known, record.entry.id,
                         [](const NsfEntry& entry, quint32 wanted) { return entry.id < wanted; });
    if (place == entries_.begin() + known || place->id != record.entry.id) entries_.push_back(record.entry);
  }
}

}  // namespace lens
