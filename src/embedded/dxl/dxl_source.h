// The bytes of a DXL file on their way to the XML reader.
//
// The reader hands out a text node only when it has all of it, so an attachment of 200 MB would stand
// in memory as one string. The source therefore puts an empty comment between the lines of a long
// "filedata" element: the content stays the same, and the reader delivers it in pieces. It also is
// the place where progress is told and a cancellation is noticed.
//
// And it is where a file is kept from taking more than it brings, since the reader has made all of an element
// before it shows any of it: attributes are bounded in number and size, the document type in its length, and
// what entities expand to in its sum. Wide encodings become UTF-8 before that is looked at.
#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QStringDecoder>
#include <QStringEncoder>
#include <functional>
#include <optional>

#include "embedded/dxl/entity_growth.h"

namespace lens {

class DxlSource : public QIODevice {
 public:
  // No element of DXL has more than about 60. The reader compares each attribute with each.
  static constexpr int kMostAttributes = 256;

  // Told the bytes read so far; false stops the reading.
  using Progress = std::function<bool(qint64 done)>;

  // The file must be open and outlive the source.
  explicit DxlSource(QIODevice& file, Progress progress = {});
  // Tells progress; false once the import was cancelled.
  bool goOn();
  bool cancelled() const { return cancelled_; }
  // A read error of the file or a limit that it passed, "" when there was none.
  QString fault() const { return fault_; }
  // What the document type declares. References behind it are counted a block ahead of the reader, which
  // would expand them before it is told that they are too many.
  void declareEntities(const QXmlStreamEntityDeclarations& entities);
  // Characters that an import of this file may come to by entities and default attributes.
  qint64 mostGrowth() const;
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char* data, qint64 maxSize) override;
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  enum class Place { Markup, Tag, Instruction, Comment, CharacterData, FileData };
  bool refill();
  bool readBlock();
  void decodeBlock(QByteArrayView block);
  void countReferences(QByteArrayView bytes);
  void splitLongNodes();
  qsizetype passMarkup(qsizetype at);
  qsizetype passDeclaration(qsizetype at);
  qsizetype passUntil(qsizetype at, QByteArrayView end);
  qsizetype passTag(qsizetype at);
  qsizetype passDocumentType(qsizetype at);
  qsizetype passFileData(qsizetype at);
  void copyTo(qsizetype end);

  QIODevice& file_;
  Progress progress_;
  QByteArray raw_;    // read, not yet looked at to its end
  QByteArray ready_;  // to be handed out
  qsizetype readyAt_ = 0;
  qsizetype typeEnd_ = 0;  // the reader gets the document type first, with nothing behind it
  qsizetype copied_ = 0;
  qint64 done_ = 0;
  qint64 sinceSplit_ = 0;
  Place place_ = Place::Markup;
  bool first_ = true;
  std::optional<QStringDecoder> wide_;  // of an encoding that has not ASCII bytes as they are
  QStringEncoder narrow_{QStringEncoder::Utf8};
  EntityGrowth growth_;
  char quote_ = 0;          // of the attribute value at hand
  int attributes_ = 0;      // of the tag at hand
  qsizetype tagBytes_ = 0;  // of the tag at hand
  bool end_ = false;
  bool cancelled_ = false;
  QString fault_;
};

}  // namespace lens
