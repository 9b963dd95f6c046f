#include "embedded/model/notes_embedded_object.h"

namespace lens {
namespace {

constexpr int kAttachment = 1454;

}  // namespace

const MemberTable& NotesEmbeddedObject::members() const {
  static const MemberTable table{
      property<&NotesEmbeddedObject::name>(u"Name"),
      property<&NotesEmbeddedObject::type>(u"Type"),
      property<&NotesEmbeddedObject::fileSize>(u"FILESIZE"),
      method<&NotesEmbeddedObject::extractFile>(u"EXTRACTFILE", 1, 1),
  };
  return table;
}

Value NotesEmbeddedObject::name() {
  return file_.name;
}

Value NotesEmbeddedObject::type() {
  return kAttachment;
}

// The stored bytes count; the item says the size only where the object itself is missing.
Value NotesEmbeddedObject::fileSize() {
  const qint64 stored = database_->store->objectSize(file_.objectId);
  return Value(stored >= 0 ? stored : qint64(file_.size));
}

Value NotesEmbeddedObject::extractFile(const Arguments& arguments) {
  const QString path = arguments[0].text();
  if (path.isEmpty()) throw RuntimeError(err::PathFileAccess);
  database_->store->extractObject(file_.objectId, path);
  return {};
}

}  // namespace lens
