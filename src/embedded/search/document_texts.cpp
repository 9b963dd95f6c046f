#include "embedded/search/document_texts.h"

#include "embedded/mime/mime_entity.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

void readTexts(const Item& item, FieldSink& sink) {
  const Value values = itemValues(item);
  if (!values.isArray()) return;
  for (qsizetype i = 0; i <= values.upperBound(); ++i) sink.text(item.name, values.at(i).text());
}

void readNumbers(const Item& item, FieldSink& sink) {
  ByteReader bytes(item.data());
  qsizetype count = 1;
  if (item.type() == itemtype::NumberRange) {
    const qsizetype singles = bytes.u16(), pairs = bytes.u16();
    count = singles + 2 * pairs;
  }
  for (; count > 0 && bytes.has(8); --count) sink.number(item.name, bytes.f64());
}

void readTimes(const Item& item, FieldSink& sink) {
  ByteReader bytes(item.data());
  qsizetype singles = 1, pairs = 0;
  if (item.type() == itemtype::TimeRange) singles = bytes.u16(), pairs = bytes.u16();
  for (; singles > 0 && bytes.has(8); --singles) sink.time(item.name, bytes.time());
  for (; pairs > 0 && bytes.has(16); --pairs) {
    const TimeDate from = bytes.time(), to = bytes.time();
    sink.time(item.name, from);
    sink.time(item.name, to);
    sink.span(item.name, from, to);
  }
}

// The text between the tags; entities stay as they are.
QString withoutTags(const QString& html) {
  QString text;
  qsizetype at = 0;
  while (at < html.size()) {
    const qsizetype open = html.indexOf(u'<', at);
    text += QStringView(html).sliced(at, (open < 0 ? html.size() : open) - at);
    if (open < 0) break;
    text += u' ';
    const qsizetype close = html.indexOf(u'>', open);
    if (close < 0) break;
    at = close + 1;
  }
  return text;
}

void readEntity(const MimeEntity& entity, const QString& field, FieldSink& sink) {
  for (const auto& child : entity.children()) readEntity(*child, field, sink);
  if (!entity.children().isEmpty() || entity.contentType() != u"text") return;
  const QString text = entity.contentAsText();
  sink.text(field, entity.contentSubType() == u"html" ? withoutTags(text) : text);
}

void readItem(const Item& item, FieldSink& sink) {
  switch (item.type()) {
    case itemtype::Text:
    case itemtype::TextList:
    case itemtype::Rfc822Text:
    case itemtype::Object:
      return readTexts(item, sink);
    case itemtype::Number:
    case itemtype::NumberRange:
      return readNumbers(item, sink);
    case itemtype::Time:
    case itemtype::TimeRange:
      return readTimes(item, sink);
    case itemtype::RichText:
      return sink.text(item.name, RichText::fromBytes(item.data()).plainText());
    default:
      return;
  }
}

}  // namespace

void readDocument(const Note& note, FieldSink& sink) {
  const Item* mime = nullptr;
  for (const Item& item : note.items) {
    if (item.value.size() < 2) continue;
    if (item.type() == itemtype::MimePart && !mime) mime = &item;
    readItem(item, sink);
  }
  if (!mime) return;
  if (const auto message = MimeEntity::parse(mimeMessage(note))) readEntity(*message, mime->name, sink);
}

}  // namespace lens
