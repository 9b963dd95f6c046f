// A topic of the help database: a document with the items Subject ("@Left"), TopicType ("About"), _Parent
// (the chapter it belongs to) and Body. Readers select topics by these items.
#pragma once

#include <QStringList>

#include "embedded/store/database.h"
#include "notes/literals.h"

namespace lens {

struct Topic {
  QString subject;
  QString chapter;
  QString heading;         // how it is written, above the text
  QStringList paragraphs;  // empty ones are left out
  // What it is: an article about one thing, or a help text that only the help key of a window shows.
  QString type = u"About"_s;
};

void addTopic(Database& help, const Topic& topic);

// A row of a table of topics, and all rows of such a table.
struct TopicRow {
  const char16_t* subject;
  const char16_t* heading;
  const char16_t* text;
};
void addTopics(Database& help, const char16_t* chapter, const TopicRow* rows, size_t count);

}  // namespace lens
