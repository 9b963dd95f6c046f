// What the Notes client has open: the database on top, the document in its window, its view
// and the documents that are selected there. The client window writes it, the object model reads it.
#pragma once

#include <QString>
#include <QVector>
#include <utility>

#include "embedded/format/note_id.h"

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
  // The window may wait for the end of a burst; settle() is asked before anybody reads what depends on it.
  virtual void refreshView() = 0;
  virtual void settle() {}
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
    document_ = view_ = {};
    selection_.clear();
    if (listener_) listener_->databaseShown();
  }
  void showNoDatabase() { showDatabase({}); }

  // Note ID of the open document, 0 when there is none.
  NoteId document() const { return database() ? document_ : NoteId(); }
  void showDocument(NoteId noteId) { document_ = noteId; }

  // Note ID of the view whose documents are shown, 0 when they are those of no view.
  NoteId view() const { return database() ? view_ : NoteId(); }
  void showView(NoteId noteId) { view_ = noteId; }

  // The marked documents of the view, in its order.
  void select(QVector<NoteId> noteIds) { selection_ = std::move(noteIds); }
  // What a program sees of it: nothing while a document's window covers the view.
  QVector<NoteId> visibleSelection() const {
    if (listener_) listener_->settle();
    return document() ? QVector<NoteId>() : selection_;
  }

  // What the model asks of the client.
  void refreshView() {
    if (listener_) listener_->refreshView();
  }
  void closeDocument() {
    document_ = {};
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
  NoteId document_;
  NoteId view_;
  QVector<NoteId> selection_;
};

}  // namespace lens
