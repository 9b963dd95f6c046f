// What the Notes client has open: the database on top, the document in its window, its view
// and the documents that are selected there. The client window writes it, the object model reads it.
#pragma once

#include <QString>
#include <QVector>
#include <utility>

namespace lens {

// A database by the server's canonical name ("" for the local machine) and the path below its
// directory, with the host's separator.
struct DatabasePlace {
  QString server;
  QString path;
  bool operator==(const DatabasePlace&) const = default;
};

// Told what a member of the model has changed in the client. The state is already up to date.
class ClientListener {
 public:
  virtual ~ClientListener() = default;
  virtual void refreshView() = 0;
  // Another database is on top, or none.
  virtual void databaseShown() {}
  virtual void documentClosed() = 0;
  virtual void databaseClosed() = 0;
  // A database came into being or was removed.
  virtual void databasesChanged() {}
};

class ClientState {
 public:
  // Not owned; null when there is no window.
  void setListener(ClientListener* listener) { listener_ = listener; }

  // Null when no database is open. Valid until the client shows another one.
  const DatabasePlace* database() const { return database_.path.isEmpty() ? nullptr : &database_; }
  bool isOnTop(const DatabasePlace& place) const { return database() && database_ == place; }
  // A document and a selection belong to their database, so another database ends both.
  void showDatabase(const DatabasePlace& place) {
    if (place == database_) return;
    database_ = place;
    document_ = view_ = 0;
    selection_.clear();
    if (listener_) listener_->databaseShown();
  }
  void showNoDatabase() { showDatabase({}); }

  // Note ID of the open document, 0 when there is none.
  quint32 document() const { return database() ? document_ : 0; }
  void showDocument(quint32 noteId) { document_ = noteId; }

  // Note ID of the view whose documents are shown, 0 when they are those of no view.
  quint32 view() const { return database() ? view_ : 0; }
  void showView(quint32 noteId) { view_ = noteId; }

  // The marked documents of the view, in its order.
  void select(QVector<quint32> noteIds) { selection_ = std::move(noteIds); }
  // What a program sees of it: nothing while a document's window covers the view.
  QVector<quint32> visibleSelection() const { return document() ? QVector<quint32>() : selection_; }

  // What the model asks of the client.
  void refreshView() {
    if (listener_) listener_->refreshView();
  }
  void closeDocument() {
    document_ = 0;
    if (listener_) listener_->documentClosed();
  }
  void changeDatabases() {
    if (listener_) listener_->databasesChanged();
  }
  void closeDatabase() {
    showNoDatabase();
    if (listener_) listener_->databaseClosed();
  }

 private:
  ClientListener* listener_ = nullptr;
  DatabasePlace database_;
  quint32 document_ = 0;
  quint32 view_ = 0;
  QVector<quint32> selection_;
};

}  // namespace lens
