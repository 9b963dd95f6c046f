// The views of the open database and the documents of the current one.
#pragma once

#include <QObject>
#include <memory>

#include "client/view_entries.h"
#include "embedded/workspace/workspace.h"

namespace lens {

class DocumentModel;
struct ClientControls;

// What the user marks goes to the workspace's ClientState.
class ViewPane : public QObject {
  Q_OBJECT

 public:
  ViewPane(ClientControls& controls, std::shared_ptr<Workspace> workspace);

  // Shows a database from its first view on; raises what its views raise.
  void show(std::shared_ptr<Database> database);
  void clear();
  // Reads views and documents again. Marks and the current view stay where they still are. Raises as show().
  void reload();

  // Null without a database.
  const ViewEntry* currentEntry() const;
  // Under the cursor; null for a category and without rows.
  NoteId currentDocument() const;
  // In the order of the view, each once.
  QVector<NoteId> markedDocuments() const;
  // Documents were changed since they were read.
  bool isStale() const { return stale_; }
  void markStale() { stale_ = true; }
  // Says above the table how many documents there are.
  void showCount();

 Q_SIGNALS:
  void documentChosen(NoteId noteId);
  // Other documents are shown or marked.
  void changed();

 private:
  void loadDocuments();
  void showRows(const ViewEntry& entry);
  void layOutColumns();
  void markDocuments(const QVector<NoteId>& noteIds, NoteId current);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  DocumentModel* documents_;
  std::shared_ptr<Database> database_;
  QVector<ViewEntry> entries_;
  QVector<int> columnWidths_;  // that the table was laid out for
  bool loading_ = false;       // marks that come and go while rows are read are not the user's
  bool stale_ = false;
  QString unreadable_;  // why all documents stand for the view's; "" where its own are shown
};

}  // namespace lens
