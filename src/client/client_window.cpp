#include "client/client_window.h"

#include "client/client_controls.h"
#include "client/compare_controller.h"
#include "client/database_commands.h"
#include "client/database_controller.h"
#include "client/document_pane.h"
#include "client/file_opening.h"
#include "client/formula_controller.h"
#include "client/help_controller.h"
#include "client/import_controller.h"
#include "client/index_controller.h"
#include "client/list_export.h"
#include "client/real_report.h"
#include "client/search_controller.h"
#include "client/view_pane.h"
#include "client/window_state.h"

namespace lens {

ClientWindow::ClientWindow(const std::shared_ptr<Workspace>& workspace, QWidget* parent)
    : QMainWindow(parent, Qt::Window),
      controls_(std::make_unique<ClientControls>(*this)),
      views_(std::make_unique<ViewPane>(*controls_, workspace)),
      document_(std::make_unique<DocumentPane>(*controls_, workspace)),
      databases_(std::make_unique<DatabaseController>(*controls_, workspace, *views_, *document_)),
      commands_(std::make_unique<DatabaseCommands>(*controls_, workspace, *databases_)),
      import_(std::make_unique<ImportController>(*controls_, workspace, *databases_)),
      export_(std::make_unique<ExportController>(*controls_, workspace, *databases_, *views_)),
      index_(std::make_unique<IndexController>(*controls_, *databases_)),
      search_(std::make_unique<SearchController>(*controls_, *databases_, *views_, *document_, *index_)),
      realReport_(std::make_unique<RealReport>(*controls_, *databases_)),
      files_(std::make_unique<FileOpening>(*controls_, *databases_, *import_)),
      state_(std::make_unique<WindowState>(*controls_, workspace, *databases_)),
      lists_(std::make_unique<ListExport>(*controls_, workspace, *databases_, *views_)),
      compare_(std::make_unique<CompareController>(*controls_, workspace, *databases_, *document_, *views_,
                                                   *lists_)),
      help_(std::make_unique<HelpController>(*controls_)),
      formulas_(std::make_unique<FormulaController>(*controls_, workspace, *databases_, *views_)) {
  databases_->start();
  if (!workspace->serverFaults().isEmpty()) controls_->showError(workspace->serverFaults().join(u'\n'));
}

ClientWindow::~ClientWindow() = default;

void ClientWindow::setFileChoice(std::unique_ptr<FileChoice> choice) {
  controls_->choice = choice ? std::move(choice) : std::make_unique<DesktopFileChoice>();
}

bool ClientWindow::keepState(KeptSettings& settings) {
  return state_->keepIn(settings);
}

bool ClientWindow::openDatabase(const DatabasePlace& place) {
  return databases_->open(place);
}

bool ClientWindow::openDocument(NoteId noteId) {
  return document_->open(noteId);
}

void ClientWindow::openFiles(const QStringList& paths) {
  files_->open(paths);
}

void ClientWindow::closeDatabase() {
  databases_->close();
}

void ClientWindow::refresh() {
  databases_->refresh();
}

void ClientWindow::importDxl(const QStringList& filesOrFolders, bool intoNew) {
  import_->importDxl(filesOrFolders, intoNew);
}

void ClientWindow::exportDxl(ExportRange range, const QString& file) {
  export_->exportDxl(range, file);
}

bool ClientWindow::isImporting() const {
  return controls_->workBar->isRunning();
}

}  // namespace lens
