#include <array>

#include "embedded/dxl/rich_text_reader.h"
#include "embedded/dxl/rich_text_records.h"
#include "notes/literals.h"

namespace lens {

void RichTextReader::readBlocks() {
  for (;;) {
    const DxlReader::Token token = in_.next();
    if (token == QXmlStreamReader::StartElement) {
      readBlock();
    } else if (token == QXmlStreamReader::Characters) {
      if (!in_.text().trimmed().isEmpty()) addText(in_.text());
    } else {
      return;
    }
  }
}

void RichTextReader::readBlock() {
  if (in_.is(u"pardef"))
    readParagraphDefinition();
  else if (in_.is(u"par"))
    readParagraph();
  else if (in_.is(u"table"))
    readTable();
  else if (in_.is(u"section"))
    readSection();
  else if (in_.is(u"sectiontitle"))
    readParagraph();
  else
    readInlineElement();
}

void RichTextReader::readParagraphDefinition() {
  static constexpr std::array<const char16_t*, 5> aligns = {u"left", u"right", u"full", u"center", u"none"};
  bool numbered = false;
  const quint16 id = attribute(u"id").toUShort(&numbered);
  quint16 align = 0;
  bool simple = numbered;
  const QXmlStreamAttributes attributes = in_.attributes();
  for (const QXmlStreamAttribute& a : attributes) {
    if (a.name() == u"id") continue;
    bool known = false;
    for (size_t i = 0; a.name() == u"align" && i < aligns.size(); ++i) {
      if (a.value() != QStringView(aligns[i])) continue;
      align = quint16(i);
      known = true;
    }
    simple = simple && known;
  }
  if (numbered) raw(paragraphDefinition(id, align));
  if (simple)
    in_.skip();
  else
    keepElement(context_, note_);
}

void RichTextReader::readParagraph() {
  const bool outer = keepBlanks_;
  keepBlanks_ = in_.flag(u"keepindentation", outer);
  bool numbered = false;
  const quint16 id = attribute(u"def").toUShort(&numbered);
  flush();
  out_.beginParagraph();
  if (numbered) raw(paragraphReference(id));
  font_ = {};
  blank_ = false;
  startElement();
  readInline();
  endElement();
  flush();
  keepBlanks_ = outer;
}

void RichTextReader::readTable() {
  constexpr int kMost = 255;
  flush();
  out_.beginTable();
  int row = 0;
  while (in_.nextChild()) {
    if (in_.is(u"tablerow")) {
      if (row == kMost) {
        // A row number is one byte: the rest becomes a table of its own.
        out_.endTable();
        out_.beginTable();
        row = 0;
      }
      readRow(row++);
    } else {
      context_.findings.ignored(u"layout of tables (\"%1\")"_s.arg(in_.name()));
      in_.skip();
    }
  }
  flush();
  out_.endTable();
}

void RichTextReader::readRow(int row) {
  constexpr int kMost = 255;
  int column = 0;
  while (in_.nextChild()) {
    if (!in_.is(u"tablecell") || column >= kMost) {
      keepWithText();
      continue;
    }
    const int span = qBound(1, attribute(u"columnspan").toInt(), kMost);
    flush();
    out_.beginCell(row, column);
    readBlocks();
    flush();
    column += span;
  }
}

// The title is a paragraph before the paragraphs that it would hide.
void RichTextReader::readSection() {
  context_.findings.ignored(u"folding of sections: shown expanded"_s);
  readBlocks();
}

QByteArray readRichText(ReadContext& context, Note& note, QVector<FormField>* fields) {
  return RichTextReader(context, note, fields).read();
}

}  // namespace lens
