// Mistakes in full-text queries.
#pragma once

#include <QString>

#include "embedded/format/engine_fault.h"

namespace lens {

// kQueryError: a mistake at that place of the query, counted from 0; the word is where it stands.
[[noreturn]] void raiseQueryError(const QString& reason, qsizetype place, QStringView word = {});

}  // namespace lens
