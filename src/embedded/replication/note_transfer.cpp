#include "embedded/replication/note_transfer.h"

#include <QHash>

#include "embedded/store/object_copy.h"

namespace lens {
namespace {

// What an item says, with its object's content in place of its number.
QByteArray saidBy(const Item& item, const Database& database) {
  if (!mayReferToObject(item)) return item.value;
  const QByteArray digest = database.objects().digest(objectIdOf(item.data()));
  if (digest.isEmpty()) return item.value;
  Item without = item;
  replaceObjectId(without.value, 0);
  return without.value + digest;
}

}  // namespace

void bringObjects(Note& note, const Database& from, Database& to, const Note* replaced) {
  if (&from == &to) return;
  QHash<QByteArray, quint32> there;
  if (replaced)
    for (const Item& item : replaced->items)
      if (mayReferToObject(item))
        there.insert(to.objects().digest(objectIdOf(item.data())), objectIdOf(item.data()));
  for (Item& item : note.items) {
    if (!mayReferToObject(item)) continue;
    const QByteArray digest = from.objects().digest(objectIdOf(item.data()));
    if (digest.isEmpty()) continue;  // what it refers to is no object here, and none there
    quint32 id = there.value(digest);
    if (id == 0) id = copyObject(from, objectIdOf(item.data()), to);
    there.insert(digest, id);
    replaceObjectId(item.value, id);
  }
}

bool sameContent(const Note& a, const Database& inA, const Note& b, const Database& inB) {
  if (a.header.noteClass != b.header.noteClass || a.header.parent != b.header.parent ||
      a.items.size() != b.items.size())
    return false;
  for (qsizetype i = 0; i < a.items.size(); ++i)
    if (a.items[i].name != b.items[i].name || a.items[i].flags != b.items[i].flags ||
        saidBy(a.items[i], inA) != saidBy(b.items[i], inB))
      return false;
  return true;
}

}  // namespace lens
