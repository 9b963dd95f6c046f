// Undoing imports into the open database, the last one first, until it is closed.
#pragma once

#include <QObject>
#include <QString>
#include <QTemporaryDir>
#include <memory>
#include <optional>
#include <vector>

#include "embedded/workspace/client_state.h"
#include "host/regional.h"

namespace lens {

class DatabaseController;
struct ClientControls;

class ImportUndo : public QObject {
  Q_OBJECT

 public:
  ImportUndo(ClientControls& controls, const Regional& regional, DatabaseController& databases);
  ~ImportUndo() override;

  // A path for the record of an import that is about to begin; "" where no file can be made.
  QString newRecord();
  // What stands in a record can be undone while that database stays open; `what` names the import.
  void add(const QString& record, const DatabasePlace& place, const QString& what);

 private:
  struct Import {
    QString record, what;
  };
  void offer();
  void undo();
  void forget();

  ClientControls& controls_;
  const Regional regional_;
  DatabaseController& databases_;
  std::unique_ptr<QTemporaryDir> directory_;  // of the records
  int records_ = 0;
  std::optional<DatabasePlace> place_;  // whose imports these are
  std::vector<Import> imports_;
};

}  // namespace lens
