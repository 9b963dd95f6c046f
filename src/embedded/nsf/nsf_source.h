// The bytes of a real database: read piece by piece and never written.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <functional>
#include <memory>

namespace lens {

// Positions and sizes are bytes from the start. A source belongs to one thread.
class NsfSource {
 public:
  virtual ~NsfSource() = default;
  NsfSource(const NsfSource&) = delete;
  NsfSource& operator=(const NsfSource&) = delete;

  // As it was when the source was opened: a file that grows shows no more than that.
  qint64 size() const { return size_; }
  // Of the file; "" where there is none.
  virtual QString path() const { return {}; }
  // Exactly so many bytes, or false: where the range does not lie in the source, in what has been cut off
  // since, and where reading fails.
  bool read(qint64 at, qint64 count, QByteArray& bytes) const;

 protected:
  explicit NsfSource(qint64 size) : size_(size) {}

 private:
  virtual bool readInside(qint64 at, qint64 count, char* bytes) const = 0;
  qint64 size_;
};

// Raised out of a reading that its watch has ended.
struct NsfReadingEnded {};

// A file on disk, opened for reading only, and so that others may go on to read and write it. Its pieces are
// read and not mapped: where a mapped file is cut short by another program, or its network drive goes away,
// the system would end this one.
class NsfFileSource : public NsfSource {
 public:
  // Null with the reason where the path does not lead to a plain file that can be read. Never waits for a
  // pipe.
  static std::unique_ptr<NsfFileSource> open(const QString& path, QString& reason);
  QString path() const override { return file_->fileName(); }
  // Asked before each piece: when it says false, the reading raises NsfReadingEnded.
  void setWatch(std::function<bool()> watch) { watch_ = std::move(watch); }

 private:
  explicit NsfFileSource(std::unique_ptr<QFile> file);
  bool readInside(qint64 at, qint64 count, char* bytes) const override;
  std::unique_ptr<QFile> file_;
  std::function<bool()> watch_;
};

// Bytes in memory.
class NsfBytesSource : public NsfSource {
 public:
  explicit NsfBytesSource(QByteArray bytes) : NsfSource(bytes.size()), bytes_(std::move(bytes)) {}

 private:
  bool readInside(qint64 at, qint64 count, char* bytes) const override;
  QByteArray bytes_;
};

}  // namespace lens
