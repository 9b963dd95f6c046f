// Attached files: "object/file" becomes an object of the database and a "$FILE" item.
#pragma once

#include <span>

#include "embedded/dxl/import_context.h"

namespace lens {

// The word for a host type; "" when there is none.
QString hostTypeName(quint16 hostType);
// The word for a compression, by number; one that is no word is 0.
inline constexpr const char16_t* kFileCompressions[] = {u"none", u"huffman", u"lz1"};

// Bits of an attached file that DXL lists as words.
struct FileWord {
  const char16_t* word;
  quint16 bit;
};
inline constexpr FileWord kFileAttributes[] = {{u"readonly", 1}, {u"private", 2}};
inline constexpr FileWord kFileFlags[] = {{u"sign", 1}, {u"storedindoc", 2}, {u"mime", 4}};
// All bits that have a word.
constexpr quint16 toldBits(std::span<const FileWord> words) {
  quint16 bits = 0;
  for (const FileWord& word : words) bits |= word.bit;
  return bits;
}

// The reader stands at "object". False when it holds no file; it was kept as it is then.
bool readObjectElement(ImportContext& context, Note& note, const QString& itemName, quint16 flags);

}  // namespace lens
