#include "embedded/store/note_copy.h"

#include <QHash>
#include <QtEndian>
#include <exception>

namespace lens {
namespace {

// Hands the pieces of an object to another database. What fails there is kept, since a device can only
// say that it failed.
class ObjectWriter : public QIODevice {
 public:
  ObjectWriter(Database& target, quint32 object) : target_(target), object_(object) {
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
  }
  void raiseFailure() const {
    if (failure_) std::rethrow_exception(failure_);
  }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char* bytes, qint64 size) override {
    try {
      target_.appendObject(object_, QByteArrayView(bytes, size));
      return size;
    } catch (const RuntimeError&) {
      failure_ = std::current_exception();
      return -1;
    }
  }

 private:
  Database& target_;
  quint32 object_;
  std::exception_ptr failure_;
};

quint32 copyObject(const Database& source, quint32 object, Database& target) {
  const quint32 copy = target.beginObject();
  ObjectWriter writer(target, copy);
  try {
    source.readObject(object, writer);
  } catch (const RuntimeError&) {
    writer.raiseFailure();
    throw;
  }
  target.finishObject(copy);
  return copy;
}

// Where the value of an object item has the object's ID, behind the type word and the kind; -1 for kinds
// that are not known to have one.
qsizetype objectIdPlace(const Item& item) {
  constexpr quint16 kFile = 0, kLeftToDo = 3, kRunData = 8;
  constexpr qsizetype kPlace = 4;
  if (item.type() != itemtype::Object) return -1;
  ByteReader reader(item.data());
  const quint16 kind = reader.u16();
  reader.u32();
  if (reader.failed() || (kind != kFile && kind != kLeftToDo && kind != kRunData)) return -1;
  return kPlace;
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
  for (qsizetype place = 0; place < note.items.size(); ++place) {
    const qsizetype at = objectIdPlace(note.items[place]);
    if (at < 0) continue;
    char* const id = copy.items[place].value.data() + at;
    const quint32 object = qFromLittleEndian<quint32>(id);
    if (!copies.contains(object)) copies.insert(object, copyObject(source, object, target));
    qToLittleEndian(copies.value(object), id);
  }
  target.save(copy);
  transaction.commit();
  return copy;
}

}  // namespace lens
