#include "embedded/model/item_object.h"

#include "embedded/model/item_text.h"
#include "notes/literals.h"

namespace lens {
namespace {

bool hasFlag(const OpenItem& open, quint16 bit) {
  return open.item().flags & bit;
}

void setFlag(const OpenItem& open, quint16 bit, bool on) {
  Item& item = open.item();
  item.flags = on ? item.flags | bit : item.flags & ~bit;
}

// What the names of an item mean: readers are names and no longer authors, and the other way round.
void setRole(const OpenItem& open, quint16 role, quint16 former, const QString& word, bool on) {
  const Item& item = open.item();
  const quint16 type = item.type();
  if (type == itemtype::RichText) return;  // as with the summary: it cannot be one
  if (on && type != itemtype::Text && type != itemtype::TextList)
    throw RuntimeError(err::TypeMismatch, u"%1: the item \"%2\" holds no text, so no %3"_s.arg(
                                              open.databasePath(), item.name.left(64), word));
  if (on && former) setFlag(open, former, false);
  if (on || hasFlag(open, role)) setFlag(open, itemflag::Names, on);
  setFlag(open, role, on);
}

}  // namespace

const MemberTable& ItemObject::members() const {
  static const MemberTable table{itemMembers()};
  return table;
}

Members ItemObject::itemMembers() {
  Members members{
      {u"Name", [](ItemObject& self) { return self.open_.item().name; }},
      {u"Text",
       [](ItemObject& self) {
         return itemAsText(self.open_.item(), self.open_.note()->database->context->workspace->regional());
       }},
      {u"Type", [](ItemObject& self) { return objectModelType(self.open_.item()); }},
      {u"Values", [](ItemObject& self) { return valuesOf(self.open_.item()); }},
  };
  const Members flags = flagMembers();
  members.insert(members.end(), flags.begin(), flags.end());
  return members;
}

Members ItemObject::flagMembers() {
  return {
      // Rich text is never part of what views show of a document.
      {u"ISSUMMARY", [](ItemObject& self) { return hasFlag(self.open_, itemflag::Summary); },
       [](ItemObject& self, bool on) {
         if (self.open_.item().type() != itemtype::RichText) setFlag(self.open_, itemflag::Summary, on);
       }},
      // Encrypted and signed are marks: nothing is enciphered.
      {u"ISENCRYPTED", [](ItemObject& self) { return hasFlag(self.open_, itemflag::Seal); },
       [](ItemObject& self, bool on) { setFlag(self.open_, itemflag::Seal, on); }},
      {u"ISSIGNED", [](ItemObject& self) { return hasFlag(self.open_, itemflag::Sign); },
       [](ItemObject& self, bool on) { setFlag(self.open_, itemflag::Sign, on); }},
      {u"ISPROTECTED", [](ItemObject& self) { return hasFlag(self.open_, itemflag::Protected); },
       [](ItemObject& self, bool on) { setFlag(self.open_, itemflag::Protected, on); }},
      {u"ISREADERS", [](ItemObject& self) { return hasFlag(self.open_, itemflag::Readers); },
       [](ItemObject& self, bool on) {
         setRole(self.open_, itemflag::Readers, itemflag::Authors, u"readers"_s, on);
       }},
      {u"ISAUTHORS", [](ItemObject& self) { return hasFlag(self.open_, itemflag::Authors); },
       [](ItemObject& self, bool on) {
         setRole(self.open_, itemflag::Authors, itemflag::Readers, u"authors"_s, on);
       }},
      {u"ISNAMES", [](ItemObject& self) { return hasFlag(self.open_, itemflag::Names); },
       [](ItemObject& self, bool on) { setRole(self.open_, itemflag::Names, 0, u"names"_s, on); }},
  };
}

}  // namespace lens
