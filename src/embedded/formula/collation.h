// The order of texts: apostrophe, dash, digits, then letters aAbBcC with accents behind their plain
// letter, then the other characters.
#pragma once

#include <QByteArray>
#include <QStringView>

namespace lens::formula {

struct CollationRules {
  bool caseSensitive = true;
  bool accentSensitive = true;
  bool pitchSensitive = true;  // half and full width forms differ
};

// -1, 0 or 1. Letter by letter: the first place where the texts differ decides, and a lower case letter
// goes before the same letter in upper case.
int compareTexts(QStringView left, QStringView right, const CollationRules& rules = {});

// The first letters of a text as a number, for sorting: of two texts the one with the smaller number goes
// first. Equal numbers tell nothing.
quint64 collationPrefix(QStringView text, const CollationRules& rules = {});

// Appends bytes that stand in the order of the texts when they are compared as bytes, with a zero byte at
// their end; the bytes of a text's beginning are the beginning of its bytes. Texts that compareTexts finds
// equal have the same bytes.
void appendCollationBytes(QByteArray& bytes, QStringView text, const CollationRules& rules = {});

}  // namespace lens::formula
