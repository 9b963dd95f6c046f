#include "embedded/help/function_topics.h"

#include "embedded/formula/function.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

constexpr RichFont kHeading{1, 1, 0, 12}, kPlain{1, 0, 0, 10};

void addParagraph(RichText& body, const QString& text, const RichFont& font = kPlain) {
  body.beginParagraph();
  body.appendText(text, font);
}

QByteArray bodyOf(const formula::Function& function) {
  RichText body;
  addParagraph(body, formula::callForm(function), kHeading);
  addParagraph(body, QString::fromUtf8(function.help));
  if (function.quirks & formula::quirk::NeedsClient)
    addParagraph(body,
                 QStringLiteral("Compiles, and fails when it runs: it needs the Notes client or a server."));
  if (function.note) addParagraph(body, QString::fromUtf8(function.note));
  return rawValue(itemtype::RichText, body.toBytes());
}

}  // namespace

void addFunctionTopics(Database& help) {
  Database::Transaction all(help);
  for (const formula::Function* function : formula::allFunctions()) {
    Note topic;
    topic.add(QStringLiteral("Form"), itemflag::Summary, textValue(u"Topic"));
    topic.add(QStringLiteral("Subject"), itemflag::Summary, textValue(QString::fromLatin1(function->name)));
    topic.add(QStringLiteral("TopicType"), itemflag::Summary, textValue(u"About"));
    topic.add(QStringLiteral("_Parent"), itemflag::Summary, textValue(u"H_FORMULA_FUNCTIONS"));
    topic.add(QStringLiteral("Body"), 0, bodyOf(*function));
    help.save(topic);
  }
  all.commit();
}

}  // namespace lens
