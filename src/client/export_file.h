// Files that the client window exports into.
#pragma once

#include <QIODevice>
#include <QString>
#include <functional>

namespace lens {

// Has a file written, whole or not at all. False when the writer was cancelled and said so by false; nothing
// is left of the file then, nor after a failure, and the one that was there stays. Raises 70 for a database
// that is open, and 75 with the reason where the file cannot be written.
bool writeExport(const QString& path, const std::function<bool(QIODevice&)>& write);

}  // namespace lens
