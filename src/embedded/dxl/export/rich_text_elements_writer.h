// The blocks and inline elements of one rich text, record by record.
#pragma once

#include "embedded/dxl/export/dxl_writer.h"
#include "embedded/dxl/export/rich_text_tables.h"

namespace lens {

class RichTextElementsWriter {
 public:
  RichTextElementsWriter(DxlWriter& out, const RichText& text)
      : out_(out), elements_(text.elements()), tables_(tableLayout(text.elements())) {}

  // The content of a "richtext" element.
  void write();

 private:
  // Each writes the record at the place, if it has an element there, and goes behind what it wrote.
  bool writeParagraph();
  bool writeDefinition();
  bool writeRun();
  bool writeAttachment();
  bool writeUrl();
  bool writeUrlEnd();
  bool writeLink();
  bool writeAnchor();
  bool writeTable();
  void writeRecord();

  void writeCell(const RichElement& element);
  void endParagraph();
  void endCell();
  bool urlEnds() const;
  const RichElement& current() const { return elements_[at_]; }
  bool isRecord(qsizetype place, const QByteArray& record) const;

  DxlWriter& out_;
  const QVector<RichElement>& elements_;
  TableLayout tables_;
  qsizetype at_ = 0;
  bool inParagraph_ = false;
  bool inUrl_ = false;
  QVector<int> rows_;  // the row at hand of each open table, -1 before its first cell
};

}  // namespace lens
