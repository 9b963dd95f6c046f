// Settings files from the fuzzer: a file is read or refused by its name, and an entry that is written is read
// again while all others stay.
#include <QFile>
#include <QTemporaryDir>

#include "check.h"
#include "embedded/files/ini_file.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

const QStringList& names() {
  static const QStringList all{u"Directory"_s, u"Region"_s, u"a"_s, u"[Notes]"_s};
  return all;
}

QStringList valuesOf(const IniFile& file) {
  QStringList values;
  for (const QString& name : names()) values += file.has(name) ? file.value(name) : u"(none)"_s;
  return values;
}

void tryFile(const QString& path) {
  try {
    IniFile file(path, u"Notes"_s);
    const QStringList before = valuesOf(file);
    file.change([](IniFile& changed) { changed.setValue(u"Written"_s, u"x = y"_s); });
    check(valuesOf(file) == before, "Writing an entry changed another.");
    const IniFile again(path, u"Notes"_s);
    check(again.value(u"written") == u"x = y", "What was written is not read.");
    check(valuesOf(again) == before, "Written and read again, another entry changed.");
  } catch (const RuntimeError& error) {
    check(error.description().contains(path), "A refusal does not name the file.", error.description());
  }
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const QTemporaryDir directory;
  const QString path = directory.filePath(QStringLiteral("notes.ini"));
  QFile file(path);
  lens::check(file.open(QIODevice::WriteOnly), "The file cannot be made.");
  file.write(reinterpret_cast<const char*>(data), qint64(size));
  file.close();
  lens::tryFile(path);
  return 0;
}
