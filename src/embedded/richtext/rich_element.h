// One record of a rich text item, as far as it is known.
#pragma once

#include <QByteArray>
#include <QString>

namespace lens {

struct RichFont {
  quint8 face = 1;
  quint8 attributes = 0;  // 1 bold, 2 italic, 4 underline, 8 strike-through
  quint8 color = 0;
  quint8 points = 10;
  bool operator==(const RichFont&) const = default;
};

// One record of the item.
struct RichElement {
  enum class Kind {
    Text,        // text in a font; "\n" is a line end inside the paragraph
    Break,       // a text record that is only a line end
    Paragraph,   // begins a paragraph
    Attachment,  // text = internal file name, as in "$FILE"; caption = what the user sees
    Link,        // document, view or database link; caption = its description
    TableBegin,
    TableCell,  // row, column
    TableEnd,
    Raw,  // any other record, kept as bytes
  };
  Kind kind = Kind::Raw;
  RichFont font;
  QString text;
  QString caption;
  int row = 0, column = 0;
  QByteArray record;  // whole record with header, without the pad byte; always filled
  char pad = 0;       // the byte behind a record of odd length, as it was read
};

}  // namespace lens
