// Texts of the boxes whose spelling looks like a slip. Users search mails and notes for them as they are,
// so they stay, and they stand here lest somebody corrects one where it is used.
#pragma once

#include <QString>

#include "notes/literals.h"

namespace lens::exact {

inline const QString kItemExists = u"Item name allready exits!"_s;
inline const QString kUnknownType = u"Not implemented for the field type !!"_s;
inline const QString kNoReplaceText = u"Replace text is empty!!"_s;
inline const QString kNoSearchTexts = u"Search or Replace fields are empty !!"_s;
inline const QString kDeleteTitle = u"Error in DeleteFiels"_s;
inline const QString kReplaceAllTitle = u"Error in SeachReplaceAll"_s;
inline const QString kNoRichText = u"Field is not a rich text!! can't load."_s;
inline const QString kCannotExecute = u"Can't execute the file !!"_s;
inline const QString kNoDatabase = u"Cann't open DB try again"_s;
inline const QString kNoDocument = u"Cann't open document try again"_s;
inline const QString kOlderProfilesLabel = u"ROFILES"_s;
inline const QString kHexDigitsOnly = u"Only Charachter between 'A' - 'F'  allowed"_s;

// No source lines are kept, so a failure's line is always 0. Some boxes have the colon, some not.
inline const QString kInLine = u" in line 0"_s;
inline const QString kInLineColon = u" in line: 0"_s;

// Behind the status of a file that could not be opened. Blanks differ from one to the next.
inline const QString kOutOfMemory = u"Error: Out of Memory/Resources. Couldn't Execute!"_s;
inline const QString kFileNotFound = u"Error: File not found.  Couldn't Execute!"_s;
inline const QString kPathNotFound = u"Error: Path not found. Couldn't Execute!"_s;
inline const QString kBadFormat = u"Error:  Bad File Format. Couldn't Execute!"_s;

}  // namespace lens::exact
