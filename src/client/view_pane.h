// The views of the open database and the documents of the current one.
#pragma once

#include <QObject>
#include <QTimer>
#include <memory>
#include <optional>

#include "client/row_order.h"
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

  // Puts what a search found before the views and shows it, until another search, another database or
  // clearFound().
  void showFound(const QString& query, const QVector<NoteId>& noteIds);
  void clearFound();

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
  bool reloadOrTell();
  static QString listed(const ViewEntry& entry);
  void connectFilter();
  void loadDocuments();
  void arrange(const RowArrangement& wanted);
  bool arrangeRows(const RowArrangement& wanted);
  void arrangeAnew();
  void showRows(const ViewEntry& entry);
  void layOutColumns();
  void widenColumns();
  void markDocuments(const QVector<NoteId>& noteIds, NoteId current);

  ClientControls& controls_;
  std::shared_ptr<Workspace> workspace_;
  DocumentModel* documents_;
  std::shared_ptr<Database> database_;
  std::optional<ViewEntry> found_;
  QVector<ViewEntry> entries_;
  QVector<int> columnWidths_;  // that the table was laid out for
  QVector<int> designWidths_;  // pixels that they got then
  bool fitted_ = false;        // to rows, since then
  RowArrangement arrangement_;
  QTimer filterLater_;    // runs while the filter is being typed
  bool loading_ = false;  // marks that come and go while rows are read are not the user's
  bool stale_ = false;
  QString unreadable_;  // why all documents stand for the view's; "" where its own are shown
};

}  // namespace lens
