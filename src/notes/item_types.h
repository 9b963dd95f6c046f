// The type codes of items as the object model tells them, and the sentences that say what they mean.
#pragma once

#include <QString>
#include <QVector>

namespace lens {

namespace itemcode {
inline constexpr int Unknown = 0, RichText = 1, Collation = 2, NoteRefs = 4, Icon = 6, NoteLinks = 7,
                     Signature = 8, UserData = 14, QueryCd = 15, ActionCd = 16, AssistantInfo = 17,
                     ViewMapData = 18, ViewMapLayout = 19, LsObject = 20, Html = 21, MimePart = 25,
                     Unavailable = 512, Number = 768, Date = 1024, Names = 1074, Readers = 1075,
                     Authors = 1076, Attachment = 1084, OtherObject = 1085, EmbeddedObject = 1090,
                     Text = 1280, Rfc822Text = 1282, Formula = 1536, UserId = 1792;
// The key of its sentence, which says 256: users find no sentence for type 256.
inline constexpr int ErrorItem = 156;
}  // namespace itemcode

struct ItemTypeRow {
  int code;
  const char* sentence;
};

// Thirty rows in the order in which the user sees them, alphabetical by type name.
const QVector<ItemTypeRow>& itemTypeTable();

// The name that a sentence begins with, such as "TEXT"; the number of a type that has none.
QString itemTypeName(int code);

}  // namespace lens
