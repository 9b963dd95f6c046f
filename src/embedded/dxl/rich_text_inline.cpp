#include <array>

#include "embedded/dxl/field_elements.h"
#include "embedded/dxl/rich_text_reader.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"

namespace lens {

namespace {

bool isLayoutBlank(QChar c) {
  return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r';
}

// Elements whose characters are code or encoded bytes, no text to read.
bool holdsNoText(QStringView name) {
  static constexpr std::array<const char16_t*, 16> names = {
      u"code",     u"formula",     u"lotusscript", u"javascript", u"gif",         u"jpeg",
      u"png",      u"notesbitmap", u"cgm",         u"filedata",   u"rawitemdata", u"compositedata",
      u"imageref", u"javaproject", u"appletdata",  u"oledata"};
  for (const char16_t* const known : names) {
    if (name == QStringView(known)) return true;
  }
  return false;
}

}  // namespace

void RichTextReader::flush() {
  if (text_.isEmpty()) return;
  out_.appendText(text_, font_);
  text_.resize(0);
}

void RichTextReader::settleBreak() {
  if (waiting_ && !atStart_ && !blank_) {
    text_ += u' ';
    blank_ = true;
  }
  waiting_ = false;
}

void RichTextReader::addPiece(QStringView piece) {
  if (piece.isEmpty()) return;
  settleBreak();
  text_ += piece;
  atStart_ = false;
  blank_ = piece.back() == u' ' || piece.back() == u'\t';
}

void RichTextReader::addText(QStringView text) {
  if (keepBlanks_) {
    addPiece(text);
    return;
  }
  while (!text.isEmpty()) {
    const qsizetype line = text.indexOf(u'\n');
    addPiece(line < 0 ? text : text.first(line));
    if (line < 0) return;
    waiting_ = true;
    qsizetype next = line;
    while (next < text.size() && isLayoutBlank(text[next])) ++next;
    text = text.sliced(next);
  }
}

void RichTextReader::content() {
  settleBreak();
  flush();
  atStart_ = false;
  blank_ = false;
}

void RichTextReader::readInline() {
  for (;;) {
    const DxlReader::Token token = in_.next();
    if (token == QXmlStreamReader::Characters)
      addText(in_.text());
    else if (token == QXmlStreamReader::StartElement)
      readInlineElement();
    else
      return;
  }
}

void RichTextReader::readInlineElement() {
  if (in_.is(u"run"))
    readRun();
  else if (in_.is(u"font"))
    readFont();
  else if (in_.is(u"text"))
    readInline();
  else if (in_.is(u"break")) {
    waiting_ = false;
    text_ += u'\n';
    atStart_ = true;
    in_.close();
  } else if (in_.is(u"nonxmlchar")) {
    const QChar c = in_.nonXmlChar();
    addPiece(QStringView(&c, 1));
    in_.close();
  } else if (in_.is(u"attachmentref"))
    readAttachment();
  else if (in_.is(u"doclink") || in_.is(u"viewlink") || in_.is(u"databaselink"))
    readLink();
  else if (in_.is(u"urllink"))
    readUrl();
  else if (in_.is(u"anchor")) {
    const QByteArray record = anchorRecord(attribute(u"name"));
    if (record.isEmpty()) in_.fail(u"the name of an anchor is too long"_s);
    content();
    out_.appendInline(record);
    readInline();
  } else if (in_.is(u"compositedata"))
    readCompositeData();
  else if (in_.is(u"field") && fields_ && !in_.recording())
    readField();
  else if (in_.is(u"par") || in_.is(u"table") || in_.is(u"pardef") || in_.is(u"section"))
    readBlock();
  else
    keepWithText();
}

void RichTextReader::readRun() {
  const RichFont outer = font_;
  const bool outerBlanks = keepBlanks_;
  keepBlanks_ = in_.flag(u"keepindentation", outerBlanks);
  settleBreak();
  flush();
  startElement();
  readInline();
  endElement();
  flush();
  font_ = outer;
  keepBlanks_ = outerBlanks;
}

void RichTextReader::readFont() {
  flush();
  const QStringView name = in_.attributeView(u"name"), color = in_.attributeView(u"color");
  const QStringView style = in_.attributeView(u"style");
  if (!fontFace(name, font_.face)) context_.findings.ignored(u"font name \"%1\""_s.arg(name));
  if (!fontColor(color, font_.color)) context_.findings.ignored(u"text color \"%1\""_s.arg(color));
  if (!fontStyle(style, font_.attributes)) context_.findings.ignored(u"text style \"%1\""_s.arg(style));
  readFontSize();
  in_.close();
}

void RichTextReader::readFontSize() {
  const QStringView given = in_.attributeView(u"size");
  const double points = (given.endsWith(u"pt") ? given.chopped(2) : given).toDouble();
  if (points >= 1 && points <= 250) font_.points = quint8(points);
  if (!given.isEmpty() && points != font_.points) context_.findings.ignored(u"text size \"%1\""_s.arg(given));
}

void RichTextReader::readAttachment() {
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  const QString name = attribute(u"name");
  const QString shown = attribute(u"displayname");
  content();
  const qsizetype begin = out_.bytes().size();
  out_.appendAttachment(name, shown.isEmpty() ? name : shown);
  // The caption is drawn below the icon; the record's own caption is the displayed name.
  in_.close();
  keepPlaced(begin, u"attachmentref"_s, records);
}

void RichTextReader::readLink() {
  const QString kind = in_.name().toString();
  const QString document = kind == u"doclink" ? attribute(u"document") : QString();
  const QString view = kind == u"databaselink" ? QString() : attribute(u"view");
  const QByteArray record =
      linkRecord(attribute(u"database"), view, document, attribute(u"description"), attribute(u"server"));
  if (record.isEmpty()) in_.fail(u"the %1 has a malformed ID"_s.arg(kind));
  content();
  out_.appendInline(record);
  readInline();
}

void RichTextReader::readUrl() {
  const QByteArray record = urlHotspot(attribute(u"href"));
  if (record.isEmpty()) in_.fail(u"the address of a link is too long"_s);
  content();
  out_.appendInline(record);
  readInline();
  content();
  out_.appendInline(hotspotEnd());
}

void RichTextReader::readCompositeData() {
  const QString what = u"compositedata"_s;
  bool good = false;
  const uint type = attribute(u"type").toUInt(&good);
  const QByteArray bytes = in_.readBase64(what);
  if (!good || !richrecord::isTypeOf(type, bytes))
    in_.fail(u"%1: the record is not of the type that is stated"_s.arg(what));
  content();
  // What stands between the paragraphs (tables, definitions) begins none of its own.
  if (!out_.appendRecord(bytes)) {
    in_.fail(
        u"%1: the record has another length than its %2 bytes"_s.arg(what, QString::number(bytes.size())));
  }
}

void RichTextReader::readField() {
  content();
  const qsizetype begin = out_.bytes().size(), items = note_.items.size();
  const QByteArray record = readFormField(context_, note_, font_, *fields_);
  if (!record.isEmpty()) out_.appendInline(record);
  if (note_.items.size() > items) addPlace(begin);
}

// The text stays readable where it stood; everything else of the element is in its XML.
void RichTextReader::keepWithText() {
  const bool records = !in_.recording();
  const QString element = in_.name().toString();
  if (records) in_.startRecording();
  in_.markRecordIncomplete();
  const bool text = !holdsNoText(element);
  if (text) content();
  const qsizetype begin = out_.bytes().size();
  if (text)
    readInline();
  else
    in_.skip();
  if (!records) return;
  if (text) flush();
  keepXml(context_, note_, element, in_.stopRecording());
  addPlace(begin);
}

}  // namespace lens
