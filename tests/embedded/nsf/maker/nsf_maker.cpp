#include "embedded/nsf/maker/nsf_maker.h"

#include <QFile>
#include <random>
#include <tuple>

#include "embedded/nsf/maker/made_blocks.h"
#include "embedded/nsf/maker/made_buckets.h"
#include "embedded/nsf/maker/made_bytes.h"
#include "embedded/nsf/maker/made_header.h"
#include "embedded/nsf/maker/made_records.h"
#include "embedded/nsf/maker/made_values.h"

namespace lens::made {
namespace {

constexpr qint64 kUnit = 256;

TimeDate daysBefore(TimeDate time, quint32 days) {
  time.innards[1] -= days;
  return time;
}

// One attempt with areas of given sizes for the blocks, whose packed size is known only when all else has its
// place.
class FileWriter {
 public:
  FileWriter(const MadeDatabase& described, const MadeNames& names, qint64 superblockArea,
             qint64 descriptorArea)
      : described_(described), names_(names), areas_{superblockArea, descriptorArea} {}

  MadeFile write() {
    reserve();
    placeBodies();
    placeObjects();
    placeRecords();
    padTo(kUnit);
    writeTables();
    writeSuperblocks();
    writeDescriptors();
    writeHeader();
    return std::move(file_);
  }
  // What the areas must have at least for the next attempt; those given are enough where they are not larger.
  qint64 superblockNeed() const { return superblockNeed_; }
  qint64 descriptorNeed() const { return descriptorNeed_; }

 private:
  struct Areas {
    qint64 superblock, descriptor;
  };

  void changed(MadePart part, quint32 number, QByteArray& bytes) const {
    if (described_.change) described_.change(part, number, bytes);
  }

  void padTo(qint64 unit) {
    file_.bytes.append(zeros(roundedUp(file_.bytes.size(), unit) - file_.bytes.size()));
  }

  // Appends at the next whole unit.
  MadePlace place(const QByteArray& bytes) {
    padTo(kUnit);
    const MadePlace place{file_.bytes.size(), bytes.size()};
    file_.bytes += bytes;
    return place;
  }
  quint32 unitOf(const MadePlace& place) const {
    const bool behindHole = file_.hole > 0 && place.at >= file_.holeAt;
    return quint32((place.at + (behindHole ? file_.hole : 0)) / kUnit);
  }

  void reserve() {
    file_.header = place(zeros(headerSize(described_)));
    for (int copy : {0, 1}) file_.superblocks[copy] = place(QByteArray(areas_.superblock, '\xAA'));
    neverWritten_ = place(QByteArray(kUnit, '\xAA'));
    for (int copy : {0, 1}) file_.descriptorBlocks[copy] = place(QByteArray(areas_.descriptor, '\xAA'));
    for (int copy : {0, 1}) {
      superblockAreas_[copy] = file_.superblocks[copy];
      descriptorAreas_[copy] = file_.descriptorBlocks[copy];
    }
    tables_.resize(qsizetype(highestTable()) + 1);
    for (Table& table : tables_) {
      table.entries.resize(kIdsOfTable, MadeEntry{0xFFFFFFFF, 0xFFFFFFFF});
      // The lowest bit of their position says what they are for.
      padTo(2 * kUnit);
      file_.rrvBuckets.push_back(place(zeros(kRrvBucketSize)));
    }
    if (described_.hole > 0) {
      file_.holeAt = file_.bytes.size();
      file_.hole = described_.hole;
    }
  }

  quint32 highestTable() const {
    quint32 highest = 1;
    for (const MadeNote& note : described_.notes) highest = std::max(highest, tableOf(note.id));
    for (const MadeObject& object : described_.objects) highest = std::max(highest, tableOf(object.id));
    return highest;
  }

  void placeBodies() {
    QVector<MadeBucket> buckets;
    QVector<QVector<quint32>> inBuckets;  // notes
    for (const MadeNote& note : described_.notes) {
      QByteArray block = bodyBlock(note, names_);
      if (block.isEmpty()) continue;
      if (note.bodyInBucket && described_.bodyBuckets == MadeDatabase::BodyBuckets::Absent) continue;
      changed(MadePart::Body, note.id, block);
      if (!note.bodyInBucket) {
        file_.notes[note.id].body = place(block);
        continue;
      }
      constexpr int kMostSlots = 0x7F;
      if (buckets.isEmpty() || !buckets.back().takes(block.size()) ||
          buckets.back().slotCount() == kMostSlots) {
        buckets.push_back(MadeBucket(MadeBucket::sizeFor(block.size(), described_.bucketSize)));
        inBuckets.push_back({});
      }
      const quint32 slot = quint32(buckets.back().add(block));
      inBuckets.back().push_back(note.id);
      inBucket_[note.id] = {0x80000000 | slot << 24 | quint32(buckets.size()), quint32(block.size())};
    }
    for (qsizetype number = 0; number < buckets.size(); ++number) {
      const MadePlace whole = placeBodyBucket(buckets[number], int(number));
      for (const quint32 id : inBuckets[number]) file_.notes[id].body = whole;
    }
  }

  MadePlace placeBodyBucket(const MadeBucket& bucket, int number) {
    QByteArray bytes = bucket.bytes(number, described_.changed);
    put16(bytes, 0, 0x4204);
    if (described_.bodyBuckets == MadeDatabase::BodyBuckets::Marked) markSectors(bytes, described_.mark);
    const MadePlace placed = place(bytes);
    bodyBuckets_.push_back(unitOf(placed));
    return placed;
  }

  void placeObjects() {
    for (const MadeObject& object : described_.objects) {
      QByteArray framed = framedObject(object);
      changed(MadePart::Object, object.id, framed);
      file_.objects[object.id] = place(framed);
      setEntry(object.id, {unitOf(file_.objects[object.id]), 0});
    }
  }

  QByteArray recordOf(const MadeNote& note) {
    const MadePlace body = file_.notes[note.id].body;
    quint32 position = body.size > 0 ? unitOf(body) : 0, size = quint32(body.size);
    if (note.bodyInBucket) {
      const bool isAbsent = described_.bodyBuckets == MadeDatabase::BodyBuckets::Absent;
      std::tie(position, size) =
          isAbsent ? std::pair(0x80000000u | 1 << 24 | 1, 500u) : inBucket_.value(note.id, {0, 0});
    }
    QByteArray record = noteRecord(note, names_, position, size, {});
    const bool hasRubbish = described_.untidy && !note.stub;
    if (hasRubbish)
      record = noteRecord(note, names_, position, size, QByteArray(-record.size() & 3, '\x5C') + rubbish());
    changed(MadePart::Record, note.id, record);
    return record;
  }
  QByteArray rubbish() { return QByteArray(qsizetype(random_() % 3 * 4), '\xC3'); }

  void placeRecords() {
    QVector<MadeBucket> buckets;
    QVector<QVector<std::pair<quint32, int>>> inBuckets;  // notes and their slots
    for (const MadeNote& note : described_.notes) {
      const QByteArray record = recordOf(note);
      MadeNotePlaces& places = file_.notes[note.id];
      if (note.byPosition) {
        places.record = place(record);
        setEntry(note.id, {unitOf(places.record), 0});
        continue;
      }
      const qsizetype unused = described_.untidy ? qsizetype(random_() % 4 * 20) : 0;
      if (buckets.isEmpty() || !buckets.back().takes(record.size() + unused)) {
        buckets.push_back(MadeBucket(MadeBucket::sizeFor(record.size(), described_.bucketSize)));
        inBuckets.push_back({});
      }
      if (described_.untidy && random_() % 8 == 0 && buckets.back().takes(record.size() + unused + 4))
        buckets.back().addEmptySlot();
      const int slot = buckets.back().add(record, unused);
      places.bucket = int(buckets.size()) - 1;
      places.record = {buckets.back().recordAt(slot), record.size()};
      inBuckets.back().push_back({note.id, slot});
      setEntry(note.id, {0x80000000 | quint32(buckets.size()), quint32(slot)});
    }
    for (qsizetype number = 0; number < buckets.size(); ++number) {
      const MadePlace whole = placeBucket(buckets[number], int(number));
      for (const auto& [id, slot] : inBuckets[number]) {
        file_.notes[id].record.at += whole.at;
        file_.notes[id].slot = {whole.at + buckets[number].slotAt(slot), 4};
      }
    }
  }

  MadePlace placeBucket(const MadeBucket& bucket, int number) {
    QByteArray bytes = bucket.bytes(number, described_.changed);
    if (described_.formerBuckets) place(formerBucket(bucket, number));
    changed(MadePart::Bucket, quint32(number), bytes);
    markSectors(bytes, described_.mark);
    file_.buckets.push_back(place(bytes));
    return file_.buckets.back();
  }

  // The same records as they were a day before: with a sequence number less, or none.
  QByteArray formerBucket(const MadeBucket& bucket, int number) {
    QByteArray bytes = bucket.bytes(number, daysBefore(described_.changed, 1));
    for (int slot = 1; slot <= bucket.slotCount(); ++slot) {
      const qsizetype record = bucket.recordAt(slot);
      if (record > 0) put32(bytes, record + 26, get32(bytes, record + 26) - 1);
    }
    markSectors(bytes, quint8(described_.mark + 1));
    return bytes;
  }

  struct Table {
    bool ofDocuments = false;
    QVector<MadeEntry> entries;
  };

  void setEntry(quint32 id, MadeEntry entry) {
    tables_[tableOf(id)].entries[(id - kFirstId) / 4 % kIdsOfTable] = entry;
  }

  void writeTables() {
    tables_[1].ofDocuments = true;
    for (const MadeNote& note : described_.notes) {
      if (!isDocument(note)) continue;
      tables_[tableOf(note.id)].ofDocuments = true;
      currentTable_ = std::max(currentTable_, tableOf(note.id));
    }
    for (auto odd = described_.entries.cbegin(); odd != described_.entries.cend(); ++odd)
      setEntry(odd.key(), odd.value());
    for (quint32 number = 0; number < tables_.size(); ++number) {
      // What the superblock carries is not on disk yet.
      const QVector<MadeEntry> empty(kIdsOfTable, MadeEntry{0xFFFFFFFF, 0xFFFFFFFF});
      const bool isCurrent = number == currentTable_;
      QByteArray bucket = rrvBucket(firstOfTable(number), isCurrent ? empty : tables_[number].entries);
      changed(MadePart::RrvBucket, number, bucket);
      sealRrvBucket(bucket);
      putBytes(file_.bytes, file_.rrvBuckets[number].at, bucket);
    }
    for (const MadeNote& note : described_.notes)
      if (tableOf(note.id) != currentTable_)
        file_.notes[note.id].entry = {
            file_.rrvBuckets[tableOf(note.id)].at + 32 + (note.id - kFirstId) / 4 % kIdsOfTable * 8, 8};
  }

  // The IDs of the documents that the older superblock does not know.
  QVector<quint32> latestDocuments() const {
    QVector<quint32> ids;
    for (qsizetype i = described_.notes.size(); i-- > 0 && ids.size() < described_.notesSince;)
      if (isDocument(described_.notes[i])) ids.push_back(described_.notes[i].id);
    return ids;
  }

  void writeSuperblocks() {
    for (int copy : {0, 1}) {
      const bool isNewest = copy == described_.newestSuperblock;
      const QVector<quint32> unknown = isNewest ? QVector<quint32>() : latestDocuments();
      MadeSuperblock block;
      block.time = isNewest ? described_.changed : daysBefore(described_.changed, 1);
      block.writeCount = isNewest ? 20 : 19;
      block.packing = described_.packing;
      for (const MadePlace& bucket : file_.buckets) block.buckets.push_back({unitOf(bucket), block.time});
      block.severalPages = described_.severalPages;
      block.pageOfBodies = described_.pageOfBodies;
      block.bodyBuckets = bodyBuckets_;
      block.rrvPosition = unitOf(file_.rrvBuckets[currentTable_]);
      block.firstId = firstOfTable(currentTable_);
      block.rrvCopy = currentEntries(unknown);
      block.listedNotes = listedNotes(unknown);
      superblockNeed_ = std::max(superblockNeed_, store(superblockBytes(block, copy, described_.change),
                                                        areas_.superblock, file_.superblocks[copy]));
    }
  }

  QByteArray currentEntries(const QVector<quint32>& unknown) const {
    QVector<MadeEntry> entries = tables_[currentTable_].entries;
    for (const quint32 id : unknown)
      if (tableOf(id) == currentTable_) entries[(id - kFirstId) / 4 % kIdsOfTable] = {0xFFFFFFFF, 0xFFFFFFFF};
    return rrvBucket(firstOfTable(currentTable_), entries);
  }

  QByteArray listedNotes(const QVector<quint32>& unknown) const {
    QVector<quint32> ids;
    for (const MadeNote& note : described_.notes)
      if (isListed(note) && !unknown.contains(note.id)) ids.push_back(note.id);
    std::sort(ids.begin(), ids.end());
    return idTable(ids, described_.changed);
  }

  void writeDescriptors() {
    for (int copy : {0, 1}) {
      const bool isNewest = copy == described_.newestDescriptor;
      MadeDescriptors block;
      block.time = isNewest ? described_.changed : daysBefore(described_.changed, 1);
      block.writeCount = isNewest ? 14 : 13;
      block.packing = described_.packing;
      for (quint32 number = 0; number < tables_.size(); ++number)
        block.rrvBuckets.push_back(
            {unitOf(file_.rrvBuckets[number]), tables_[number].ofDocuments, firstOfTable(number)});
      block.names = names_.all();
      if (!isNewest) block.names.resize(std::max<qsizetype>(0, block.names.size() - described_.namesSince));
      descriptorNeed_ = std::max(descriptorNeed_, store(descriptorBytes(block, copy, described_.change),
                                                        areas_.descriptor, file_.descriptorBlocks[copy]));
    }
  }

  // What the block needs; it is stored where its area has that.
  qint64 store(const QByteArray& block, qint64 area, MadePlace& place) {
    if (block.size() > area) return roundedUp(block.size() + kUnit, kUnit);
    putBytes(file_.bytes, place.at, block);
    place.size = block.size();
    return area;
  }

  void writeHeader() {
    MadeHeader header;
    for (int copy : {0, 1}) {
      header.superblocks[copy] = {unitOf(superblockAreas_[copy]), quint32(areas_.superblock)};
      header.descriptorBlocks[copy] = {unitOf(descriptorAreas_[copy]), quint32(areas_.descriptor)};
    }
    header.superblocks[2] = {unitOf(neverWritten_), quint32(neverWritten_.size)};
    header.otherTable = unitOf(file_.rrvBuckets[0]);
    header.currentTable = unitOf(file_.rrvBuckets[currentTable_]);
    header.currentFirstId = firstOfTable(currentTable_);
    header.units = quint32(file_.size() / kUnit);
    QByteArray bytes = headerBytes(described_, header);
    changed(MadePart::Header, 0, bytes);
    putBytes(file_.bytes, 0, bytes);
  }

  const MadeDatabase& described_;
  const MadeNames& names_;
  const Areas areas_;
  MadeFile file_;
  MadePlace superblockAreas_[2], descriptorAreas_[2], neverWritten_;
  QHash<quint32, std::pair<quint32, quint32>>
      inBucket_;  // place and size of bodies in buckets, by their note
  QVector<quint32> bodyBuckets_;
  QVector<Table> tables_;
  quint32 currentTable_ = 1;
  qint64 superblockNeed_ = 0, descriptorNeed_ = 0;
  std::mt19937 random_{1};
};

}  // namespace

MadeFile makeFile(const MadeDatabase& described) {
  const MadeNames names(described);
  qint64 superblockArea = 2048, descriptorArea = 1024;
  for (;;) {
    FileWriter writer(described, names, superblockArea, descriptorArea);
    MadeFile file = writer.write();
    if (writer.superblockNeed() <= superblockArea && writer.descriptorNeed() <= descriptorArea) return file;
    superblockArea = std::max(superblockArea, writer.superblockNeed());
    descriptorArea = std::max(descriptorArea, writer.descriptorNeed());
  }
}

bool MadeFile::write(const QString& path) const {
  QFile out(path);
  if (!out.open(QIODevice::WriteOnly)) return false;
  if (hole == 0) return out.write(bytes) == bytes.size();
  return out.write(bytes.first(holeAt)) == holeAt && out.resize(holeAt + hole) && out.seek(holeAt + hole) &&
         out.write(bytes.sliced(holeAt)) == bytes.size() - holeAt;
}

QString unidText(const QByteArray& stored) {
  QByteArray turned = stored.first(8);
  std::reverse(turned.begin(), turned.end());
  QByteArray second = stored.sliced(8, 8);
  std::reverse(second.begin(), second.end());
  return QString::fromLatin1((turned + second).toHex().toUpper());
}

}  // namespace lens::made
