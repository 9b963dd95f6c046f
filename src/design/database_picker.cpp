#include "design/database_picker.h"

#include "notes/literals.h"

namespace lens {
namespace {

const QString kForm3 = u"Form3"_s, kChoices = u"lstDBNamesDest"_s;

}  // namespace

DatabasePicker::DatabasePicker(Desk& desk, ServerLists& servers, DatabaseLists& databases)
    : window(&desk.form), desk_(desk), servers_(servers), databases_(databases) {
  servers_.registerWindow(kForm3, {window.lstDesignServer});
  databases_.registerList(kChoices, kForm3, *window.lstDBNamesDest);
  window.unload = [this] { loaded_ = false; };
  window.cmdExpand2->click = [this] { cmdExpand2_Click(); };
  window.lstDesignServer->dblClick = [this] { cmdExpand2_Click(); };
  window.lstDBNamesDest->dblClick = [this] { lstDBNamesDest_DblClick(); };
}

// The profiles are listed however the window was left.
void DatabasePicker::cmdDbPicker_Click() {
  if (!loaded_) Form_Load();
  window.exec();
  desk_.form.cmdGetProfiels->raiseClick();
}

void DatabasePicker::Form_Load() {
  loaded_ = true;
  window.lstDesignServer->clearRows();
  window.lstDesignServer->setText(QString());
  desk_.sessions.GetSessionProbe();
  servers_.GetServerList2(kForm3);
  cmdExpand2_Click();
}

void DatabasePicker::cmdExpand2_Click() {
  databases_.GetDbs(window.lstDesignServer->text(), kChoices, kForm3);
}

void DatabasePicker::lstDBNamesDest_DblClick() {
  try {
    openInClient();
  } catch (const RuntimeError& error) {
    desk_.host.messageBox(error.description(), box::Critical, u"Open DB Error!"_s);
  }
  window.hide();
}

void DatabasePicker::openInClient() {
  desk_.state.gSession = NotesSession::ofClient(desk_.notes);
  desk_.state.gDb = desk_.state.gSession.currentDatabase();
  if (!desk_.state.gDb.isNothing()) desk_.state.gDb.close();
  // The client closes what it shows.
  const NotesUIWorkspace workspace = NotesUIWorkspace::of(desk_.notes);
  desk_.state.gDb = workspace.currentDatabase();
  if (!desk_.state.gDb.isNothing()) desk_.state.gDb.close();
  gPickedServer = namedServer(window.lstDesignServer->text());
  gPickedDatabase = window.lstDBNamesDest->text();
  desk_.state.gDb = desk_.state.gSession.database(gPickedServer, gPickedDatabase);
  workspace.openDatabase(gPickedServer, gPickedDatabase);
}

}  // namespace lens
