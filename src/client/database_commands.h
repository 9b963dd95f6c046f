// Deleting, renaming and copying the database that is current on the left.
#pragma once

#include <QObject>
#include <memory>
#include <optional>

#include "embedded/workspace/workspace.h"

namespace lens {

class DatabaseController;
struct ClientControls;

// Each asks first, is refused while a file is in use elsewhere or other work runs, and tells a failure in the
// window.
class DatabaseCommands : public QObject {
  Q_OBJECT

 public:
  DatabaseCommands(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                   DatabaseController& databases);

 private:
  // The one under the cursor, else the open one.
  std::optional<DatabasePlace> chosen() const;
  void deleteDatabase(const DatabasePlace& place);
  void renameDatabase(const DatabasePlace& place);
  void copyDatabase(const DatabasePlace& place);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  DatabaseController& databases_;
};

}  // namespace lens
