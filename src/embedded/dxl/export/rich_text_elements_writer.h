// The blocks and inline elements of one rich text, record by record.
#pragma once

#include "embedded/dxl/export/dxl_writer.h"
#include "embedded/dxl/export/rich_text_places.h"
#include "embedded/dxl/export/rich_text_tables.h"

namespace lens {

class RichTextElementsWriter {
 public:
  // Kept elements stand where they stood. Fields are elements where asked for, as in a form.
  RichTextElementsWriter(DxlWriter& out, const RichText& text, const QVector<KeptPlace>& kept, bool fields);

  // The content of a "richtext" element.
  void write();

 private:
  struct OpenTable {
    int row = -1;        // at hand, -1 before its first cell
    QStringList layout;  // of a kept one: what stands between the contents of its cells
    qsizetype cells = 0;
  };
  struct OpenSection {
    qsizetype end = 0;  // offset behind its records
  };

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
  bool writeField();
  void writeRecord();

  // The next kept element that begins here, or the end of one that ends here.
  bool writeKept();
  void writeWhole(const KeptPlace& place);
  void beginSection(const KeptPlace& place);
  void writeSectionTitle();
  void beginKeptTable(const KeptPlace& place);

  void writeCell(const RichElement& element);
  void endParagraph();
  void endTable();
  bool urlEnds() const;
  const RichElement& current() const { return elements_[at_]; }
  bool isRecord(qsizetype place, const QByteArray& record) const;
  RichFont fontWithin(const KeptPlace& place) const;

  DxlWriter& out_;
  const QVector<RichElement>& elements_;
  TableLayout tables_;
  qsizetype at_ = 0;
  bool inParagraph_ = false;
  bool inUrl_ = false;
  QVector<OpenTable> open_;
  const QVector<KeptPlace>& kept_;
  qsizetype nextKept_ = 0;
  QVector<qsizetype> offsets_;  // of each element in the data and of its end, where anything is kept
  QVector<OpenSection> sections_;
  const bool fields_;
};

}  // namespace lens
