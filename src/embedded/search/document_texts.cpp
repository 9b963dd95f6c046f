#include "embedded/search/document_texts.h"

#include "embedded/format/lmbcs.h"
#include "embedded/format/stored_lists.h"
#include "embedded/mime/mime_entity.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

// The text of the item; of an attachment its name.
void readText(const Item& item, FieldSink& sink) {
  const Value values = itemValues(item);
  if (values.isArray()) sink.text(item.name, values.at(0).text());
}

void readTextList(const Item& item, FieldSink& sink) {
  StoredTexts(item.data()).forEach([&](QByteArrayView text, bool) {
    sink.text(item.name, textFromStored(text));
  });
}

void readNumbers(const Item& item, FieldSink& sink) {
  const StoredRange range(item.data());
  for (qsizetype i = 0; i < range.entries(); ++i) sink.number(item.name, range.number(i));
}

void readTimes(const Item& item, FieldSink& sink) {
  const StoredRange range(item.data());
  for (qsizetype i = 0; i < range.singles(); ++i) sink.time(item.name, range.time(i));
  for (qsizetype i = 0; i < range.pairs(); ++i) {
    const TimeDate from = range.from(i), to = range.to(i);
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
  ByteReader bytes(item.data());
  switch (item.type()) {
    case itemtype::TextList:
      return readTextList(item, sink);
    case itemtype::Text:
    case itemtype::Rfc822Text:
    case itemtype::Object:
      return readText(item, sink);
    case itemtype::Number:
      if (bytes.has(8)) sink.number(item.name, bytes.f64());
      return;
    case itemtype::NumberRange:
      return readNumbers(item, sink);
    case itemtype::Time:
      if (bytes.has(8)) sink.time(item.name, bytes.time());
      return;
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
