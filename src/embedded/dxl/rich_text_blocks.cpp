#include <algorithm>
#include <array>

#include "embedded/dxl/rich_text_reader.h"
#include "embedded/dxl/rich_text_records.h"
#include "notes/literals.h"

namespace lens {

void RichTextReader::readBlocks(const std::function<bool()>& other) {
  for (;;) {
    const DxlReader::Token token = in_.next();
    if (token == QXmlStreamReader::StartElement) {
      if (!other || !other()) readBlock();
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

// The record holds number and alignment; an element that says more, be it a hide-when formula, is kept.
void RichTextReader::readParagraphDefinition() {
  static constexpr std::array<const char16_t*, 5> aligns = {u"left", u"right", u"full", u"center", u"none"};
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  flush();
  const qsizetype begin = out_.bytes().size();
  bool numbered = false;
  const quint16 id = attribute(u"id").toUShort(&numbered);
  if (!numbered) in_.markUnread(u"id");
  const QStringView align = in_.attributeView(u"align");
  const auto known = std::find(aligns.begin(), aligns.end(), align);
  if (known == aligns.end()) in_.markUnread(u"align");
  if (numbered) raw(paragraphDefinition(id, known == aligns.end() ? 0 : quint16(known - aligns.begin())));
  in_.close();
  keepPlaced(begin, u"pardef"_s, records);
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

// Rows and cells are records. The layout is kept as the same elements without the content of the cells.
void RichTextReader::readTable() {
  constexpr int kMost = 255;
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  flush();
  const qsizetype begin = out_.bytes().size();
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
      readRow(row++, records);
    } else {
      in_.passOver();
    }
  }
  flush();
  out_.endTable();
  keepPlaced(begin, u"table"_s, records);
}

void RichTextReader::readRow(int row, bool records) {
  constexpr int kMost = 255;
  int column = 0, span = 1;
  while (in_.nextChild()) {
    if (!in_.is(u"tablecell") || column >= kMost) {
      keepWithText();
      continue;
    }
    const QString stated = attribute(u"columnspan");
    span = qBound(1, stated.toInt(), kMost);
    if (!stated.isEmpty() && stated != QString::number(span)) in_.markUnread(u"columnspan");
    flush();
    out_.beginCell(row, column);
    readContentApart(records, u"cellbackground");
    flush();
    column += span;
  }
  // No cell stands behind it to tell how wide the last one is.
  if (span > 1) in_.markRecordIncomplete();
}

// Blocks up to the end tag; the record of the element around them holds only the child of that name.
void RichTextReader::readContentApart(bool records, QStringView layout) {
  if (records) in_.pauseRecording();
  readBlocks([&] {
    if (!records || !in_.is(layout)) return false;
    in_.resumeRecording();
    in_.passOver();
    in_.pauseRecording();
    return true;
  });
  if (records) in_.resumeRecording();
}

// The title is a paragraph before the paragraphs that it would hide. How the section folds is kept.
void RichTextReader::readSection() {
  context_.findings.ignored(u"folding of sections: shown expanded"_s);
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  in_.markRecordIncomplete();
  flush();
  const qsizetype begin = out_.bytes().size();
  readContentApart(records, u"code");
  keepPlaced(begin, u"section"_s, records);
}

void RichTextReader::keepPlaced(qsizetype begin, const QString& element, bool recorded) {
  flush();
  const qsizetype items = note_.items.size();
  keepUnlessRead(context_, note_, element, recorded);
  if (note_.items.size() > items) addPlace(begin);
}

// Longer lists have no place in an item; such elements are exported as the items that keep them.
void RichTextReader::tellPlaces() {
  constexpr qsizetype kMost = 0xFFFF;
  if (places_.isEmpty() || places_.size() > kMost) return;
  note_.add(kPlacesItem.toString(), 0, numberListValue(places_));
}

QByteArray readRichText(ReadContext& context, Note& note, QVector<FormField>* fields) {
  return RichTextReader(context, note, fields).read();
}

}  // namespace lens
