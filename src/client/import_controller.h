// Importing DXL in the client window.
#pragma once

#include <QObject>
#include <QStringList>
#include <optional>

#include "client/database_controller.h"
#include "client/import_offer.h"
#include "client/import_run.h"
#include "client/import_undo.h"

namespace lens {

class ImportController : public QObject {
  Q_OBJECT

 public:
  ImportController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                   DatabaseController& databases);

  // Asks what to import into, imports, and shows a report. A new database is suggested where one is asked
  // for, a folder is taken or a file holds a database. Returns when it is over; events go on meanwhile.
  // Refused while other such work runs.
  void importDxl(const QStringList& filesOrFolders, bool intoNew);

 private:
  struct Target : DatabaseController::Placed {
    bool isNew = false;
  };

  void ask(bool folder, bool intoNew);
  ImportOffer offerFor(const QStringList& paths, bool intoNew) const;
  std::optional<Target> target(const QStringList& paths, bool intoNew);
  void showReport(const ImportRun& run, const Target& target, bool removed, const QString& record);
  QString replacedText(const QString& record) const;
  bool dropEmpty(Target& target);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  DatabaseController& databases_;
  ImportUndo undo_;
};

}  // namespace lens
