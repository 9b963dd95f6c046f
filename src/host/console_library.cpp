#include "host/console_library.h"

#include <QFileInfo>
#include <QLibrary>
#include <memory>

#include "host/paths.h"
#include "notes/library_call.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

#ifdef Q_OS_WIN
const QString kFile = u"cmdRemCon.dll"_s;
#else
const QString kFile = u"cmdRemCon.so"_s;
#endif

using Function = qint16(LENS_LIBRARY_CALL*)(const char* server, const char* command, char* response);

}  // namespace

RemoteCommand consoleLibraryIn(const QString& directory) {
  const QString path = joinedPath(directory, kFile);
  if (!QFileInfo(path).isFile()) return {};
  // Stays loaded: the library of the client that it uses must not go under our own calls.
  QLibrary library(path);
  if (!library.load()) throw RuntimeError(err::LibraryNotLoaded, path + u": " + library.errorString());
  const auto function = reinterpret_cast<Function>(library.resolve("RemoteCommand"));
  if (!function) throw RuntimeError(err::EntryNotFound, path + u": " + standardErrorText(err::EntryNotFound));
  return [function](const QByteArray& server, const QByteArray& command, QByteArray& reply) {
    return function(server.constData(), command.constData(), reply.data());
  };
}

}  // namespace lens
