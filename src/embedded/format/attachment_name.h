// The name under which an attached file is stored and extracted.
#pragma once

#include <QString>

namespace lens {

// The last part of a name that may come with a path, so that a file extracted under it stays in the
// directory that was asked for. "" stays "".
QString attachmentName(const QString& name);

}  // namespace lens
