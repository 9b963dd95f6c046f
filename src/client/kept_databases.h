// Which databases of a workspace were open: the one on top when the program ended, and those before it.
#pragma once

#include <QVector>
#include <optional>

#include "controls/kept_settings.h"
#include "embedded/workspace/workspace.h"

namespace lens {

class KeptDatabases {
 public:
  // The settings live longer.
  KeptDatabases(KeptSettings& settings, const Workspace& workspace);

  struct Top {
    DatabasePlace place;
    NoteId document;  // that was open in it; null for none
  };
  std::optional<Top> top() const;
  // Nothing where no database is open.
  void keepTop(const std::optional<Top>& top);

  // The last one first. They need not be there any more.
  QVector<DatabasePlace> recent() const;
  void addRecent(const DatabasePlace& place);
  void removeRecent(const DatabasePlace& place);
  void clearRecent();

 private:
  void keepRecent(const QVector<DatabasePlace>& places);

  KeptSettings& settings_;
  QString group_;  // each workspace has its own
};

// Whether a database is a real one that has to be read before it can be opened, which may take long.
bool isToBeRead(const Workspace& workspace, const DatabasePlace& place);

// Puts the kept database on top in the client, with the document that was open in it where both are still
// there. Whoever holds the result spares the first capture from opening the file again; null where there is
// none, and where it is to be read first.
std::shared_ptr<Database> openKeptDatabase(Workspace& workspace, KeptSettings& settings);

}  // namespace lens
