// Importing DXL in the client window.
#pragma once

#include <QObject>
#include <QStringList>
#include <optional>

#include "client/database_controller.h"
#include "embedded/dxl/import_report.h"

namespace lens {

class ImportController : public QObject {
  Q_OBJECT

 public:
  ImportController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                   DatabaseController& databases);

  // Imports into the open database, or into a new one when none is open or when asked, and shows a report.
  // Returns when it is over; events go on meanwhile. Refused while other such work runs.
  void importDxl(const QStringList& filesOrFolders, bool intoNew);

 private:
  struct Target : DatabaseController::Placed {
    bool isNew = false;
  };

  void ask(bool folder, bool intoNew);
  std::optional<Target> target(bool intoNew);
  void showReport(const ImportReport& report, const Target& target, bool removed);
  bool dropEmpty(Target& target);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  DatabaseController& databases_;
};

}  // namespace lens
