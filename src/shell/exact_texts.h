// Texts of the boxes whose spelling looks like a slip. Users search mails and notes for them as they are,
// so they stay, and they stand here lest somebody corrects one where it is used.
#pragma once

#include <QString>

namespace lens::exact {

inline const QString kItemExists = QStringLiteral("Item name allready exits!");
inline const QString kUnknownType = QStringLiteral("Not implemented for the field type !!");
inline const QString kNoReplaceText = QStringLiteral("Replace text is empty!!");
inline const QString kNoSearchTexts = QStringLiteral("Search or Replace fields are empty !!");
inline const QString kDeleteTitle = QStringLiteral("Error in DeleteFiels");
inline const QString kReplaceAllTitle = QStringLiteral("Error in SeachReplaceAll");
inline const QString kNoRichText = QStringLiteral("Field is not a rich text!! can't load.");
inline const QString kCannotExecute = QStringLiteral("Can't execute the file !!");
inline const QString kNoDatabase = QStringLiteral("Cann't open DB try again");
inline const QString kNoDocument = QStringLiteral("Cann't open document try again");
inline const QString kOlderProfilesLabel = QStringLiteral("ROFILES");
inline const QString kHexDigitsOnly = QStringLiteral("Only Charachter between 'A' - 'F'  allowed");

// Behind the status of a file that could not be opened. Blanks differ from one to the next.
inline const QString kOutOfMemory = QStringLiteral("Error: Out of Memory/Resources. Couldn't Execute!");
inline const QString kFileNotFound = QStringLiteral("Error: File not found.  Couldn't Execute!");
inline const QString kPathNotFound = QStringLiteral("Error: Path not found. Couldn't Execute!");
inline const QString kBadFormat = QStringLiteral("Error:  Bad File Format. Couldn't Execute!");

}  // namespace lens::exact
