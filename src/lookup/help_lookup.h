// The Designer help as a reference beside a document: lists of its topics, and a search in it. The help
// becomes the current database, so that the usual viewer opens its topics.
#pragma once

#include <functional>

#include "shell/desk.h"

namespace lens {

class HelpLookup {
 public:
  explicit HelpLookup(Desk& desk);

  void cmdFuncList_Click();
  void cmdLS_Click();
  void cmdJava_Click();
  void cmdHLP_Click();

 private:
  using Selection = std::function<NotesDocumentCollection(const NotesDatabase& help)>;
  void look(const Selection& select);
  void lookByFormula(const QString& formula);
  NotesDatabase findHelp();
  void listTopics(const NotesDocumentCollection& topics);
  QString subjectOf(const NotesDocument& topic);

  Desk& desk_;
};

}  // namespace lens
