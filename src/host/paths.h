// Paths as the procedures write them, on any platform.
#pragma once

#include <QString>

namespace lens {

// "\" means the host's separator.
QString hostPath(QString path);
// The existing file or directory that a path means, "" when there is none. Where names are
// case-sensitive, a part that does not exist is looked for without regard to case.
QString findPath(const QString& path);

}  // namespace lens
