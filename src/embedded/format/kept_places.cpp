#include "embedded/format/kept_places.h"

#include <QHash>
#include <algorithm>

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/stored_lists.h"

namespace lens {
namespace {

quint16 typeOfValue(QByteArrayView value) {
  return ByteReader(value).u16();
}

// Dates and times are read and written to the second, and midnight as the date alone.
qint64 shownTime(const TimeDate& time) {
  constexpr qint64 kSeconds = 86'400, kNone = -1;
  const DateTime local = localOf(time);
  const qint64 day = local.date.isValid() ? local.date.toJulianDay() : 0;
  qint64 second = local.time.isValid() ? local.time.msecsSinceStartOfDay() / 1000 : kNone;
  if (second == 0 && local.date.isValid()) second = kNone;
  return day * (kSeconds + 1) + second;
}

// Gives each place of the written value the place of the stored one that it comes from, -1 for none.
template <class Key>
QVector<qsizetype> sources(const QVector<Key>& written, const QVector<Key>& stored) {
  QVector<qsizetype> from(written.size(), -1);
  if (written.size() == stored.size()) {
    for (qsizetype place = 0; place < written.size(); ++place)
      if (written[place] == stored[place]) from[place] = place;
    return from;
  }
  // Behind a place that came or went all others stand elsewhere, in their order.
  QHash<Key, qsizetype> next;
  QVector<qsizetype> following(stored.size(), -1);
  for (qsizetype place = stored.size() - 1; place >= 0; --place) {
    following[place] = next.value(stored[place], -1);
    next.insert(stored[place], place);
  }
  for (qsizetype place = 0; place < written.size(); ++place) {
    const auto found = next.find(written[place]);
    if (found == next.end() || *found < 0) continue;
    from[place] = *found;
    *found = following[*found];
  }
  return from;
}

// Times and numbers: entries of eight bytes, alone or behind two counts.
struct Entries {
  bool list = false;
  QVector<QByteArrayView> bytes;
};

bool readEntries(QByteArrayView value, quint16 single, quint16 list, Entries& entries) {
  const quint16 type = typeOfValue(value);
  const QByteArrayView data = value.sliced(2);
  entries.list = type == list;
  if (type == single) {
    if (data.size() != 8) return false;
    entries.bytes = {data};
    return true;
  }
  if (!entries.list || !StoredRange(data).isExact()) return false;
  for (qsizetype at = 4; at < data.size(); at += 8) entries.bytes.push_back(data.sliced(at, 8));
  return true;
}

template <class Key>
QByteArray keepEntries(const QByteArray& written, QByteArrayView stored, quint16 single, quint16 list,
                       const Key& key) {
  Entries fresh, old;
  if (!readEntries(written, single, list, fresh) || !readEntries(stored, single, list, old)) return written;
  const auto keys = [&](const Entries& entries) {
    QVector<decltype(key(QByteArrayView()))> all;
    all.reserve(entries.bytes.size());
    for (const QByteArrayView entry : entries.bytes) all.push_back(key(entry));
    return all;
  };
  const QVector<qsizetype> from = sources(keys(fresh), keys(old));
  const bool inPairs = fresh.list && old.list && fresh.bytes.size() == old.bytes.size();
  // The counts in front are those of the old list where it had pairs; entries stand at the same places.
  QByteArray kept =
      (inPairs ? stored.first(6) : QByteArrayView(written).first(fresh.list ? 6 : 2)).toByteArray();
  kept.reserve(written.size());
  for (qsizetype place = 0; place < fresh.bytes.size(); ++place)
    kept.append(from[place] < 0 ? fresh.bytes[place] : old.bytes[from[place]]);
  return kept;
}

bool readTexts(QByteArrayView value, Entries& entries) {
  const quint16 type = typeOfValue(value);
  const QByteArrayView data = value.sliced(2);
  entries.list = type == itemtype::TextList;
  if (!entries.list) entries.bytes = {data};
  if (!entries.list) return itemtype::isText(type);
  const StoredTexts texts(data);
  if (!texts.fits()) return false;
  texts.forEach([&](QByteArrayView text, bool) { entries.bytes.push_back(text); });
  return true;
}

QByteArray keepTexts(const QByteArray& written, QByteArrayView stored) {
  Entries fresh, old;
  if (!readTexts(written, fresh) || !readTexts(stored, old)) return written;
  const auto keys = [](const Entries& entries) {
    QVector<QString> all;
    all.reserve(entries.bytes.size());
    for (const QByteArrayView text : entries.bytes) all.push_back(textFromStored(text));
    return all;
  };
  const QVector<qsizetype> from = sources(keys(fresh), keys(old));
  const auto bytes = [&](qsizetype place) {
    return from[place] < 0 ? fresh.bytes[place] : old.bytes[from[place]];
  };
  QByteArray kept = QByteArrayView(written).first(fresh.list ? 4 : 2).toByteArray();
  kept.reserve(written.size());
  if (fresh.list)
    for (qsizetype place = 0; place < fresh.bytes.size(); ++place)
      appendU16(kept, quint16(bytes(place).size()));
  for (qsizetype place = 0; place < fresh.bytes.size(); ++place) kept.append(bytes(place));
  return kept;
}

// Where each byte is a character of its own, texts differ when their bytes do: most need not be read.
bool hasOneWayToBeWritten(QByteArrayView value) {
  if (typeOfValue(value) != itemtype::Text) return false;
  const QByteArrayView text = value.sliced(2);
  return std::all_of(text.begin(), text.end(), [](char c) {
    const auto byte = quint8(c);
    return byte >= 0x20 || byte == 0x00 || byte == 0x09 || byte == 0x0D;
  });
}

}  // namespace

QByteArray withKeptPlaces(const QByteArray& written, QByteArrayView stored) {
  if (stored.size() < 2 || stored == QByteArrayView(written)) return written;
  switch (typeOfValue(written)) {
    case itemtype::Text:
    case itemtype::TextList:
      if (hasOneWayToBeWritten(written) && hasOneWayToBeWritten(stored)) return written;
      return keepTexts(written, stored);
    case itemtype::Number:
    case itemtype::NumberRange:
      return keepEntries(written, stored, itemtype::Number, itemtype::NumberRange,
                         [](QByteArrayView entry) { return Value(ByteReader(entry).f64()).text(); });
    case itemtype::Time:
    case itemtype::TimeRange:
      return keepEntries(written, stored, itemtype::Time, itemtype::TimeRange,
                         [](QByteArrayView entry) { return shownTime(readTimeDate(entry.data())); });
    default:
      return written;
  }
}

}  // namespace lens
