// What the user picks to work on: servers, databases, views and agents; and the fields of a view's first
// documents, which are offered for replacement.
#pragma once

#include <QSet>

#include "bulk/replic_desk.h"
#include "shell/error_modes.h"

namespace lens {

class SourceSelection {
 public:
  // Also registers the window's lists with the routines that fill them.
  explicit SourceSelection(ReplicDesk& desk);

  void lstServer_Click();
  void lstServer_KeyPress(int code);
  void lstDesignServer_KeyPress(int code);
  void cmdExpand_Click();
  void cmdExpand2_Click();
  void lstDBNames_DblClick();
  void lstViewNames_Click();

 private:
  void registerLists();
  void listSourceDatabases();
  void listTargetDatabases();
  // Lists views and agents of gDb.
  void listDesign(Statements& statement);
  void sampleFields(const NotesView& view);
  // `present` collects the names that need not be looked for again.
  void addMissingFields(const NotesDocument& document, QSet<QString>& present);

  ReplicDesk& desk_;
};

}  // namespace lens
