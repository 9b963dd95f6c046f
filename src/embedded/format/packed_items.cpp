#include "embedded/format/packed_items.h"

#include <QtEndian>
#include <cstring>
#include <limits>

#include "embedded/format/engine_fault.h"
#include "embedded/format/packed_parts.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint32 kMark = 0x31494C54;  // "TLI1"
constexpr qsizetype kHead = 8;
constexpr qsizetype kEntry = 16;
constexpr qsizetype kMinimalValue = 2;

[[noreturn]] void damaged(const QString& fault) {
  throw RuntimeError(enginefault::Damaged, u"Damaged items: %1"_s.arg(fault));
}

struct Entry {
  quint32 nameAt, valueAt, valueLength;
  quint16 nameLength, flags;
};

// Reads the directory and vouches for every offset before it hands one out.
class Directory {
 public:
  explicit Directory(QByteArrayView packed) : Directory(packed, packed.size()) {}
  // Of packed items of that size whose first bytes are there, the directory among them.
  Directory(QByteArrayView packed, qint64 size) : packed_(packed), size_(size) {
    if (packed.size() < kHead || qFromLittleEndian<quint32>(packed.data()) != kMark)
      damaged(u"the mark at the beginning is missing"_s);
    const qint64 count = qFromLittleEndian<quint32>(packed.data() + 4);
    if (count > (size - kHead) / kEntry)
      damaged(u"a directory of %1 items does not fit into %2 bytes"_s.arg(count).arg(size));
    count_ = qsizetype(count);
  }

  qsizetype count() const { return count_; }

  Entry entry(qsizetype index) const {
    const char* const at = packed_.data() + kHead + index * kEntry;
    const Entry entry{qFromLittleEndian<quint32>(at), qFromLittleEndian<quint32>(at + 8),
                      qFromLittleEndian<quint32>(at + 12), qFromLittleEndian<quint16>(at + 4),
                      qFromLittleEndian<quint16>(at + 6)};
    if (!inside(entry.nameAt, entry.nameLength)) damaged(place(u"name"_s, index));
    if (entry.valueLength < kMinimalValue || !inside(entry.valueAt, entry.valueLength))
      damaged(place(u"value"_s, index));
    return entry;
  }

  QByteArrayView name(const Entry& entry) const { return packed_.sliced(entry.nameAt, entry.nameLength); }
  QByteArrayView value(const Entry& entry) const { return packed_.sliced(entry.valueAt, entry.valueLength); }

 private:
  bool inside(qint64 offset, qint64 length) const {
    return offset >= kHead + count_ * kEntry && offset + length <= size_;
  }
  static QString place(const QString& what, qsizetype index) {
    return u"the %1 of item %2 leads outside"_s.arg(what).arg(index + 1);
  }

  QByteArrayView packed_;
  qint64 size_;
  qsizetype count_ = 0;
};

// Counts what the entries claim together, so that a small row cannot unfold into a huge one.
class Budget {
 public:
  explicit Budget(qint64 packedSize) : left_(packedSize) {}
  void spend(const Entry& entry) {
    left_ -= qint64(entry.nameLength) + entry.valueLength;
    if (left_ < 0) damaged(u"the items claim more bytes than there are"_s);
  }

 private:
  qint64 left_;
};

Item itemAt(const Directory& directory, const Entry& entry) {
  return {QString::fromUtf8(directory.name(entry)), entry.flags, directory.value(entry).toByteArray()};
}

// Returns the end of the name as written at the place; there is room for three bytes per unit.
char* writeName(const QString& name, char* at) {
  char* out = at;
  for (QChar unit : name) {
    if (unit.unicode() >= 0x80) {
      const QByteArray utf8 = name.toUtf8();
      std::memcpy(at, utf8.constData(), size_t(utf8.size()));
      return at + utf8.size();
    }
    *out++ = char(unit.unicode());
  }
  return out;
}

quint8 lower(quint8 byte) {
  return byte >= 'A' && byte <= 'Z' ? quint8(byte | 0x20) : byte;
}

bool isPlain(QByteArrayView name) {
  char bits = 0;
  for (char byte : name) bits = char(bits | byte);
  return !(bits & 0x80);
}

template <class SizeOf>
qint64 roomFor(const QVector<Item>& items, const SizeOf& sizeOf) {
  qint64 room = kHead + items.size() * kEntry;
  for (const Item& item : items) {
    if (item.value.size() < kMinimalValue)
      throw RuntimeError(err::InvalidCall,
                         u"Item \"%1\" has a value without a type"_s.arg(item.name.left(64)));
    room += item.name.size() * 3 + sizeOf(item);
  }
  if (room > std::numeric_limits<qint32>::max())
    throw RuntimeError(enginefault::NotSaved, u"The items of a note exceed 2 GB"_s);
  return room;
}

// Everything before the values, whose places follow from their sizes; returns where the first one begins.
template <class SizeOf>
char* writeDirectory(const QVector<Item>& items, char* begin, const SizeOf& sizeOf) {
  qToLittleEndian(kMark, begin);
  qToLittleEndian(quint32(items.size()), begin + 4);
  char* entry = begin + kHead;
  char* out = entry + items.size() * kEntry;
  for (const Item& item : items) {
    char* const end = writeName(item.name, out);
    if (end - out > std::numeric_limits<quint16>::max())
      throw RuntimeError(enginefault::NotSaved, u"The name of an item exceeds 65535 bytes"_s);
    qToLittleEndian(quint32(out - begin), entry);
    qToLittleEndian(quint16(end - out), entry + 4);
    qToLittleEndian(item.flags, entry + 6);
    out = end;
    entry += kEntry;
  }
  entry = begin + kHead;
  qint64 value = out - begin;
  for (const Item& item : items) {
    const qint64 size = sizeOf(item);
    qToLittleEndian(quint32(value), entry + 8);
    qToLittleEndian(quint32(size), entry + 12);
    value += size;
    entry += kEntry;
  }
  return out;
}

qint64 sizeHere(const Item& item) {
  return item.value.size();
}

}  // namespace

QByteArray packItems(const QVector<Item>& items) {
  QByteArray packed(roomFor(items, sizeHere), Qt::Uninitialized);
  char* const begin = packed.data();
  char* out = writeDirectory(items, begin, sizeHere);
  for (const Item& item : items) {
    std::memcpy(out, item.value.constData(), size_t(item.value.size()));
    out += item.value.size();
  }
  packed.truncate(out - begin);
  return packed;
}

QByteArray packDirectory(const QVector<Item>& items, const std::function<qint64(const Item&)>& sizeOf) {
  roomFor(items, sizeOf);
  QByteArray packed(roomFor(items, [](const Item&) { return qint64(0); }), Qt::Uninitialized);
  packed.truncate(writeDirectory(items, packed.data(), sizeOf) - packed.constData());
  return packed;
}

qsizetype packedDirectorySize(QByteArrayView head, qint64 size) {
  return kHead + Directory(head, size).count() * kEntry;
}

QVector<PackedPlace> packedPlaces(QByteArrayView directoryBytes, qint64 size) {
  const Directory directory(directoryBytes, size);
  Budget budget(size);
  QVector<PackedPlace> places;
  places.reserve(directory.count());
  for (qsizetype i = 0; i < directory.count(); ++i) {
    const Entry entry = directory.entry(i);
    budget.spend(entry);
    places.push_back({entry.nameAt, entry.nameLength, entry.valueAt, entry.valueLength, entry.flags});
  }
  return places;
}

QVector<Item> unpackItems(QByteArrayView packed) {
  const Directory directory(packed);
  Budget budget(packed.size());
  QVector<Item> items;
  items.reserve(directory.count());
  for (qsizetype i = 0; i < directory.count(); ++i) {
    const Entry entry = directory.entry(i);
    budget.spend(entry);
    items.push_back(itemAt(directory, entry));
  }
  return items;
}

void checkPackedItems(QByteArrayView packed) {
  const Directory directory(packed);
  Budget budget(packed.size());
  for (qsizetype i = 0; i < directory.count(); ++i) budget.spend(directory.entry(i));
}

bool findPackedItem(QByteArrayView packed, QStringView name, Item& item) {
  const Directory directory(packed);
  for (qsizetype i = 0; i < directory.count(); ++i) {
    const Entry entry = directory.entry(i);
    if (!isPackedName(directory.name(entry), name)) continue;
    item = itemAt(directory, entry);
    return true;
  }
  return false;
}

// --- Items where they lie ------------------------------------------------------------------------------

PackedItems::PackedItems(QByteArrayView packed) : packed_(packed) {
  checkPackedItems(packed);
  count_ = qsizetype(qFromLittleEndian<quint32>(packed.data() + 4));
}

PackedItems::Entry PackedItems::operator[](qsizetype place) const {
  const char* const at = packed_.data() + kHead + place * kEntry;
  const auto number = [at](qsizetype offset) { return qFromLittleEndian<quint32>(at + offset); };
  return {QByteArrayView(packed_.data() + number(0), qFromLittleEndian<quint16>(at + 4)),
          qFromLittleEndian<quint16>(at + 6), QByteArrayView(packed_.data() + number(8), number(12))};
}

qsizetype PackedItems::find(QStringView name, quint16 flags) const {
  for (qsizetype i = 0; i < count_; ++i) {
    const Entry entry = (*this)[i];
    if ((entry.flags & flags) == flags && isPackedName(entry.name, name)) return i;
  }
  return -1;
}

WantedItems::WantedItems(std::vector<ItemName> names) : names_(std::move(names)), next_(names_.size(), -1) {
  first_.fill(-1);
  for (int n = 0; n < int(names_.size()); ++n) {
    const QByteArray utf8 = names_[std::size_t(n)].text().toUtf8();
    if (utf8.isEmpty() || !isPlain(utf8)) {
      others_.push_back(n);
      continue;
    }
    int& bucket = first_[std::size_t(bucketOf(utf8.front(), utf8.back(), utf8.size()))];
    next_[std::size_t(n)] = std::exchange(bucket, n);
  }
}

int WantedItems::bucketOf(char first, char last, qsizetype length) {
  return int(lower(quint8(first)) * 5 + lower(quint8(last)) * 11 + length) % kBuckets;
}

bool WantedItems::matches(QByteArrayView packed, int name) const {
  return isPackedName(packed, names_[std::size_t(name)].text());
}

void WantedItems::note(int name, qint32 place, std::vector<qint32>& places) const {
  qint32& known = places[std::size_t(name)];
  if (known < 0) known = place;
}

void WantedItems::find(const PackedItems& items, quint16 flags, std::vector<qint32>& places) const {
  places.assign(names_.size(), -1);
  for (qsizetype i = 0; i < items.count(); ++i) {
    const PackedItems::Entry entry = items[i];
    if ((entry.flags & flags) != flags) continue;
    const QByteArrayView name = entry.name;
    if (name.isEmpty() || !isPlain(name)) {
      for (int n = 0; n < int(names_.size()); ++n)
        if (matches(name, n)) note(n, qint32(i), places);
      continue;
    }
    for (int n = first_[std::size_t(bucketOf(name.front(), name.back(), name.size()))]; n >= 0;
         n = next_[std::size_t(n)])
      if (matches(name, n)) note(n, qint32(i), places);
    for (int n : others_)
      if (matches(name, n)) note(n, qint32(i), places);
  }
}

}  // namespace lens
