#include "notes/item_type_sentences.h"

namespace lens {

const QVector<ItemTypeRow>& itemTypeTable() {
  static const QVector<ItemTypeRow> table = {
      // ERRORITEM has the key 156 while its sentence says 256: type 256 has no row.
      {16, "ACTIONCD (16): means saved action CD records; non-Computable; canonical form"},
      {17, "ASSISTANTINFO (17): means saved assistant information; non-Computable; canonical form"},
      {1084, "ATTACHMENT (1084) means file attachment"},
      {1076, "AUTHORS (1076) means authors"},
      {2, "COLLATION (2). This value is new with Release 6."},
      {1024, "DATETIMES (1024) means date-time value or range of date-time values"},
      {1090, "EMBEDDEDOBJECT (1090) means embedded object"},
      {156, "ERRORITEM (256) means an error occurred while accessing the type"},
      {1536, "FORMULA (1536) means Notes formula"},
      {21, "HTML (21) means HTML source text"},
      {6, "ICON (6) means icon"},
      {20, "LSOBJECT (20) means saved LotusScript Object code for an agent"},
      {25, "MIME_PART (25) means MIME support"},
      {1074, "NAMES (1074) means names"},
      {7, "NOTELINKS (7) means link to a database, view, or document"},
      {4, "NOTEREFS (4) means reference to the parent document"},
      {768, "NUMBERS (768) means number or number list"},
      {1085, "OTHEROBJECT (1085) means other object"},
      {15, "QUERYCD (15) means saved query CD records; non-Computable; canonical form"},
      {1075, "READERS (1075) means readers"},
      {1282, "RFC822Text (1282) means RFC822 Internet mail text"},
      {1, "RICHTEXT (1) means rich text"},
      {8, "SIGNATURE (8) means signature"},
      {1280, "TEXT (1280) means text or text list"},
      {512, "UNAVAILABLE (512) means the item type isn't available"},
      {0, "UNKNOWN (0) means the item type isn't known"},
      {14, "USERDATA (14) means user data"},
      {1792, "USERID (1792) means user ID name"},
      {18, "VIEWMAPDATA (18) means saved ViewMap dataset; non-Computable; canonical form"},
      {19, "VIEWMAPLAYOUT (19) means saved ViewMap layout; non-Computable; canonical form"},
  };
  return table;
}

}  // namespace lens
