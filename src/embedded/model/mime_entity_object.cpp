#include "embedded/model/mime_entity_object.h"

namespace lens {

const MemberTable& MimeEntityObject::members() const {
  static const MemberTable table{Members{
      {u"CONTENTTYPE", [](MimeEntityObject& self) { return self.entity_->contentType(); }},
      {u"CONTENTASTEXT", [](MimeEntityObject& self) { return self.entity_->contentAsText(); }},
      {u"GETFIRSTCHILDENTITY",
       [](MimeEntityObject& self) {
         if (self.entity_->children().isEmpty()) return nothing();
         return newObject<MimeEntityObject>(self.entity_->children().first(), self.entity_);
       }},
      {u"GETNEXTSIBLING",
       [](MimeEntityObject& self) {
         const qsizetype next = self.place_ + 1;
         if (!self.parent_ || next >= self.parent_->children().size()) return nothing();
         return newObject<MimeEntityObject>(self.parent_->children()[next], self.parent_, next);
       }},
  }};
  return table;
}

}  // namespace lens
