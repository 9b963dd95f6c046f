#include "embedded/checks/database_comparison.h"

#include <QHash>

#include "embedded/store/hashing_device.h"

namespace lens {
namespace {

// The items of a note by name, each name with the places of its items in their order.
using PlacesByName = QHash<ItemName, QVector<qsizetype>>;

PlacesByName placesByName(const Note& note) {
  PlacesByName places;
  for (qsizetype place = 0; place < note.items.size(); ++place)
    places[ItemName(note.items[place].name)].push_back(place);
  return places;
}

bool sameFile(const FileObject& a, const FileObject& b) {
  return a.name == b.name && a.size == b.size && sameTimeDate(a.created, b.created) &&
         sameTimeDate(a.modified, b.modified) && a.hostType == b.hostType && a.compression == b.compression &&
         a.attributes == b.attributes && a.flags == b.flags;
}

QByteArray hashOf(const Database& database, quint32 object) {
  HashingDevice device;
  database.objects().read(object, device);
  return device.result();
}

// Equal digests say that the bytes are equal. Other ones say nothing where the databases keep checksums of
// another kind, as files of different age do.
bool sameBytes(const Database& firstDatabase, quint32 first, const Database& secondDatabase, quint32 second) {
  const ObjectStore &a = firstDatabase.objects(), &b = secondDatabase.objects();
  if (a.size(first) != b.size(second)) return false;
  if (a.size(first) < 0 || a.digest(first) == b.digest(second)) return true;
  return hashOf(firstDatabase, first) == hashOf(secondDatabase, second);
}

// Each database numbers its objects for itself.
bool sameObjectValue(const Database& firstDatabase, const QByteArray& first, const Database& secondDatabase,
                     const QByteArray& second) {
  constexpr qsizetype kTypeWord = 2;
  const quint32 firstId = objectIdOf(QByteArrayView(first).sliced(kTypeWord)),
                secondId = objectIdOf(QByteArrayView(second).sliced(kTypeWord));
  if ((firstId == 0) != (secondId == 0)) return false;
  FileObject firstFile, secondFile;
  const bool isFile = readFileValue(first, firstFile);
  if (isFile != readFileValue(second, secondFile)) return false;
  if (isFile && !sameFile(firstFile, secondFile)) return false;
  if (!isFile) {
    QByteArray a = first, b = second;
    if (firstId != 0) replaceObjectId(a, 0);
    if (secondId != 0) replaceObjectId(b, 0);
    if (a != b) return false;
  }
  return firstId == 0 || sameBytes(firstDatabase, firstId, secondDatabase, secondId);
}

bool sameItem(const Database& firstDatabase, const Item& first, const Database& secondDatabase,
              const Item& second) {
  if (first.flags != second.flags || first.type() != second.type()) return false;
  if (first.value == second.value && first.type() != itemtype::Object) return true;
  return first.type() == itemtype::Object &&
         sameObjectValue(firstDatabase, first.value, secondDatabase, second.value);
}

QString titleOf(const Note& note) {
  const bool isDocument = noteclass::base(note.header.noteClass) == noteclass::Document;
  return isDocument ? note.text(u"Subject") : note.text(u"$TITLE");
}

class Comparison {
 public:
  Comparison(const Database& first, const Database& second,
             const std::function<void(const NoteDifference&)>& tell)
      : first_(first), second_(second), tell_(tell) {}

  bool run(const CheckProgress& progress) {
    // Two walks are shown as one.
    const auto half = [&](int which) {
      return [&progress, which](qint64 done, qint64 all) {
        return !progress || progress(which * all + done, 2 * all);
      };
    };
    return walkNotes(
               first_, [this](const Note& note) { return compareNote(note); }, half(0)) &&
           walkNotes(
               second_, [this](const Note& note) { return findMissing(note); }, half(1));
  }

 private:
  bool compareNote(const Note& note) {
    Note other;
    if (!second_.notes().read(note.header.unid, other)) {
      tell_({Difference::OnlyInFirst, note.header, {}, titleOf(note), false, false, {}});
      return true;
    }
    NoteDifference found{Difference::Changed, note.header, other.header, titleOf(note), false, false, {}};
    found.otherClass = note.header.noteClass != other.header.noteClass;
    found.otherParent = note.header.parent != other.header.parent;
    found.items = compareItems(first_, note, second_, other);
    if (found.otherClass || found.otherParent || !found.items.isEmpty()) tell_(found);
    return true;
  }

  bool findMissing(const Note& note) {
    Note other;
    if (!first_.notes().read(note.header.unid, other))
      tell_({Difference::OnlyInSecond, {}, note.header, titleOf(note), false, false, {}});
    return true;
  }

  const Database& first_;
  const Database& second_;
  const std::function<void(const NoteDifference&)>& tell_;
};

}  // namespace

QVector<ItemPair> pairItems(const Database& firstDatabase, const Note& first, const Database& secondDatabase,
                            const Note& second) {
  QVector<ItemPair> pairs;
  const PlacesByName others = placesByName(second);
  QHash<ItemName, qsizetype> met;
  for (qsizetype place = 0; place < first.items.size(); ++place) {
    const Item& item = first.items[place];
    const ItemName name(item.name);
    const QVector<qsizetype> places = others.value(name);
    const qsizetype turn = met[name]++, other = turn < places.size() ? places[turn] : -1;
    pairs.push_back(
        {place, other, other >= 0 && sameItem(firstDatabase, item, secondDatabase, second.items[other])});
  }
  for (qsizetype place = 0; place < second.items.size(); ++place) {
    // The first ones of a name have met theirs.
    qsizetype& matched = met[ItemName(second.items[place].name)];
    if (matched > 0)
      --matched;
    else
      pairs.push_back({-1, place, false});
  }
  return pairs;
}

QVector<ItemDifference> compareItems(const Database& firstDatabase, const Note& first,
                                     const Database& secondDatabase, const Note& second) {
  QVector<ItemDifference> found;
  for (const ItemPair& pair : pairItems(firstDatabase, first, secondDatabase, second)) {
    if (pair.same) continue;
    const Difference kind = pair.second < 0  ? Difference::OnlyInFirst
                            : pair.first < 0 ? Difference::OnlyInSecond
                                             : Difference::Changed;
    found.push_back({pair.first < 0 ? second.items[pair.second].name : first.items[pair.first].name, kind});
  }
  return found;
}

bool compareDatabases(const Database& first, const Database& second,
                      const std::function<void(const NoteDifference&)>& tell, const CheckProgress& progress) {
  return Comparison(first, second, tell).run(progress);
}

}  // namespace lens
