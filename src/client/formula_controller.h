// Showing the formulas of notes in the client window: of the open note or the one under the cursor, and of
// the current view.
#pragma once

#include <QObject>
#include <QPointer>
#include <memory>

#include "embedded/workspace/workspace.h"

namespace lens {

class DatabaseController;
class FormulaWindow;
class ViewPane;
struct ClientControls;

class FormulaController : public QObject {
  Q_OBJECT

 public:
  FormulaController(ClientControls& controls, std::shared_ptr<Workspace> workspace,
                    DatabaseController& databases, ViewPane& views);

 private:
  void offer();
  NoteId currentNote() const;
  NoteId currentView() const;
  void showOfNote();
  void show(NoteId noteId, qsizetype itemPlace);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  DatabaseController& databases_;
  ViewPane& views_;
  QPointer<FormulaWindow> window_;  // while it is open
};

}  // namespace lens
