#include "embedded/help/topic.h"

#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

constexpr RichFont kHeading{1, 1, 0, 12}, kPlain{1, 0, 0, 10};

void addParagraph(RichText& body, const QString& text, const RichFont& font) {
  if (text.isEmpty()) return;
  body.beginParagraph();
  body.appendText(text, font);
}

QByteArray bodyOf(const Topic& topic) {
  RichText body;
  addParagraph(body, topic.heading, kHeading);
  for (const QString& paragraph : topic.paragraphs) addParagraph(body, paragraph, kPlain);
  return rawValue(itemtype::RichText, body.toBytes());
}

}  // namespace

void addTopic(Database& help, const Topic& topic) {
  Note note;
  note.add(u"Form"_s, itemflag::Summary, textValue(u"Topic"));
  note.add(u"Subject"_s, itemflag::Summary, textValue(topic.subject));
  note.add(u"TopicType"_s, itemflag::Summary, textValue(topic.type));
  note.add(u"_Parent"_s, itemflag::Summary, textValue(topic.chapter));
  note.add(u"Body"_s, 0, bodyOf(topic));
  help.notes().save(note);
}

void addTopics(Database& help, const char16_t* chapter, const TopicRow* rows, size_t count) {
  for (size_t i = 0; i < count; ++i)
    addTopic(help, {QString::fromUtf16(rows[i].subject),
                    QString::fromUtf16(chapter),
                    QString::fromUtf16(rows[i].heading),
                    {QString::fromUtf16(rows[i].text)}});
}

}  // namespace lens
