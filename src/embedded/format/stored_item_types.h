// The types of items: how a value is laid out, what its flags say, and what the object model calls it.
#pragma once

#include <QtGlobal>

namespace lens {

// The type word of a stored value.
namespace itemtype {
inline constexpr quint16 Unknown = 0x0000, RichText = 0x0001, Collation = 0x0002, Object = 0x0003,
                         NoteRefs = 0x0004, ViewFormat = 0x0005, Icon = 0x0006, NoteLinks = 0x0007,
                         Signature = 0x0008, UserData = 0x000E, Query = 0x000F, Action = 0x0010,
                         AssistantInfo = 0x0011, ViewMapDataset = 0x0012, ViewMapLayout = 0x0013,
                         LsObject = 0x0014, Html = 0x0015, MimePart = 0x0019, OutlineFormat = 0x001A,
                         Error = 0x0100, Unavailable = 0x0200, Number = 0x0300, NumberRange = 0x0301,
                         Time = 0x0400, TimeRange = 0x0401, Text = 0x0500, TextList = 0x0501,
                         Rfc822Text = 0x0502, Formula = 0x0600, UserId = 0x0700;

// Whether the value is one text or a list of texts of whatever kind: the high byte tells.
inline constexpr bool isText(quint16 type) {
  return type >> 8 == Text >> 8;
}
}  // namespace itemtype

namespace itemflag {
inline constexpr quint16 Sign = 0x0001, Seal = 0x0002, Summary = 0x0004, Authors = 0x0020, Names = 0x0040,
                         Placeholder = 0x0100, Protected = 0x0200, Readers = 0x0400, Unchanged = 0x1000;
}  // namespace itemflag

// What the object model reports in place of the type where an item is more than its layout. All other types
// are reported as they are, a list as its element.
namespace reportedtype {
inline constexpr int Names = 1074, Readers = 1075, Authors = 1076, Attachment = 1084, OtherObject = 1085,
                     EmbeddedObject = 1090;
}  // namespace reportedtype

}  // namespace lens
