#include "embedded/nsf/note_items.h"

#include "embedded/format/stored_lists.h"
#include "embedded/nsf/note_data.h"
#include "embedded/nsf/record_bytes.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"

namespace lens {
namespace {

// A flag of storage: the type is the usual one of the name and does not stand before the value.
constexpr quint16 kPlainType = 0x0008;
// Behind the summary a record may be longer by so much; with responses by these and two words.
constexpr qint64 kRecordSlack = 11, kResponseSlack = 8;

bool isSealedType(quint16 type) {
  constexpr quint16 kSeal = 0x0009, kSealedData = 0x000A, kSealList = 0x000B, kSeal2 = 0x001F;
  return type == kSeal || type == kSealedData || type == kSealList || type == kSeal2;
}

struct ItemEntry {
  quint16 name, flags, size;
  quint8 part, changedIn;

  ItemEntry(const RecordBytes& record, qint64 at)
      : name(record.u16(at)),
        flags(record.u16(at + 2)),
        size(record.u16(at + 4)),
        part(record.u8(at + 6)),
        changedIn(record.u8(at + 7)) {}
  bool isSummary() const { return flags & itemflag::Summary; }
  bool isPlain() const { return flags & kPlainType; }
};

bool walksToItsEnd(QByteArrayView records) {
  while (!records.isEmpty()) {
    const qsizetype length = richrecord::wholeLength(records);
    if (length == 0) return false;
    // Each begins at an even place; the filler behind the last one may lack.
    records = records.sliced(qMin(length + length % 2, records.size()));
  }
  return true;
}

// The reading of one note.
class ItemReading {
 public:
  ItemReading(const NsfSource& source, const DataBuckets& buckets, const NoteRecord& record,
              const BucketDescriptors& names, const QString& distrust, NsfNote& note)
      : record_(record),
        bytes_(record.bytes),
        names_(names),
        note_(note),
        entries_(
            qMin<qint64>(record.itemCount, (bytes_.size() - NoteRecord::kHead) / NoteRecord::kItemEntry)),
        summaryAt_(NoteRecord::kHead + NoteRecord::kItemEntry * qint64(record.itemCount)) {
    addUpSizes();
    summaryEnd_ = summaryAt_ + summarySize_;
    data_.emplace(source, buckets, record, summaryEnd_,
                  [this](QByteArrayView data, quint32 checksum) { return isData(data, checksum); });
    dataFault_ = data_->reason().isEmpty() && data_->hasBlock() ? distrust : data_->reason();
  }

  NoteFindings run() {
    tellOfTheWhole();
    note_.items.reserve(entries_);
    for (qint64 i = 0; i < entries_; ++i)
      readItem(ItemEntry(bytes_, NoteRecord::kHead + i * NoteRecord::kItemEntry));
    findings_.hasBlock = data_->hasBlock();
    if (data_->hasBlock() && dataFault_.isEmpty() && checksum_ != data_->checksum()) {
      findings_.checksumWrong = true;
      tell(NsfProblemKind::NonSummary, QStringLiteral("the checksum of its data is wrong"), true);
    }
    readResponses();
    return std::move(findings_);
  }

 private:
  void tell(NsfProblemKind kind, const QString& reason, bool isWarning = false) {
    findings_.problems.push_back({kind, 0, -1, reason, isWarning});
  }

  void addUpSizes() {
    for (qint64 i = 0; i < entries_; ++i) {
      const ItemEntry entry(bytes_, NoteRecord::kHead + i * NoteRecord::kItemEntry);
      (entry.isSummary() ? summarySize_ : dataSize_) += entry.size;
    }
  }

  // The checksum takes each value alone.
  bool isData(QByteArrayView data, quint32 checksum) const {
    if (data.size() != dataSize_) return false;
    quint32 sum = 0;
    for (qint64 i = 0; i < entries_; ++i) {
      const ItemEntry entry(bytes_, NoteRecord::kHead + i * NoteRecord::kItemEntry);
      if (entry.isSummary()) continue;
      sum ^= xorOfWords(data.first(entry.size));
      data = data.sliced(entry.size);
    }
    return sum == checksum;
  }

  void tellOfTheWhole() {
    if (entries_ < record_.itemCount) tell(NsfProblemKind::NoteRecord, u"its table of items is cut short"_s);
    if (!dataFault_.isEmpty() && (dataSize_ > 0 || record_.dataSize > 0))
      tell(NsfProblemKind::NonSummary, dataFault_);
    dataAddsUp_ = dataSize_ == data_->size();
    if (dataFault_.isEmpty() && !dataAddsUp_)
      tell(NsfProblemKind::NonSummary, u"the sizes of its items do not add up to its data"_s);
    if (data_->isOtherSequence())
      tell(NsfProblemKind::NonSummary, u"its data was written with another state of the note"_s, true);
    const qint64 inside = record_.hasDataInside() ? record_.dataSize : 0;
    const qint64 responses = record_.responseCount ? 4 * qint64(record_.responseCount) + kResponseSlack : 0;
    if (bytes_.size() - summaryEnd_ - inside > kRecordSlack + responses)
      tell(NsfProblemKind::NoteRecord, u"its record is longer than its items"_s, true);
  }

  void readItem(const ItemEntry& entry) {
    NsfItem read;
    read.part = entry.part;
    read.changedIn = entry.changedIn;
    read.item.flags = entry.flags & ~kPlainType;
    quint16 type = itemtype::Unknown;
    if (!names_.name(entry.name, read.item.name, type)) {
      read.item.name = u"?%1"_s.arg(entry.name, 4, 16, QLatin1Char('0')).toUpper();
      if (!tableBroken_)
        tell(NsfProblemKind::Item,
             u"item %1 has a name that the file does not know"_s.arg(note_.items.size() + 1));
      tableBroken_ = true;
    }
    QByteArrayView stored;
    QString fault =
        entry.isSummary() ? takeSummary(entry.size, stored) : takeData(entry.size, stored, read.state);
    if (fault.isEmpty()) fault = makeValue(entry, type, stored, read);
    if (read.item.value.isEmpty()) read.item.value = rawValue(type, {});
    if (!fault.isEmpty()) {
      if (read.state == NsfItemState::Whole) read.state = NsfItemState::Damaged;
      if (fault != dataFault_) tell(NsfProblemKind::Item, u"item %1: "_s.arg(read.item.name) + fault);
    } else if (tableBroken_ || (!entry.isSummary() && !dataAddsUp_)) {
      read.state = NsfItemState::Damaged;
    } else if (isSealedType(read.item.type())) {
      read.state = NsfItemState::Sealed;
    }
    count(read.state);
    note_.items.push_back(std::move(read));
  }

  QString takeSummary(qint64 size, QByteArrayView& stored) {
    // One that does not fit moves the place of all behind it.
    const qint64 at = summaryAt_, end = record_.hasDataInside() && dataFault_.isEmpty()
                                            ? qint64(record_.dataPlace)
                                            : bytes_.size();
    summaryAt_ += size;
    if (at + size > end) return QStringLiteral("its value does not lie in the record");
    stored = bytes_.part(at, size);
    return {};
  }

  QString takeData(qint64 size, QByteArrayView& stored, NsfItemState& state) {
    if (size == 0) return {};
    if (!dataFault_.isEmpty()) {
      state = NsfItemState::Unreadable;
      return dataFault_;
    }
    if (!data_->take(size, stored)) return QStringLiteral("its value does not lie in the data of the note");
    checksum_ ^= xorOfWords(stored);
    return {};
  }

  // The type word stands before the value, unless it is that of the name.
  QString makeValue(const ItemEntry& entry, quint16 usualType, QByteArrayView stored, NsfItem& read) {
    if (entry.isPlain()) {
      read.item.value = rawValue(usualType, stored);
    } else if (stored.size() < 2) {
      return QStringLiteral("it has no type");
    } else {
      read.item.value = stored.toByteArray();
    }
    if (!fitsItemType(read.item.type(), read.item.data()))
      return QStringLiteral("its value is not laid out as its type is");
    return {};
  }

  void count(NsfItemState state) {
    findings_.damaged += state == NsfItemState::Damaged;
    findings_.unreadable += state == NsfItemState::Unreadable;
    findings_.sealed += state == NsfItemState::Sealed;
  }

  void readResponses() {
    if (!bytes_.has(summaryEnd_, 4 * qint64(record_.responseCount))) return;
    for (qint64 i = 0; i < record_.responseCount; ++i)
      note_.responses.push_back(NoteId(bytes_.u32(summaryEnd_ + 4 * i)));
  }

  const NoteRecord& record_;
  const RecordBytes bytes_;
  const BucketDescriptors& names_;
  NsfNote& note_;
  const qint64 entries_;
  qint64 summaryAt_;  // of the next value
  qint64 summaryEnd_ = 0, summarySize_ = 0, dataSize_ = 0;
  std::optional<NoteData> data_;
  QString dataFault_;
  bool dataAddsUp_ = true, tableBroken_ = false;
  quint32 checksum_ = 0;
  NoteFindings findings_;
};

}  // namespace

bool fitsItemType(quint16 type, QByteArrayView data) {
  if (data.isEmpty()) return true;
  switch (type) {
    case itemtype::RichText:
      return walksToItsEnd(data);
    case itemtype::TextList: {
      const StoredTexts texts(data);
      return texts.fits() && 2 + 2 * texts.claimed() + texts.claimedBytes() == data.size();
    }
    case itemtype::NumberRange:
    case itemtype::TimeRange:
      return StoredRange(data).isExact();
    case itemtype::Number:
    case itemtype::Time:
      return data.size() == 8;
    case itemtype::NoteRefs:
      return 2 + 16 * StoredReferences(data).claimed() == data.size();
    default:
      return true;
  }
}

NoteFindings readNoteItems(const NsfSource& source, const DataBuckets& buckets, const NoteRecord& record,
                           const BucketDescriptors& names, const QString& distrust, NsfNote& note) {
  return ItemReading(source, buckets, record, names, distrust, note).run();
}

void NoteFindings::mergeInto(NsfReport& report, NoteId id, qint64 position, qsizetype items) const {
  ++report.notesRead;
  report.items += int(items);
  report.itemsDamaged += damaged;
  report.itemsUnreadable += unreadable;
  report.itemsSealed += sealed;
  report.nonSummaryBlocks += hasBlock;
  report.nonSummaryChecksumsWrong += checksumWrong;
  for (NsfProblem problem : problems) {
    problem.id = id.value();
    problem.position = position;
    report.add(std::move(problem));
  }
}

}  // namespace lens
