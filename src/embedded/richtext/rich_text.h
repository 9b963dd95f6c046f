// Rich text: paragraphs of runs, read from and written to the records of a rich text item.
//
// The records are the platform's own: a byte of kind, a byte that tells the width of the length
// word, the length, the data, padded to an even offset. Unknown records are kept as bytes, so that
// writing what was read gives the same value.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include "embedded/richtext/rich_element.h"

namespace lens {

class RichText {
 public:
  // Reads the data of an item (without its type word). Never fails: a record that leads outside ends
  // the reading there, and complete() tells so. The bytes from there on stay the end of toBytes().
  static RichText fromBytes(QByteArrayView data);
  bool complete() const { return complete_; }

  const QVector<RichElement>& elements() const { return elements_; }
  // The data of an item, without the type word.
  QByteArray toBytes() const;

  // Text, breaks, attachments and links begin a paragraph of their own where none is open: at the
  // start, in a new cell and behind a table. Text longer than a record holds goes on in further ones.
  void beginParagraph();
  void appendText(const QString& text, const RichFont& font = {});
  void appendBreak();
  void appendAttachment(const QString& internalName, const QString& caption);
  // IDs in hexadecimal, 16 or 32 digits; an empty one stands for none, so a link without a note leads
  // to the view, and without both to the database. Raises 5 for anything else.
  void appendDocLink(const QString& replicaId, const QString& viewUnid, const QString& noteUnid,
                     const QString& description);
  // 1 to 255 rows and columns, cells from 0; raises 5 outside. A table in a cell is written as nested.
  void beginTable(int rows, int columns);
  void beginCell(int row, int column);
  void endTable();
  // A whole record with header and right length, without pad byte; raises 5 for anything else.
  void appendRaw(const QByteArray& record);

  // Replaces a text wherever it stands within a paragraph, also across changes of font, at most so many
  // times; the new text takes the font where the old one began and is not searched again. Returns how
  // often. An empty search text finds nothing.
  int replace(const QString& search, const QString& replacement, Qt::CaseSensitivity cs, int most);
  // Joins text records of one font that stand side by side, as they are left behind by replacements.
  // No character changes. False when there was nothing to join.
  bool compact();

  // Plain text: a line per paragraph and break, lines parted by CR LF; attachments, links and
  // pictures leave no text.
  QString plainText() const;
  // As plainText with tabs removed when asked, and lines broken at the last blank before lineLength
  // characters (a longer word is cut at the length). 0 means no limit.
  QString formattedText(bool stripTabs, int lineLength) const;

 private:
  void add(RichElement element);
  void append(const QByteArray& record);
  void needParagraph();

  QVector<RichElement> elements_;
  QByteArray unread_;  // what stands behind the last whole record
  int openTables_ = 0;
  bool endsUnpadded_ = false;  // the last record read is odd and its pad byte is missing
  bool complete_ = true;
};

}  // namespace lens
