#include "embedded/model/embedded_file_object.h"

#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kAttachment = 1454, kOleObject = 1453;

}  // namespace

void EmbeddedFileObject::allow(const Member&) {
  open_->requirePresent();
}

const MemberTable& EmbeddedFileObject::members() const {
  static const MemberTable table{Members{
      {u"Name", [](EmbeddedFileObject& self) { return self.file_.name; }},
      {u"Type",
       [](EmbeddedFileObject& self) { return self.file_.hostType == kOleHost ? kOleObject : kAttachment; }},
      // The stored bytes count; the item says the size only where the object itself is missing.
      {u"FILESIZE",
       [](EmbeddedFileObject& self) {
         const qint64 stored = requireStore(*self.open_->database).objects().size(self.file_.objectId);
         return stored >= 0 ? stored : qint64(self.file_.size);
       }},
      {u"EXTRACTFILE",
       [](EmbeddedFileObject& self, const QString& path) {
         const OpenDatabase& database = *self.open_->database;
         if (path.isEmpty())
           throw RuntimeError(err::PathFileAccess, u"%1: \"%2\" needs a file to be extracted to"_s.arg(
                                                       database.place.path, self.file_.name));
         requireStore(database).objects().extract(self.file_.objectId, path);
       }},
  }};
  return table;
}

}  // namespace lens
