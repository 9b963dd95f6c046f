// Exporting DXL from the client window.
#pragma once

#include <QObject>
#include <memory>

#include "embedded/workspace/workspace.h"

namespace lens {

class DatabaseController;
class ViewPane;
struct ClientControls;

// The open database, the documents of the current view, or the marked documents (the open one where one is
// open).
enum class ExportRange { Database, View, Marked };

class ExportController : public QObject {
  Q_OBJECT

 public:
  ExportController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                   const DatabaseController& databases, const ViewPane& views);

  // Writes a DXL file whole or not at all. Returns when it is over; events go on meanwhile. Refused while
  // other such work runs.
  void exportDxl(ExportRange range, const QString& path);

 private:
  void ask(ExportRange range);
  QVector<NoteId> notesOf(ExportRange range) const;

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  const DatabaseController& databases_;
  const ViewPane& views_;
};

}  // namespace lens
