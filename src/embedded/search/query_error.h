// Mistakes in full-text queries.
#pragma once

#include <QString>

namespace lens {

inline constexpr int kQueryError = 4106;

// A mistake at that place of the query, counted from 0; the word is where it stands.
[[noreturn]] void raiseQueryError(const QString& reason, qsizetype place, QStringView word = {});

}  // namespace lens
