#include "embedded/help/function_topics.h"

#include "embedded/formula/function.h"
#include "embedded/help/topic.h"
#include "notes/literals.h"

namespace lens {
namespace {

Topic topicOf(const formula::Function& function) {
  Topic topic;
  topic.subject = QString::fromLatin1(function.name);
  topic.chapter = u"H_FORMULA_FUNCTIONS"_s;
  topic.heading = formula::callForm(function);
  topic.paragraphs.append(QString::fromUtf8(function.help));
  if (function.traits & formula::trait::NeedsClient)
    topic.paragraphs.append(u"Compiles, and fails when it runs: it needs the Notes client or a server."_s);
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
