#include "embedded/dxl/export/rich_text_elements_writer.h"

#include <array>

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/formula_writer.h"
#include "embedded/dxl/export/rich_text_font.h"
#include "embedded/dxl/record_writer.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/note.h"
#include "embedded/richtext/field_record.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr std::array<const char16_t*, 5> kAligns = {u"left", u"right", u"full", u"center", u"none"};

quint8 kindOf(const RichElement& element) {
  return quint8(element.record[0]);
}

// The record of one text, empty when it needs another number of records.
QByteArray textRecord(const QString& text, const RichFont& font) {
  RecordWriter writer;
  writer.beginParagraph();
  const qsizetype start = writer.bytes().size();
  writer.appendText(text, font);
  const QByteArrayView bytes = QByteArrayView(writer.bytes()).sliced(start);
  return bytes.first(richrecord::wholeLength(bytes)).toByteArray();
}

// Text whose line feeds are its line breaks; false when a run would not give the record back.
bool runText(const RichElement& element, QString& text) {
  constexpr qsizetype kHead = 8;
  if (element.record.size() <= kHead) return false;
  text = fromLmbcs(QByteArrayView(element.record).sliced(kHead));
  if (text.contains(u'\n')) return false;
  text = withLineFeeds(text);
  return textRecord(text, element.font) == element.record;
}

QString idText(QByteArrayView bytes) {
  return timeDateHex(readTimeDate(bytes.data()));
}

constexpr QStringView kCellEnd = u"</tablecell>", kSectionEnd = u"</section>";

// Elements that stand between paragraphs.
bool isBlock(QStringView element) {
  for (const QStringView known :
       {u"pardef", u"table", u"section", u"block", u"subformref", u"formregionbegin", u"formregionend"}) {
    if (element == known) return true;
  }
  return false;
}

void attributeUnlessEmpty(DxlWriter& out, const QString& name, const QString& value) {
  if (!value.isEmpty()) out.attribute(name, value);
}

}  // namespace

RichTextElementsWriter::RichTextElementsWriter(DxlWriter& out, const RichText& text,
                                               const QVector<KeptPlace>& kept, bool fields)
    : out_(out),
      elements_(text.elements()),
      tables_(tableLayout(text.elements())),
      kept_(kept),
      fields_(fields) {
  if (kept_.isEmpty()) return;
  qsizetype offset = 0;
  for (const RichElement& element : elements_) {
    offsets_.push_back(offset);
    offset += element.record.size() + element.record.size() % 2;
  }
  offsets_.push_back(offset);
}

void RichTextElementsWriter::write() {
  while (at_ < elements_.size()) {
    if (!writeKept() && !writeTable() && !writeParagraph() && !writeDefinition() && !writeRun() &&
        !writeAttachment() && !writeUrl() && !writeUrlEnd() && !writeLink() && !writeAnchor() &&
        !writeField())
      writeRecord();
  }
  while (writeKept()) {
  }
  endParagraph();
}

bool RichTextElementsWriter::isRecord(qsizetype place, const QByteArray& record) const {
  return place < elements_.size() && elements_[place].record == record;
}

void RichTextElementsWriter::endParagraph() {
  if (!inParagraph_) return;
  out_.end();
  out_.layout();
  inParagraph_ = false;
}

bool RichTextElementsWriter::writeParagraph() {
  if (kindOf(current()) != richrecord::Paragraph || current().record.size() != 2 || inUrl_) return false;
  endParagraph();
  out_.begin(u"par"_s);
  inParagraph_ = true;
  ++at_;
  if (at_ == elements_.size() || kindOf(current()) != richrecord::ParagraphReference) return true;
  ByteReader reader(QByteArrayView(current().record).sliced(2));
  const quint16 id = reader.u16();
  if (!isRecord(at_, paragraphReference(id))) return true;
  out_.attribute(u"def"_s, QString::number(id));
  ++at_;
  return true;
}

bool RichTextElementsWriter::writeDefinition() {
  if (inParagraph_ || kindOf(current()) != richrecord::ParagraphDefinition) return false;
  ByteReader reader(current().record);
  reader.skip(4);
  const quint16 id = reader.u16(), align = reader.u16();
  if (align >= kAligns.size() || !isRecord(at_, paragraphDefinition(id, align))) return false;
  out_.begin(u"pardef"_s);
  out_.attribute(u"id"_s, QString::number(id));
  if (align != 0) out_.attribute(u"align"_s, QString::fromUtf16(kAligns[align]));
  out_.end();
  out_.layout();
  ++at_;
  return true;
}

bool RichTextElementsWriter::writeRun() {
  QString text;
  if (!inParagraph_ || kindOf(current()) != richrecord::Text || !runText(current(), text) ||
      !beginRun(out_, current().font))
    return false;
  out_.lines(text);
  out_.end();
  ++at_;
  return true;
}

bool RichTextElementsWriter::writeAttachment() {
  const RichElement& element = current();
  if (!inParagraph_ || element.kind != RichElement::Kind::Attachment || element.caption.isEmpty() ||
      !isXmlText(element.text) || !isXmlText(element.caption))
    return false;
  RecordWriter expected;
  expected.appendRecord(element.record);
  expected.appendRecord(hotspotEnd());
  RecordWriter again;
  again.beginParagraph();
  again.appendAttachment(element.text, element.caption);
  if (again.bytes().mid(2) != expected.bytes() || !isRecord(at_ + 1, hotspotEnd())) return false;
  out_.begin(u"attachmentref"_s);
  out_.attribute(u"name"_s, element.text);
  out_.attribute(u"displayname"_s, element.caption);
  out_.end();
  at_ += 2;
  return true;
}

// The end of the address at hand stands in the same paragraph, with nothing but text and the like before.
bool RichTextElementsWriter::urlEnds() const {
  for (qsizetype i = at_ + 1; i < elements_.size(); ++i) {
    const quint8 kind = kindOf(elements_[i]);
    if (kind == richrecord::HotspotEnd) return isRecord(i, hotspotEnd());
    if (kind != richrecord::Text && kind != richrecord::Link) return false;
  }
  return false;
}

bool RichTextElementsWriter::writeUrl() {
  constexpr qsizetype kHead = 12;
  if (!inParagraph_ || inUrl_ || kindOf(current()) != richrecord::HotspotBegin ||
      current().record.size() <= kHead)
    return false;
  const QString address = fromLmbcs(QByteArrayView(current().record).sliced(kHead).chopped(1));
  if (!isXmlText(address) || !isRecord(at_, urlHotspot(address)) || !urlEnds()) return false;
  out_.begin(u"urllink"_s);
  out_.attribute(u"href"_s, address);
  inUrl_ = true;
  ++at_;
  return true;
}

bool RichTextElementsWriter::writeUrlEnd() {
  if (!inUrl_ || kindOf(current()) != richrecord::HotspotEnd) return false;
  out_.end();
  inUrl_ = false;
  ++at_;
  return true;
}

bool RichTextElementsWriter::writeLink() {
  constexpr qsizetype kHead = 4, kTexts = kHead + 8 + 16 + 16;
  const RichElement& element = current();
  if (!inParagraph_ || kindOf(element) != richrecord::Link || element.record.size() <= kTexts) return false;
  const QByteArrayView record = element.record;
  const QString replica = idText(record.sliced(kHead, 8));
  const Unid view = Unid::fromBytes(record.sliced(kHead + 8, 16));
  const Unid note = Unid::fromBytes(record.sliced(kHead + 24, 16));
  const QByteArrayView texts = record.sliced(kTexts);
  const qsizetype nul = texts.indexOf('\0');
  if (nul < 0) return false;
  const QString description = fromLmbcs(texts.first(nul));
  const QString server = fromLmbcs(texts.sliced(nul + 1).chopped(nul + 1 < texts.size() ? 1 : 0));
  const QString viewText = view.isNull() ? QString() : view.text();
  const QString noteText = note.isNull() ? QString() : note.text();
  if (!isXmlText(description) || !isXmlText(server) ||
      !isRecord(at_, linkRecord(replica, viewText, noteText, description, server)))
    return false;
  out_.begin(!note.isNull() ? u"doclink"_s : !view.isNull() ? u"viewlink"_s : u"databaselink"_s);
  out_.attribute(u"database"_s, replica);
  attributeUnlessEmpty(out_, u"view"_s, viewText);
  attributeUnlessEmpty(out_, u"document"_s, noteText);
  attributeUnlessEmpty(out_, u"description"_s, description);
  attributeUnlessEmpty(out_, u"server"_s, server);
  out_.end();
  ++at_;
  return true;
}

bool RichTextElementsWriter::writeAnchor() {
  constexpr quint8 kAnchor = 203;
  constexpr qsizetype kHead = 10;
  if (!inParagraph_ || inUrl_ || kindOf(current()) != kAnchor || current().record.size() < kHead)
    return false;
  const QString name = fromLmbcs(QByteArrayView(current().record).sliced(kHead));
  if (!isXmlText(name) || !isRecord(at_, anchorRecord(name))) return false;
  out_.begin(u"anchor"_s);
  out_.attribute(u"name"_s, name);
  out_.end();
  ++at_;
  return true;
}

bool RichTextElementsWriter::writeTable() {
  using Kind = RichElement::Kind;
  const RichElement& element = current();
  const Kind kind = element.kind;
  if (!tables_.asElements || (kind != Kind::TableBegin && kind != Kind::TableCell && kind != Kind::TableEnd))
    return false;
  // Its begin may have been passed over with an element whose places are odd.
  if (kind != Kind::TableBegin && open_.isEmpty()) return false;
  endParagraph();
  if (kind == Kind::TableBegin) {
    out_.begin(u"table"_s);
    open_.push_back({});
  } else if (kind == Kind::TableCell) {
    writeCell(element);
  } else {
    endTable();
  }
  ++at_;
  return true;
}

void RichTextElementsWriter::endTable() {
  const OpenTable table = open_.takeLast();
  if (!table.layout.isEmpty()) {
    out_.verbatim((table.cells > 0 ? kCellEnd.toString() : QString()) + table.layout.last());
    return;
  }
  if (table.row >= 0) {
    out_.end();
    out_.end();
  }
  out_.end();
  out_.layout();
}

void RichTextElementsWriter::writeCell(const RichElement& element) {
  OpenTable& table = open_.last();
  if (!table.layout.isEmpty()) {
    // More cells than the layout has make no table that reads back.
    out_.verbatim((table.cells > 0 ? kCellEnd.toString() : QString()) + table.layout.value(table.cells));
    ++table.cells;
    return;
  }
  if (table.row >= 0) out_.end();
  if (element.row != table.row) {
    if (table.row >= 0) out_.end();
    for (int empty = table.row + 1; empty < element.row; ++empty) {
      out_.begin(u"tablerow"_s);
      out_.end();
    }
    out_.begin(u"tablerow"_s);
    table.row = element.row;
  }
  out_.begin(u"tablecell"_s);
  const auto span = tables_.columnSpan.constFind(at_);
  if (span != tables_.columnSpan.cend()) out_.attribute(u"columnspan"_s, QString::number(*span));
}

bool RichTextElementsWriter::writeField() {
  if (!fields_ || !inParagraph_ || kindOf(current()) != StoredField::kKind ||
      !writeFieldElement(out_, current().record, FieldPlace::InText))
    return false;
  ++at_;
  return true;
}

void RichTextElementsWriter::writeRecord() {
  out_.begin(u"compositedata"_s);
  out_.attribute(u"type"_s, QString::number(richrecord::typeWord(current().record)));
  out_.base64(current().record);
  out_.end();
  ++at_;
}

// What stands in a paragraph goes before the end of a section at the same place, everything else behind it.
bool RichTextElementsWriter::writeKept() {
  if (kept_.isEmpty()) return false;
  const qsizetype offset = offsets_[at_];
  const bool due = nextKept_ < kept_.size() && kept_[nextKept_].begin == offset;
  const bool within = due && inParagraph_ && !isBlock(kept_[nextKept_].element);
  if (!within && !sections_.isEmpty() && sections_.last().end <= offset) {
    sections_.pop_back();
    endParagraph();
    out_.verbatim(kSectionEnd.toString());
    return true;
  }
  if (!due) return false;
  const KeptPlace& place = kept_[nextKept_++];
  if (place.element == u"section")
    beginSection(place);
  else if (place.element == u"table" && at_ < elements_.size() &&
           current().kind == RichElement::Kind::TableBegin)
    beginKeptTable(place);
  else
    writeWhole(place);
  return true;
}

// All that the element stands for is in it: its records are passed over.
void RichTextElementsWriter::writeWhole(const KeptPlace& place) {
  const bool block = isBlock(place.element);
  if (block) endParagraph();
  const RichFont font = fontWithin(place);
  const bool run = !block && inParagraph_ && font != RichFont() && beginRun(out_, font);
  out_.verbatim(place.xml);
  if (run) out_.end();
  if (block) out_.layout();
  while (at_ < elements_.size() && offsets_[at_] < place.end) ++at_;
}

// That of its first text or field; it comes from the run around it.
RichFont RichTextElementsWriter::fontWithin(const KeptPlace& place) const {
  for (qsizetype i = at_; i < elements_.size() && offsets_[i] < place.end; ++i) {
    FieldRecord field;
    RichFont font;
    if (kindOf(elements_[i]) == richrecord::Text) return elements_[i].font;
    if (readFieldRecord(elements_[i].record, field, font)) return font;
  }
  return {};
}

void RichTextElementsWriter::beginSection(const KeptPlace& place) {
  endParagraph();
  const qsizetype content = place.xml.indexOf(u'>') + 1;
  out_.verbatim(place.xml.first(content));
  writeSectionTitle();
  out_.verbatim(place.xml.sliced(content).chopped(kSectionEnd.size()));
  sections_.push_back({place.end});
}

// The first paragraph of a section is its title.
void RichTextElementsWriter::writeSectionTitle() {
  if (at_ == elements_.size() || kindOf(current()) != richrecord::Paragraph) return;
  ++at_;
  out_.begin(u"sectiontitle"_s);
  QString text;
  if (at_ < elements_.size() && kindOf(current()) == richrecord::Text && runText(current(), text) &&
      writeFontElement(out_, current().font)) {
    ++at_;
    out_.begin(u"text"_s);
    out_.lines(text);
    out_.end();
  }
  out_.end();
}

void RichTextElementsWriter::beginKeptTable(const KeptPlace& place) {
  endParagraph();
  OpenTable table;
  table.layout = place.xml.split(kCellEnd.toString());
  if (!tables_.asElements) {
    writeWhole(place);
    return;
  }
  open_.push_back(table);
  ++at_;
}

}  // namespace lens
