// The Designer help as a reference beside a document: lists of its topics, and a search in it. The help
// becomes the current database, so that the usual viewer opens its topics.
#pragma once

#include <functional>

#include "host/host.h"
#include "shell/form1.h"
#include "shell/globals.h"

namespace lens {

class HelpLookup {
 public:
  HelpLookup(Form1& form, Globals& state, Host& host);

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

  Form1& form_;
  Globals& state_;
  Host& host_;
};

}  // namespace lens
