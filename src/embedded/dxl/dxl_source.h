// The bytes of a DXL file on their way to the XML reader.
//
// The reader hands out a text node only when it has all of it, so an attachment of 200 MB would stand
// in memory as one string. The source therefore puts an empty comment between the lines of a long
// "filedata" element: the content stays the same, and the reader delivers it in pieces. It also is
// the place where progress is told and a cancellation is noticed.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <functional>

namespace lens {

class DxlSource : public QIODevice {
 public:
  // Told the bytes read so far; false stops the reading.
  using Progress = std::function<bool(qint64 done)>;

  // The file must be open and outlive the source.
  explicit DxlSource(QIODevice& file, Progress progress = {});
  bool cancelled() const { return cancelled_; }
  // A read error of the file, "" when there was none.
  QString fault() const { return fault_; }
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char* data, qint64 maxSize) override;
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  enum class Place { Markup, Comment, CharacterData, FileData };
  bool refill();
  void splitLongNodes();
  qsizetype passMarkup(qsizetype at);
  qsizetype passUntil(qsizetype at, QByteArrayView end);
  qsizetype passFileData(qsizetype at);
  void copyTo(qsizetype end);

  QIODevice& file_;
  Progress progress_;
  QByteArray raw_;    // read, not yet looked at to its end
  QByteArray ready_;  // to be handed out
  qsizetype readyAt_ = 0;
  qsizetype copied_ = 0;
  qint64 done_ = 0;
  qint64 sinceSplit_ = 0;
  Place place_ = Place::Markup;
  bool first_ = true;
  bool narrow_ = true;  // the encoding has ASCII bytes as they are
  bool end_ = false;
  bool cancelled_ = false;
  QString fault_;
};

}  // namespace lens
