// The console of a server: what an administrator types is done on the server's databases, and the server
// replies in text.
//
// Commands match without case and may be shortened to their first letters, two at least. A command that
// fails replies with the reason and the name of the file; only the lack of any reply is left to the caller.
#pragma once

#include <QByteArray>
#include <QString>

#include "embedded/workspace/workspace.h"

namespace lens {

// Longer commands are refused, and a longer reply is cut at the end of a line, which then says so: callers
// read the first two bytes of a reply as its length, and this is the least that those can stand for.
inline constexpr qsizetype kLongestCommand = 1024;
inline constexpr qsizetype kLongestReply = 0x4000;

// The reply of the server, given by its canonical name, in lines parted by CR LF; it begins with a letter.
// "" when there is nothing to reply to.
QString runConsoleCommand(Workspace& workspace, const QString& server, const QString& command);

// A reply as memory of the C API: one blank, which readers skip, the text in the stored character set, a NUL.
// A first line that is too long for a reply is cut, so that there is always something to read.
QByteArray consoleReply(const QString& text);

}  // namespace lens
