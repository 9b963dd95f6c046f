// Writes the value of a rich text item record by record. RichText can do that too, but reads back what
// it wrote; an import of many documents has no use for that.
#pragma once

#include <QByteArray>
#include <QString>

#include "embedded/richtext/rich_text.h"

namespace lens {

class RecordWriter {
 public:
  // The data of the item, without the type word.
  const QByteArray& bytes() const { return bytes_; }

  void beginParagraph();
  // Text stands in a paragraph; where none is open, one is begun. A line feed is a line end.
  void appendText(QStringView text, const RichFont& font);
  void appendAttachment(const QString& internalName, const QString& caption);
  void beginTable();
  void beginCell(int row, int column);
  void endTable();
  // A whole record with header, without pad byte. False, and nothing written, when its length is
  // another than it states.
  bool appendRecord(QByteArrayView record);
  // As appendRecord for one that stands within a paragraph.
  bool appendInline(QByteArrayView record);

 private:
  void byteRecord(quint8 kind, QByteArrayView data = {});
  void needParagraph();

  QByteArray bytes_;
  bool inParagraph_ = false;
  int openTables_ = 0;
};

}  // namespace lens
