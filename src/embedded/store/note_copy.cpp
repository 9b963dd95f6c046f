#include "embedded/store/note_copy.h"

#include <QHash>

#include "embedded/format/single_notes.h"
#include "embedded/store/object_copy.h"
#include "notes/literals.h"

namespace lens {
namespace {

// An attached file has to be there; of other objects what is not there was none.
bool hasObject(const Item& item, const Database& database) {
  if (!mayReferToObject(item)) return false;
  return isFileKind(item.data()) || database.objects().size(objectIdOf(item.data())) >= 0;
}

QString singleName(quint16 noteClass) {
  switch (noteClass) {
    case noteclass::Icon:
      return u"icon"_s;
    case noteclass::Acl:
      return u"ACL"_s;
    case noteclass::About:
      return u"About"_s;
    case noteclass::Design:
      return u"design collection"_s;
    default:
      return u"help index"_s;
  }
}

void requireRoomForSingle(const Note& note, const Database& target) {
  const quint16 noteClass = noteclass::base(note.header.noteClass);
  if (!isSingleInstance(noteClass) || target.notes().specialNote(noteClass).isNull()) return;
  throw RuntimeError(kSecondSingleNote,
                     u"%1: the database has its %2 note already, a second one is not possible"_s.arg(
                         target.path(), singleName(noteClass)));
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
    const quint32 object = objectIdOf(item.data());
    if (!copies.contains(object)) copies.insert(object, copyObject(source, object, target));
    replaceObjectId(item.value, copies.value(object));
  }
  target.notes().save(copy);
  transaction.commit();
  return copy;
}

}  // namespace lens
