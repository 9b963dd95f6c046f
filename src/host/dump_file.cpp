#include "host/dump_file.h"

#include <algorithm>

#include "host/save_file.h"
#include "notes/code_page.h"

namespace lens {
namespace {

#ifdef Q_OS_WIN
constexpr char kLineEnd[] = "\r\n";
#else
constexpr char kLineEnd[] = "\n";
#endif

}  // namespace

DumpFile::DumpFile(const QString& path) : file_(path) {
  requireWritablePlace(path);
  if (!file_.open(QIODevice::WriteOnly)) failToWrite(path, file_.errorString());
}

void DumpFile::write(const QStringList& lines) {
  const bool written = std::all_of(lines.begin(), lines.end(), [this](const QString& line) {
    const QByteArray bytes = toCodePage(line) + kLineEnd;
    return file_.write(bytes) == bytes.size();
  });
  if (!written || !commitWhole(file_)) failToWrite(file_.fileName(), file_.errorString());
}

}  // namespace lens
