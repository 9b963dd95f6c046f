// The stand-in for the Notes client on a workspace: servers and databases on the left, views and
// documents of the open database on the right.
//
// The workspace's ClientState says what is open and marked; the window shows it and changes it, and
// follows what programs change there. It opens nothing modal that another window would feel, and
// closing it only hides it. Failures are told in a strip at its top.
#pragma once

#include <QMainWindow>
#include <memory>
#include <optional>

#include "client/file_choice.h"
#include "client/view_entries.h"
#include "embedded/dxl/import_report.h"
#include "embedded/workspace/workspace.h"

namespace Ui {
class ClientWindow;
}

namespace lens {

class DocumentModel;
class ImportBar;

class ClientWindow : public QMainWindow, private ClientListener {
  Q_OBJECT

 public:
  // Becomes the listener of the workspace's client and of its changes until it is destroyed.
  explicit ClientWindow(std::shared_ptr<Workspace> workspace, QWidget* parent = nullptr);
  ~ClientWindow() override;

  // Asks the user in another way; null stands for the desktop's dialogs.
  void setFileChoice(std::unique_ptr<FileChoice> choice);

  // These tell a failure in the window, leave everything as it was then, and give false.
  bool openDatabase(const DatabasePlace& place);
  bool openDocument(quint32 noteId);
  // Makes an empty database and opens it; its title is its file name.
  bool createDatabase(const QString& server, const QString& path);

  void closeDatabase();
  void closeDocument();
  // Reads servers, views, documents and the open document again. Marks stay where documents do.
  void refresh();

  // Imports into the open database, or into a new one when none is open or when asked. Returns when
  // it is over; events go on meanwhile. Refused while another import runs.
  void importDxl(const QStringList& filesOrFolders, bool intoNew = false);
  bool isImporting() const;

  enum class ExportRange { Database, View, Marked };
  // Writes the open database, the documents of the current view, or the marked documents (the open one
  // where one is open) to a DXL file, whole or not at all. Returns when it is over; events go on
  // meanwhile. Refused while an import or another export runs.
  void exportDxl(ExportRange range, const QString& file);

 private:
  struct ImportTarget {
    DatabasePlace place;
    std::shared_ptr<Database> database;
    bool isNew = false;
  };

  void refreshView() override;
  void databaseShown() override;
  void documentClosed() override;
  void databaseClosed() override;
  void databasesChanged() override;

  void setUpPanes();
  void setUpActions();
  void showError(const QString& text);
  void clearError();
  void syncWithState();
  bool load();
  void unload(const QString& why = {});
  void loadViews();
  void loadDocuments();
  void showRows(const ViewEntry& entry);
  void layOutColumns();
  bool readDocument(quint32 noteId);
  void refreshDocument();
  void markDocuments(const QVector<quint32>& noteIds, quint32 current);
  QVector<quint32> markedDocuments() const;
  void showPage();
  void showCounts();
  void showTitle();
  const ViewEntry* currentEntry() const;

  void indexDatabase();
  void offerIndex();
  void askNewDatabase();
  void askImport(bool folder, bool intoNew);
  std::optional<ImportTarget> importTarget(bool intoNew);
  void showReport(const ImportReport& report, const ImportTarget& target, bool removed);
  bool dropEmpty(ImportTarget& target);
  void askExport(ExportRange range);
  QVector<quint32> exportedNotes(ExportRange range) const;
  bool refuseWhileBusy();

  std::shared_ptr<Workspace> workspace_;
  std::unique_ptr<::Ui::ClientWindow> ui_;
  std::unique_ptr<FileChoice> choice_;
  DocumentModel* documents_;
  ImportBar* importBar_;
  std::shared_ptr<Database> database_;  // what the window shows
  std::optional<DatabasePlace> place_;
  QVector<ViewEntry> entries_;
  QVector<int> columnWidths_;  // that the table was laid out for
  bool loading_ = false;       // marks that come and go while rows are read are not the user's
  bool stale_ = false;         // documents were changed since they were read
};

}  // namespace lens
