#include "embedded/store/note_copy.h"

#include <QHash>

#include "embedded/store/object_copy.h"
#include "embedded/store/single_notes.h"

namespace lens {
namespace {

// An attached file has to be there; of other objects what is not there was none.
bool hasObject(const Item& item, const Database& database) {
  constexpr quint16 kFile = 0;
  if (!mayReferToObject(item)) return false;
  return ByteReader(item.data()).u16() == kFile || database.objectSize(objectOf(item)) >= 0;
}

QString singleName(quint16 noteClass) {
  switch (noteClass) {
    case noteclass::Icon:
      return QStringLiteral("icon");
    case noteclass::Acl:
      return QStringLiteral("ACL");
    case noteclass::About:
      return QStringLiteral("About");
    case noteclass::Design:
      return QStringLiteral("design collection");
    default:
      return QStringLiteral("help index");
  }
}

void requireRoomForSingle(const Note& note, const Database& target) {
  const quint16 noteClass = noteclass::base(note.header.noteClass);
  if (!isSingleInstance(noteClass) || target.specialNote(noteClass) == 0) return;
  throw RuntimeError(kSecondSingleNote,
                     QStringLiteral("%1: the database has its %2 note already, a second one is not possible")
                         .arg(target.path(), singleName(noteClass)));
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
