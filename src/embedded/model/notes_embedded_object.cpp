#include "embedded/model/notes_embedded_object.h"

namespace lens {
namespace {

constexpr int kAttachment = 1454, kOleObject = 1453;
constexpr quint16 kOleHost = 0x0100;

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

void NotesEmbeddedObject::allow(const Member&) {
  open_->requirePresent();
}

Value NotesEmbeddedObject::name() {
  return file_.name;
}

Value NotesEmbeddedObject::type() {
  return file_.hostType == kOleHost ? kOleObject : kAttachment;
}

// The stored bytes count; the item says the size only where the object itself is missing.
Value NotesEmbeddedObject::fileSize() {
  const qint64 stored = requireStore(*open_->database).objectSize(file_.objectId);
  return Value(stored >= 0 ? stored : qint64(file_.size));
}

Value NotesEmbeddedObject::extractFile(const Arguments& arguments) {
  const QString path = arguments[0].text();
  if (path.isEmpty())
    throw RuntimeError(err::PathFileAccess, QStringLiteral("%1: \"%2\" needs a file to be extracted to")
                                                .arg(open_->database->place.path, file_.name));
  requireStore(*open_->database).extractObject(file_.objectId, path);
  return {};
}

}  // namespace lens
