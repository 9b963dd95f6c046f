#include "embedded/nsf/nsf_source.h"

#include <QFileInfo>
#include <cstring>

#include "host/held_file.h"

namespace lens {

bool NsfSource::read(qint64 at, qint64 count, QByteArray& bytes) const {
  bytes.clear();
  if (at < 0 || count < 0 || at > size_ || count > size_ - at) return false;
  if (count == 0) return true;
  bytes = QByteArray(count, Qt::Uninitialized);
  if (readInside(at, count, bytes.data())) return true;
  bytes.clear();
  return false;
}

std::unique_ptr<NsfFileSource> NsfFileSource::open(const QString& path, QString& reason) {
  const QFileInfo info(path);
  if (!info.exists()) {
    reason = QStringLiteral("there is no such file");
  } else if (!info.isFile()) {
    reason = QStringLiteral("it is no plain file");
  } else if (HeldFile::isHeld(FileIdentity::of(path))) {
    // Closing a second reader would end the locks of the first.
    reason = QStringLiteral("it is a database that this program has open");
  } else {
    auto file = std::make_unique<QFile>(path);
    if (file->open(QIODevice::ReadOnly | QIODevice::Unbuffered))
      return std::unique_ptr<NsfFileSource>(new NsfFileSource(std::move(file)));
    reason = file->errorString();
  }
  return nullptr;
}

NsfFileSource::NsfFileSource(std::unique_ptr<QFile> file) : NsfSource(file->size()), file_(std::move(file)) {}

bool NsfFileSource::readInside(qint64 at, qint64 count, char* bytes) const {
  if (watch_ && !watch_()) throw NsfReadingEnded();
  if (!file_->seek(at)) return false;
  while (count > 0) {
    const qint64 got = file_->read(bytes, count);
    if (got <= 0) return false;
    bytes += got;
    count -= got;
  }
  return true;
}

bool NsfBytesSource::readInside(qint64 at, qint64 count, char* bytes) const {
  std::memcpy(bytes, bytes_.constData() + at, size_t(count));
  return true;
}

}  // namespace lens
