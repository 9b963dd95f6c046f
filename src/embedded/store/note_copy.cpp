#include "embedded/store/note_copy.h"

#include <QHash>

#include "embedded/store/object_copy.h"

namespace lens {
namespace {

// An attached file has to be there; of other objects what is not there was none.
bool hasObject(const Item& item, const Database& database) {
  constexpr quint16 kFile = 0;
  if (!mayReferToObject(item)) return false;
  return ByteReader(item.data()).u16() == kFile || database.objectSize(objectOf(item)) >= 0;
}

void requireRoomForSingle(const Note& note, const Database& target) {
  const quint16 noteClass = noteclass::base(note.header.noteClass);
  if ((noteClass & (noteclass::Icon | noteclass::Acl)) == 0 || target.specialNote(noteClass) == 0) return;
  throw RuntimeError(
      kSecondSingleNote,
      QStringLiteral("%1: the database has its %2 note already, a second one is not possible")
          .arg(target.path(), noteClass & noteclass::Icon ? QStringLiteral("icon") : QStringLiteral("ACL")));
}

}  // namespace

Note copyNote(const Note& note, const Database& source, Database& target) {
  Note copy;
  copy.header.noteClass = note.header.noteClass;
  copy.header.parent = note.header.parent;
  copy.items = note.items;
  Database::Transaction transaction(target);
  requireRoomForSingle(note, target);
  QHash<quint32, quint32> copies;
  for (Item& item : copy.items) {
    if (!hasObject(item, source)) continue;
    const quint32 object = objectOf(item);
    if (!copies.contains(object)) copies.insert(object, copyObject(source, object, target));
    setObjectOf(item, copies.value(object));
  }
  target.save(copy);
  transaction.commit();
  return copy;
}

}  // namespace lens
