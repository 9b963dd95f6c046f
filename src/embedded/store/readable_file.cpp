#include "embedded/store/readable_file.h"

#include <QFileInfo>

#include "embedded/store/database_copy.h"
#include "host/held_file.h"
#include "notes/literals.h"

namespace lens {
namespace {

[[noreturn]] void refuseReading(int number, const QString& path, const QString& reason) {
  throw RuntimeError(number, u"%1: %2"_s.arg(path, reason));
}

}  // namespace

ReadableFile::ReadableFile(const QString& path) : file_(path) {
  const QFileInfo info(path);
  if (!info.exists()) refuseReading(err::FileNotFound, path, u"the file does not exist"_s);
  if (!info.isFile()) refuseReading(err::PathFileAccess, path, u"this is no file"_s);
  if (Database::looksLikeDatabase(path)) {
    copy_ = std::make_unique<QTemporaryDir>();
    if (!copy_->isValid()) refuseReading(err::PathFileAccess, path, copy_->errorString());
    file_.setFileName(copy_->filePath(u"copy"_s));
    copyPages(path, file_.fileName());
  } else {
    requireNotHeld(path);
  }
  if (!file_.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
    refuseReading(err::PathFileAccess, path, u"the file cannot be read (%1)"_s.arg(file_.errorString()));
}

}  // namespace lens
