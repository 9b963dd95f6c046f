#include "embedded/model/notes_mime_entity.h"

namespace lens {

const MemberTable& NotesMimeEntity::members() const {
  static const MemberTable table{
      property<&NotesMimeEntity::contentType>(u"CONTENTTYPE"),
      property<&NotesMimeEntity::contentAsText>(u"CONTENTASTEXT"),
      property<&NotesMimeEntity::firstChild>(u"GETFIRSTCHILDENTITY"),
      property<&NotesMimeEntity::nextSibling>(u"GETNEXTSIBLING"),
  };
  return table;
}

Value NotesMimeEntity::contentType() {
  return entity_->contentType();
}

Value NotesMimeEntity::contentAsText() {
  return entity_->contentAsText();
}

Value NotesMimeEntity::firstChild() {
  if (entity_->children().isEmpty()) return nothing();
  return newObject<NotesMimeEntity>(entity_->children().first(), entity_);
}

Value NotesMimeEntity::nextSibling() {
  if (!parent_ || place_ + 1 >= parent_->children().size()) return nothing();
  return newObject<NotesMimeEntity>(parent_->children()[place_ + 1], parent_, place_ + 1);
}

}  // namespace lens
