#include "embedded/nsf/nsf_database.h"

#include <QCryptographicHash>
#include <algorithm>

#include "embedded/nsf/bucket_descriptors.h"
#include "embedded/nsf/bucket_map.h"
#include "embedded/nsf/data_buckets.h"
#include "embedded/nsf/note_items.h"
#include "embedded/nsf/nsf_attachment.h"
#include "embedded/nsf/nsf_header.h"
#include "embedded/nsf/nsf_id_table.h"
#include "embedded/nsf/nsf_index.h"
#include "embedded/nsf/object_frame.h"
#include "embedded/nsf/record_bytes.h"
#include "embedded/nsf/superblock.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr qint64 kPayloadPiece = 256 * 1024;
// Lists of IDs and of access are far smaller.
constexpr qint64 kLargestList = 32 * 1024 * 1024;

// The bytes of an object in order, with what tells in the end whether they were the right ones.
class PayloadReading {
 public:
  PayloadReading(const NsfSource& source, const NsfObject& object)
      : source_(source), object_(object), left_(object.payloadSize) {}

  // Empty at the end, and when they cannot be read.
  QByteArray next(qint64 most) {
    QByteArray piece;
    const qint64 count = std::min({most, left_, kPayloadPiece});
    if (count == 0) return piece;
    const qint64 at = object_.position + kObjectFrame + object_.payloadSize - left_;
    if (!source_.read(at, count, piece)) {
      failed_ = true;
      return {};
    }
    left_ -= count;
    if (!object_.key.isEmpty()) hash_.addData(piece);
    return piece;
  }

  // What was not asked for is read too: the key is that of all bytes.
  QString verdict() {
    while (!failed_ && left_ > 0) next(kPayloadPiece);
    if (failed_) return u"its bytes cannot be read"_s;
    if (object_.key.isEmpty()) return {};
    return object_.key.startsWith(hash_.result().toHex().toUpper()) ? QString()
                                                                    : u"its bytes are not those of its key"_s;
  }

 private:
  const NsfSource& source_;
  const NsfObject& object_;
  qint64 left_;
  bool failed_ = false;
  QCryptographicHash hash_{QCryptographicHash::Sha1};
};

QString refusalText(NsfRefusal refusal, int odsVersion) {
  switch (refusal) {
    case NsfRefusal::NotADatabase:
      return u"It is not a database."_s;
    case NsfRefusal::TooOld:
      return u"It was created by an older release (ODS %1), whose files are laid out otherwise."_s.arg(
          odsVersion);
    case NsfRefusal::Encrypted:
      return u"It is locally encrypted or damaged: no superblock can be recognised."_s;
    case NsfRefusal::Unsupported:
      return u"It is packed in a way that is not known."_s;
    case NsfRefusal::Damaged:
      return u"It is damaged: no table that leads to its notes is whole."_s;
    case NsfRefusal::None:
      break;
  }
  return {};
}

// Documents as the file's own list counts them.
bool isListedKind(const NsfEntry& entry) {
  return entry.kind == NsfKind::Note && noteclass::base(entry.noteClass) == noteclass::Document &&
         !(entry.status & (nsfstatus::Ghost | nsfstatus::NamedNote | nsfstatus::SoftDeleted));
}

}  // namespace

class NsfDatabase::Contents {
 public:
  Contents(std::unique_ptr<NsfSource> bytes, NsfReading reading) : source(std::move(bytes)) {
    refusal = open(reading);
    report.refused = refusalText(refusal, header.odsVersion);
  }

  NsfRefusal open(NsfReading reading);
  NsfRefusal openTables(NsfReading reading);
  void readIndex(const SuperblockChoice& superblock, const DescriptorChoice& descriptors, NsfReading reading);
  void compareWithList(const NsfIdTable& documents);
  void describeHeader();
  bool readNote(NsfEntry& entry, NsfNote& note);
  QString readList(quint32 objectId, QByteArray& bytes);

  std::unique_ptr<NsfSource> source;
  NsfRefusal refusal = NsfRefusal::None;
  NsfReport report;
  QByteArray headerBytes, superblocks;
  NsfHeader header;
  BucketDescriptors names;
  std::unique_ptr<BucketMap> buckets;
  std::unique_ptr<DataBuckets> dataBuckets;
  std::unique_ptr<NsfIndex> index;
};

NsfRefusal NsfDatabase::Contents::open(NsfReading reading) {
  report.path = source->path();
  report.size = source->size();
  if (!source->read(0, kNsfHeaderBytes, headerBytes) || !readNsfHeader(headerBytes, header))
    return NsfRefusal::NotADatabase;
  describeHeader();
  if (header.odsVersion < kOldestOds) return NsfRefusal::TooOld;
  superblocks = superblockHeads(*source, header);
  const NsfRefusal tables = openTables(reading);
  if (tables != NsfRefusal::None) return tables;
  // The header says that it is encrypted, and nothing proves the contrary.
  if (header.encryption != 0 && report.notesProven == 0 && report.notesFound > 0)
    return NsfRefusal::Encrypted;
  if (header.encryption != 0)
    report.add(
        {NsfProblemKind::Header, 0, 646, u"the header marks the file as encrypted, but it is not"_s, true});
  return NsfRefusal::None;
}

void NsfDatabase::Contents::describeHeader() {
  report.odsVersion = header.odsVersion;
  report.isTestedVersion = header.isTestedVersion();
  report.title = header.properties.title;
  report.replicaId = timeDateHex(header.properties.replicaId);
  report.databaseId = timeDateHex(header.properties.databaseId);
  report.databaseClass = header.properties.databaseClass;
  report.databaseFlags = header.properties.flags;
  report.replicationOptions = header.properties.replicationFlags;
  report.cutoffDays = header.properties.cutoffDays;
  report.truncated = source->size() < header.declaredSize;
  if (report.truncated)
    report.add({NsfProblemKind::Header, 0, source->size(),
                u"the file is cut short: it should have %1 bytes"_s.arg(header.declaredSize), true});
}

NsfRefusal NsfDatabase::Contents::openTables(NsfReading reading) {
  const SuperblockChoice superblock = chooseSuperblock(*source, header, report);
  const bool salvage = reading == NsfReading::Salvage;
  if (superblock.isUnsupported && !salvage) return NsfRefusal::Unsupported;
  if (superblock.block.slot == 0 && superblock.noneWasSigned && !salvage) return NsfRefusal::Encrypted;
  const DescriptorChoice descriptors = chooseDescriptors(*source, header, report);
  if (descriptors.isUnsupported && !salvage) return NsfRefusal::Unsupported;
  report.superblock = superblock.block.slot;
  report.olderSuperblock = superblock.isOlder;
  report.descriptors = descriptors.slot;
  report.olderDescriptors = descriptors.isOlder;
  readIndex(superblock, descriptors, reading);
  if (superblock.block.hasDocuments) compareWithList(superblock.block.documents);
  const bool lostTables = superblock.block.slot == 0 || descriptors.slot == 0;
  return lostTables && report.notesProven == 0 ? NsfRefusal::Damaged : NsfRefusal::None;
}

void NsfDatabase::Contents::readIndex(const SuperblockChoice& choice, const DescriptorChoice& descriptors,
                                      NsfReading reading) {
  const Superblock& superblock = choice.block;
  names = descriptors.block;
  const bool isLost = superblock.slot == 0;
  constexpr quint32 kAnyBucket = 0xFFFFFF;
  buckets = std::make_unique<BucketMap>(*source, report, superblock.bucketPositions, header.headerSize,
                                        isLost ? kAnyBucket : superblock.bucketCount);
  dataBuckets = std::make_unique<DataBuckets>(*source, superblock.dataBucketPositions);
  report.dataBuckets = int(superblock.otherBucketCount);
  index = std::make_unique<NsfIndex>(*source, *buckets, report);
  if (!isLost && superblock.currentIdBucket.isEmpty())
    report.add({NsfProblemKind::IdTable, 0, -1, u"the superblock holds no part of the table of IDs"_s});
  readIdBuckets(*source, descriptors.slot ? names.idBuckets() : findIdBuckets(*source, header.headerSize),
                superblock.currentIdBucket, report, [this](const IdPlace& place) { index->add(place); });
  report.salvaged = isLost || reading == NsfReading::Salvage;
  if (report.salvaged) index->addFoundRecords(reading == NsfReading::Salvage);
  index->prove();
}

void NsfDatabase::Contents::compareWithList(const NsfIdTable& documents) {
  report.listedDocuments = int(documents.count());
  if (!documents.isWhole())
    report.add({NsfProblemKind::NoteList, 0, -1, u"the file's list of documents is damaged"_s, true});
  // A list of more than all IDs is no list of this file.
  if (documents.count() > qint64(index->entries().size()) + 65536) return;
  documents.forEach([this](NoteId id) {
    const NsfEntry* const entry = index->find(id.value());
    if (entry && entry->kind == NsfKind::Note) return;
    ++report.listedButMissing;
    report.add(
        {NsfProblemKind::NoteList, id.value(), -1, u"it is listed as a document and cannot be read"_s});
  });
  for (const NsfEntry& entry : index->entries()) {
    if (!isListedKind(entry) || documents.contains(NoteId(entry.id))) continue;
    ++report.foundButUnlisted;
    report.add({NsfProblemKind::NoteList, entry.id, -1,
                u"it is not among the documents that the file lists"_s, true});
  }
}

bool NsfDatabase::Contents::readNote(NsfEntry& entry, NsfNote& note) {
  note = {};
  if (entry.kind != NsfKind::Note) return false;
  HeldRecord held;
  const QString fault = index->readRecord(entry, held);
  if (!fault.isEmpty() || held.record.isStub()) return false;
  note.header = held.record.header;
  note.status = held.record.status;
  note.parentId = held.record.parentId;
  const QString distrust = entry.overlaps ? u"its data runs into that of another note"_s : QString();
  const NoteFindings findings = readNoteItems(*source, *dataBuckets, held.record, names, distrust, note);
  if (!entry.counted) findings.mergeInto(report, note.header.id, held.position, note.items.size());
  entry.counted = true;
  return true;
}

QString NsfDatabase::Contents::readList(quint32 objectId, QByteArray& bytes) {
  const NsfEntry* const entry = index->find(objectId);
  NsfObject object;
  if (!entry || entry->kind != NsfKind::Object) return u"there is no such object"_s;
  QString fault = readObjectFrame(*source, objectId, bytePosition(entry->place), object);
  if (fault.isEmpty() && object.payloadSize > kLargestList) fault = u"it is larger than any list"_s;
  if (fault.isEmpty() && !source->read(object.position + kObjectFrame, object.payloadSize, bytes))
    fault = u"its bytes cannot be read"_s;
  return fault;
}

NsfDatabase::NsfDatabase(std::unique_ptr<NsfSource> source, NsfReading reading)
    : contents_(std::make_unique<Contents>(std::move(source), reading)) {}

NsfDatabase::~NsfDatabase() = default;

NsfRefusal NsfDatabase::refusal() const {
  return contents_->refusal;
}

const NsfReport& NsfDatabase::report() const {
  return contents_->report;
}

const NsfProperties& NsfDatabase::properties() const {
  return contents_->header.properties;
}

QVector<NoteId> NsfDatabase::noteIds() const {
  QVector<NoteId> ids;
  if (!isOpen()) return ids;
  ids.reserve(contents_->report.notesProven);
  for (const NsfEntry& entry : contents_->index->entries())
    if (entry.kind == NsfKind::Note) ids.push_back(NoteId(entry.id));
  return ids;
}

QVector<NoteId> NsfDatabase::notesWithObjects() const {
  QVector<NoteId> ids;
  if (!isOpen()) return ids;
  for (const NsfEntry& entry : contents_->index->entries())
    if (entry.kind == NsfKind::Note && entry.status & nsfstatus::HasObject) ids.push_back(NoteId(entry.id));
  return ids;
}

QVector<NsfStub> NsfDatabase::stubs() const {
  return isOpen() ? contents_->index->stubs() : QVector<NsfStub>();
}

NoteId NsfDatabase::noteIdOf(const Unid& unid) const {
  return isOpen() ? contents_->index->noteIdOf(unid) : NoteId();
}

NoteId NsfDatabase::specialNote(quint16 noteClass) const {
  const quint16 base = noteclass::base(noteClass);
  if (!isOpen() || base == 0) return {};
  const NoteId id(contents_->header.specialNotes[size_t(qCountTrailingZeroBits(base))]);
  const NsfEntry* const entry = contents_->index->find(id.value());
  return entry && entry->kind == NsfKind::Note && noteclass::base(entry->noteClass) == base ? id : NoteId();
}

bool NsfDatabase::readNote(NoteId id, NsfNote& note) {
  NsfEntry* const entry = isOpen() ? contents_->index->find(id.value()) : nullptr;
  return entry && contents_->readNote(*entry, note);
}

void NsfDatabase::forEachNote(const std::function<bool(NsfNote& note)>& visit) {
  for (const NoteId id : noteIds()) {
    NsfNote note;
    if (readNote(id, note) && !visit(note)) return;
  }
}

QVector<quint32> NsfDatabase::objectIds() const {
  QVector<quint32> ids;
  if (!isOpen()) return ids;
  for (const NsfEntry& entry : contents_->index->entries())
    if (entry.kind == NsfKind::Object) ids.push_back(entry.id);
  return ids;
}

bool NsfDatabase::object(quint32 id, NsfObject& object) const {
  const NsfEntry* const entry = isOpen() ? contents_->index->find(id) : nullptr;
  return entry && entry->kind == NsfKind::Object &&
         readObjectFrame(*contents_->source, id, bytePosition(entry->place), object).isEmpty();
}

QString NsfDatabase::readPayload(quint32 id, const NsfSink& sink) {
  NsfObject found;
  if (!object(id, found)) return u"there is no such object"_s;
  PayloadReading reading(*contents_->source, found);
  for (QByteArray piece = reading.next(kPayloadPiece); !piece.isEmpty(); piece = reading.next(kPayloadPiece))
    if (!sink(piece)) return u"it could not be written"_s;
  return reading.verdict();
}

QString NsfDatabase::readAttachment(const FileObject& file, const NsfSink& sink) {
  NsfObject found;
  if (!object(file.objectId, found)) return u"its bytes cannot be found"_s;
  const qint64 keySize = sizeByKey(found);
  if (keySize >= 0 && keySize != found.payloadSize) return u"it is stored outside the database"_s;
  PayloadReading reading(*contents_->source, found);
  const QString fault = unpackAttachment(
      file, found.payloadSize, [&](qsizetype most) { return reading.next(most); }, sink);
  return fault.isEmpty() ? reading.verdict() : fault;
}

std::optional<NsfAcl> NsfDatabase::acl() {
  if (!isOpen() || contents_->header.aclObject == 0) return std::nullopt;
  const quint32 id = contents_->header.aclObject;
  QByteArray bytes;
  std::optional<NsfAcl> acl;
  QString fault = contents_->readList(id, bytes);
  if (fault.isEmpty()) acl = readNsfAcl(bytes, fault);
  if (!fault.isEmpty()) contents_->report.add({NsfProblemKind::Acl, id, -1, fault});
  return acl;
}

QVector<NoteId> NsfDatabase::folderDocuments(const NsfNote& folder) {
  QVector<NoteId> documents;
  const auto item = std::find_if(folder.items.begin(), folder.items.end(), [](const NsfItem& one) {
    return one.item.type() == itemtype::Object && sameItemName(one.item.name, u"$FolderIDTable");
  });
  QByteArray bytes;
  if (!isOpen() || item == folder.items.end() ||
      !contents_->readList(objectIdOf(item->item.data()), bytes).isEmpty())
    return documents;
  const NsfIdTable table(bytes);
  if (table.count() > qint64(contents_->index->entries().size()) + 65536) return documents;
  table.forEach([&](NoteId id) { documents.push_back(id); });
  return documents;
}

bool NsfDatabase::hasChangedSince() const {
  const NsfSource& source = *contents_->source;
  QByteArray now;
  return !source.read(0, kNsfHeaderBytes, now) || now != contents_->headerBytes ||
         superblockHeads(source, contents_->header) != contents_->superblocks;
}

}  // namespace lens
