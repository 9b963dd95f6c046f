// The rows of the two lists, made and taken apart in one place.
//
//   fldList   item name, ": ", blanks to a common width, text
//   idList    a note ID of 8 digits, or a name (aliases behind "|"), " # " and the note ID
#pragma once

#include <QString>
#include <limits>

#include "notes/literals.h"

namespace lens {

inline const QString kNameEnd = u": "_s;
inline const QString kIdMark = u" # "_s;
inline const QString kShortIdMark = u"# "_s;

// Width 0 leaves the text directly behind ": ".
QString fieldRow(const QString& name, qsizetype width, const QString& text);
// What stands before the first ": "; empty for a row without one.
QString fieldName(const QString& row);
// The same for those who cannot go on without a name: raises 5 for a row without ": ".
QString requiredFieldName(const QString& row);
// What stands behind the first ": ", trimmed.
QString fieldText(const QString& row);

// A row of idList for a note with a name; two blanks stand before the mark.
QString namedNoteRow(const QString& name, const QString& noteId);

// As lblSize shows the size of an item: "12 bytes"; nothing for one that nobody can tell.
inline constexpr qint64 kUnknownSize = std::numeric_limits<qint64>::min();
QString sizeText(qint64 bytes);

struct CollectionRow {
  QString designName;  // trimmed, without aliases; empty when the row is a bare ID
  QString id;          // what stands behind " # ", or the whole row
};
CollectionRow collectionRow(const QString& row);
// The title of a design note, as the agent reader takes it from a row that is not empty: a row without
// " # ", or one that begins with it, is the title itself. Aliases are cut off in either case.
QString designTitle(const QString& row);
// The note ID as those read it who ask for no name: what stands behind the first "# ", or the whole row.
QString listedNoteId(const QString& row);
// Eight hexadecimal digits, as all rows are written. Who changes or removes a note asks, so that a name with
// a mark in it ("Plan # 8fa") never leads to another note.
bool isWholeNoteId(QStringView text);

}  // namespace lens
