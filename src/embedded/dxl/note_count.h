// How many notes a file brings, told without reading it as XML.
#pragma once

#include <QString>
#include <functional>

namespace lens {

// No fewer start tags of notes stand in the file; entities may still make more. Asks now and then whether to
// go on.
qint64 mostNotesIn(const QString& path, const std::function<bool()>& goOn);

}  // namespace lens
