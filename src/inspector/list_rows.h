// The rows of the two lists, made and taken apart in one place.
//
//   fldList   item name, ": ", blanks to a common width, text
//   idList    a note ID of 8 digits, or a name (aliases behind "|"), " # " and the note ID
#pragma once

#include <QString>

namespace lens {

inline const QString kNameEnd = QStringLiteral(": ");
inline const QString kIdMark = QStringLiteral(" # ");

// Width 0 leaves the text directly behind ": ".
QString fieldRow(const QString& name, qsizetype width, const QString& text);
// What stands before the first ": "; empty for a row without one.
QString fieldName(const QString& row);
// What stands behind the first ": ", trimmed.
QString fieldText(const QString& row);

struct CollectionRow {
  QString designName;  // trimmed, without aliases; empty when the row is a bare ID
  QString id;          // what stands behind " # ", or the whole row
};
CollectionRow collectionRow(const QString& row);

}  // namespace lens
