#include "embedded/model/mime_entity_object.h"

namespace lens {

const MemberTable& MimeEntityObject::members() const {
  static const MemberTable table{
      property<&MimeEntityObject::contentType>(u"CONTENTTYPE"),
      property<&MimeEntityObject::contentAsText>(u"CONTENTASTEXT"),
      property<&MimeEntityObject::firstChild>(u"GETFIRSTCHILDENTITY"),
      property<&MimeEntityObject::nextSibling>(u"GETNEXTSIBLING"),
  };
  return table;
}

Value MimeEntityObject::contentType() {
  return entity_->contentType();
}

Value MimeEntityObject::contentAsText() {
  return entity_->contentAsText();
}

Value MimeEntityObject::firstChild() {
  if (entity_->children().isEmpty()) return nothing();
  return newObject<MimeEntityObject>(entity_->children().first(), entity_);
}

Value MimeEntityObject::nextSibling() {
  if (!parent_ || place_ + 1 >= parent_->children().size()) return nothing();
  return newObject<MimeEntityObject>(parent_->children()[place_ + 1], parent_, place_ + 1);
}

}  // namespace lens
