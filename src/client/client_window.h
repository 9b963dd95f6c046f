// The stand-in for the Notes client on a workspace: servers and databases on the left, views and
// documents of the open database on the right.
//
// The workspace's ClientState says what is open and marked; the window shows it and changes it, and
// follows what programs change there. It opens nothing modal that another window would feel, and
// closing it only hides it. Failures are told in a strip at its top.
#pragma once

#include <QMainWindow>
#include <memory>

#include "client/export_controller.h"
#include "client/file_choice.h"

namespace lens {

class CompareController;
class DatabaseCommands;
class DocumentPane;
class FileOpening;
class HelpController;
class FormulaController;
class ImportController;
class IndexController;
class KeptSettings;
class ListExport;
class RealReport;
class WindowState;
class SearchController;

// Holds its controls and who works on them.
class ClientWindow : public QMainWindow {
  Q_OBJECT

 public:
  explicit ClientWindow(const std::shared_ptr<Workspace>& workspace, QWidget* parent = nullptr);
  ~ClientWindow() override;

  // Asks the user in another way; null stands for the desktop's dialogs.
  void setFileChoice(std::unique_ptr<FileChoice> choice);

  // Brings back what an earlier start left in the settings, and keeps it there from now on; see
  // window_state.h. False where they hold no place of the window.
  bool keepState(KeptSettings& settings);

  // What its menus do; see the controllers.
  bool openDatabase(const DatabasePlace& place);
  bool openDocument(NoteId noteId);
  // Databases are opened, DXL files and folders imported.
  void openFiles(const QStringList& paths);
  void closeDatabase();
  void refresh();
  void importDxl(const QStringList& filesOrFolders, bool intoNew = false);
  using ExportRange = lens::ExportRange;
  void exportDxl(ExportRange range, const QString& file);
  // Also while an export runs, an index is made or a real database is read.
  bool isImporting() const;

 private:
  std::unique_ptr<ClientControls> controls_;
  std::unique_ptr<ViewPane> views_;
  std::unique_ptr<DocumentPane> document_;
  std::unique_ptr<DatabaseController> databases_;
  std::unique_ptr<DatabaseCommands> commands_;
  std::unique_ptr<ImportController> import_;
  std::unique_ptr<ExportController> export_;
  std::unique_ptr<IndexController> index_;
  std::unique_ptr<SearchController> search_;
  std::unique_ptr<RealReport> realReport_;
  std::unique_ptr<FileOpening> files_;
  std::unique_ptr<WindowState> state_;
  std::unique_ptr<ListExport> lists_;
  std::unique_ptr<CompareController> compare_;
  std::unique_ptr<HelpController> help_;
  std::unique_ptr<FormulaController> formulas_;
};

}  // namespace lens
