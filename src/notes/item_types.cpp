#include "notes/item_types.h"

#include "notes/literals.h"

namespace lens {

const QVector<ItemTypeRow>& itemTypeTable() {
  static const QVector<ItemTypeRow> table = {
      {itemcode::ActionCd, "ACTIONCD (16): means saved action CD records; non-Computable; canonical form"},
      {itemcode::AssistantInfo,
       "ASSISTANTINFO (17): means saved assistant information; non-Computable; canonical form"},
      {itemcode::Attachment, "ATTACHMENT (1084) means file attachment"},
      {itemcode::Authors, "AUTHORS (1076) means authors"},
      {itemcode::Collation, "COLLATION (2). This value is new with Release 6."},
      {itemcode::Date, "DATETIMES (1024) means date-time value or range of date-time values"},
      {itemcode::EmbeddedObject, "EMBEDDEDOBJECT (1090) means embedded object"},
      {itemcode::ErrorItem, "ERRORITEM (256) means an error occurred while accessing the type"},
      {itemcode::Formula, "FORMULA (1536) means Notes formula"},
      {itemcode::Html, "HTML (21) means HTML source text"},
      {itemcode::Icon, "ICON (6) means icon"},
      {itemcode::LsObject, "LSOBJECT (20) means saved LotusScript Object code for an agent"},
      {itemcode::MimePart, "MIME_PART (25) means MIME support"},
      {itemcode::Names, "NAMES (1074) means names"},
      {itemcode::NoteLinks, "NOTELINKS (7) means link to a database, view, or document"},
      {itemcode::NoteRefs, "NOTEREFS (4) means reference to the parent document"},
      {itemcode::Number, "NUMBERS (768) means number or number list"},
      {itemcode::OtherObject, "OTHEROBJECT (1085) means other object"},
      {itemcode::QueryCd, "QUERYCD (15) means saved query CD records; non-Computable; canonical form"},
      {itemcode::Readers, "READERS (1075) means readers"},
      {itemcode::Rfc822Text, "RFC822Text (1282) means RFC822 Internet mail text"},
      {itemcode::RichText, "RICHTEXT (1) means rich text"},
      {itemcode::Signature, "SIGNATURE (8) means signature"},
      {itemcode::Text, "TEXT (1280) means text or text list"},
      {itemcode::Unavailable, "UNAVAILABLE (512) means the item type isn't available"},
      {itemcode::Unknown, "UNKNOWN (0) means the item type isn't known"},
      {itemcode::UserData, "USERDATA (14) means user data"},
      {itemcode::UserId, "USERID (1792) means user ID name"},
      {itemcode::ViewMapData, "VIEWMAPDATA (18) means saved ViewMap dataset; non-Computable; canonical form"},
      {itemcode::ViewMapLayout,
       "VIEWMAPLAYOUT (19) means saved ViewMap layout; non-Computable; canonical form"},
  };
  return table;
}

QString itemTypeName(int code) {
  for (const ItemTypeRow& row : itemTypeTable())
    if (row.code == code) return QString::fromLatin1(row.sentence).section(u' ', 0, 0);
  return QString::number(code);
}

}  // namespace lens
