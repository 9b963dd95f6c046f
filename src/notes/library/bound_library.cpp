#include "notes/library/bound_library.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <dlfcn.h>

#include <QFileInfo>
#endif

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

[[noreturn]] void failToBind(int number, const QString& what, const QString& reason) {
  throw RuntimeError(number, u"%1: %2 (%3)"_s.arg(standardErrorText(number), what, reason));
}

#ifdef Q_OS_WIN
void* loadLibrary(const QString& file) {
  if (void* const library = LoadLibraryW(reinterpret_cast<const wchar_t*>(file.utf16()))) return library;
  const DWORD code = GetLastError();
  const int number = code == ERROR_MOD_NOT_FOUND ? err::FileNotFound : err::LibraryNotLoaded;
  failToBind(number, file, qt_error_string(int(code)));
}

QFunctionPointer functionIn(void* library, const char* name) {
  return reinterpret_cast<QFunctionPointer>(GetProcAddress(HMODULE(library), name));
}
#else
void* loadLibrary(const QString& file) {
  if (void* const library = ::dlopen(QFile::encodeName(file).constData(), RTLD_NOW)) return library;
  const QString reason = QString::fromLocal8Bit(::dlerror());
  failToBind(QFileInfo::exists(file) ? err::LibraryNotLoaded : err::FileNotFound, file, reason);
}

QFunctionPointer functionIn(void* library, const char* name) {
  return reinterpret_cast<QFunctionPointer>(::dlsym(library, name));
}
#endif

}  // namespace

QFunctionPointer BoundLibrary::function(const char* name) {
  QFunctionPointer& known = known_[QByteArray::fromRawData(name, qstrlen(name))];
  if (known) return known;
  if (!library_) library_ = loadLibrary(file_);
  known = functionIn(library_, name);
  if (!known) failToBind(err::EntryNotFound, file_, QString::fromLatin1(name));
  return known;
}

}  // namespace lens
