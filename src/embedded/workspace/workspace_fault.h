// How the workspace fails.
#pragma once

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

// Numbers of the workspace's own failures; the description names the directory, server or file.
namespace workspacefault {
inline constexpr int CannotOpen = 4080;
inline constexpr int UnknownServer = 4081;
inline constexpr int BadPath = 4082;
inline constexpr int NoSuchFile = 4083;
inline constexpr int FileExists = 4084;
inline constexpr int InUse = 4085;
}  // namespace workspacefault

[[noreturn]] inline void failWorkspace(int number, const QString& what, const QString& reason) {
  throw RuntimeError(number, u"%1: %2"_s.arg(what, reason));
}

}  // namespace lens
