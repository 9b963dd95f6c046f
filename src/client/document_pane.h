// The page of the open document.
#pragma once

#include <QObject>
#include <memory>

#include "embedded/workspace/workspace.h"

namespace lens {

struct ClientControls;

// Which document is open stands in the workspace's ClientState.
class DocumentPane : public QObject {
  Q_OBJECT

 public:
  DocumentPane(ClientControls& controls, std::shared_ptr<Workspace> workspace);

  // Whose documents are opened; null for none.
  void setDatabase(std::shared_ptr<Database> database) { database_ = std::move(database); }
  // False and told in the window when the document cannot be read; what was shown stays then.
  bool open(NoteId noteId);
  void close();
  // Empties the page.
  void clear();
  // Reads the open document again; one that has gone is closed.
  void refresh();

 Q_SIGNALS:
  // Another document is open.
  void opened();

 private:
  bool read(NoteId noteId);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  std::shared_ptr<Database> database_;
};

}  // namespace lens
