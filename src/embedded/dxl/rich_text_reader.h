// Turns the blocks and inline elements of DXL rich text into records, with its rules for white space.
#pragma once

#include "embedded/dxl/record_writer.h"
#include "embedded/dxl/rich_text_elements.h"

namespace lens {

class RichTextReader {
 public:
  RichTextReader(ReadContext& context, Note& note, QVector<FormField>* fields)
      : context_(context), in_(context.in), note_(note), fields_(fields) {}

  QByteArray read() {
    readBlocks();
    flush();
    tellPlaces();
    return out_.bytes();
  }

 private:
  // Blocks up to the end tag of the element at hand; other is asked first whether it takes a child.
  void readBlocks(const std::function<bool()>& other = {});
  void readContentApart(bool records, QStringView layout);
  void readBlock();
  void readParagraphDefinition();
  void readParagraph();
  void readTable();
  void readRow(int row, bool records);
  void readSection();
  // Text and inline elements up to the end tag of the element at hand.
  void readInline();
  void readInlineElement();
  void readRun();
  void readFont();
  void readFontSize();
  void readAttachment();
  void readLink();
  void readUrl();
  void readCompositeData();
  void readField();
  void keepWithText();
  // Keeps the element whose record began where the bytes had this length, unless all of it was read.
  void keepPlaced(qsizetype begin, const QString& element, bool recorded);
  void addPlace(qsizetype begin) { places_ << double(begin) << double(out_.bytes().size()); }
  void tellPlaces();

  void addText(QStringView text);
  void addPiece(QStringView piece);
  // Anything else than text follows: the line break that waited becomes a blank.
  void content();
  void settleBreak();
  void startElement() { atStart_ = true; }
  void endElement() {
    waiting_ = false;
    atStart_ = false;
  }
  void flush();
  void raw(const QByteArray& record) {
    flush();
    out_.appendRecord(record);
  }
  QString attribute(QStringView name) const { return in_.attribute(name); }

  ReadContext& context_;
  DxlReader& in_;
  Note& note_;
  QVector<FormField>* fields_;
  RecordWriter out_;
  QVector<double> places_;  // begin and end of each kept element
  RichFont font_;
  QString text_;          // of one font, not yet a record
  bool waiting_ = false;  // a line break of the file may become a blank
  bool atStart_ = true;   // of the element or line
  bool blank_ = false;    // the last character is one
  bool keepBlanks_ = false;
};

}  // namespace lens
