#include "embedded/model/embedded_file_object.h"

#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kAttachment = 1454, kOleObject = 1453;
constexpr quint16 kOleHost = 0x0100;

}  // namespace

const MemberTable& EmbeddedFileObject::members() const {
  static const MemberTable table{
      property<&EmbeddedFileObject::name>(u"Name"),
      property<&EmbeddedFileObject::type>(u"Type"),
      property<&EmbeddedFileObject::fileSize>(u"FILESIZE"),
      method<&EmbeddedFileObject::extractFile>(u"EXTRACTFILE", 1, 1),
  };
  return table;
}

void EmbeddedFileObject::allow(const Member&) {
  open_->requirePresent();
}

Value EmbeddedFileObject::name() {
  return file_.name;
}

Value EmbeddedFileObject::type() {
  return file_.hostType == kOleHost ? kOleObject : kAttachment;
}

// The stored bytes count; the item says the size only where the object itself is missing.
Value EmbeddedFileObject::fileSize() {
  const qint64 stored = requireStore(*open_->database).objects().size(file_.objectId);
  return Value(stored >= 0 ? stored : qint64(file_.size));
}

Value EmbeddedFileObject::extractFile(const Arguments& arguments) {
  const QString path = arguments[0].text();
  if (path.isEmpty())
    throw RuntimeError(err::PathFileAccess, u"%1: \"%2\" needs a file to be extracted to"_s.arg(
                                                open_->database->place.path, file_.name));
  requireStore(*open_->database).objects().extract(file_.objectId, path);
  return {};
}

}  // namespace lens
