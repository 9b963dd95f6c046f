// The lines of the content box as the values of an item.
//
// Lines are cut off one by one with element() (shell/text_routines.h), whose treatment of an empty line is
// part of what users see: it gives a single blank, and the line behind it begins with the line feed. A line
// end beyond position 32767 and the 32768th line raise Overflow (6).
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

#include "host/regional.h"
#include "notes/bridge.h"
#include "shell/error_modes.h"

namespace lens {

// Each line a value, as a new item takes them.
QStringList textLines(QString content);
// Each line a value, cut once more at its first carriage return: what the viewer shows of several values
// has line ends of CR CR LF.
QStringList overwriteLines(QString content);

// Each place takes the number of its line: lines beyond are passed over, places beyond the last line are 0,
// and so is a line that begins with no number. With the trap off, places from a line that cannot be cut on
// keep what they hold.
void numberLines(Statements& step, QString content, QVector<Value>& places);

// Each line a date by the user's region. The first line switches the trap off for the rest of the command;
// an empty content leaves it on. A line that is no date, or one that meets a failure noted before, leaves its
// place to the next line. When the first line is none, its place stays empty until a good one fills it.
QVector<Value> dateLines(Statements& step, QString content, const Regional& regional);

// The values as an array that REPLACEITEMVALUE takes.
Value valueList(const QStringList& texts);

}  // namespace lens
