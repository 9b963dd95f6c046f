#include "embedded/help/function_topics.h"

#include "embedded/formula/function.h"
#include "embedded/help/topic.h"

namespace lens {
namespace {

Topic topicOf(const formula::Function& function) {
  Topic topic;
  topic.subject = QString::fromLatin1(function.name);
  topic.chapter = QStringLiteral("H_FORMULA_FUNCTIONS");
  topic.heading = formula::callForm(function);
  topic.paragraphs.append(QString::fromUtf8(function.help));
  if (function.quirks & formula::quirk::NeedsClient)
    topic.paragraphs.append(
        QStringLiteral("Compiles, and fails when it runs: it needs the Notes client or a server."));
  if (function.note) topic.paragraphs.append(QString::fromUtf8(function.note));
  return topic;
}

}  // namespace

void addFunctionTopics(Database& help) {
  Database::Transaction all(help);
  for (const formula::Function* function : formula::allFunctions()) addTopic(help, topicOf(*function));
  all.commit();
}

}  // namespace lens
