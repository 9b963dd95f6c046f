#include "bulk/source_selection.h"

#include "bulk/run_steps.h"
#include "controls/keys.h"
#include "notes/literals.h"
#include "notes/numbers.h"
#include "shell/exact_texts.h"

namespace lens {
namespace {

const QString kReplic = u"frmReplic"_s, kSourceList = u"lstDBNames"_s, kTargetList = u"lstDBNamesDest"_s;

bool holdsMask(const NotesDatabase& database, const TextBox& mask) {
  return database.filePath().toLower().contains(mask.text().toLower());
}

bool isMadeFrom(const NotesDatabase& database, const QString& templateName) {
  return templateName.isEmpty() || database.templateName().toLower() == templateName.toLower();
}

// An item counts as present when any row holds its name and ": ", wherever in the row.
bool isPresent(const ListBox& list, const QString& name) {
  const QString beginning = name + u": ";
  for (int row = 0; row < list.listCount(); ++row)
    if (list.list(row).contains(beginning)) return true;
  return false;
}

}  // namespace

SourceSelection::SourceSelection(ReplicDesk& desk) : desk_(desk) {
  FrmReplic& window = desk_.window;
  window.lstServer->click = [this] { lstServer_Click(); };
  window.lstServer->keyPress = [this](int& code) { lstServer_KeyPress(code); };
  window.lstDesignServer->keyPress = [this](int& code) { lstDesignServer_KeyPress(code); };
  window.cmdExpand->click = [this] { cmdExpand_Click(); };
  window.cmdExpand2->click = [this] { cmdExpand2_Click(); };
  window.lstDBNames->dblClick = [this] { lstDBNames_DblClick(); };
  window.lstViewNames->click = [this] { lstViewNames_Click(); };
  registerLists();
}

void SourceSelection::registerLists() {
  FrmReplic& window = desk_.window;
  desk_.servers.registerWindow(kReplic, {window.lstServer, window.lstDesignServer});
  desk_.databases.registerList(
      kSourceList, kReplic, *window.lstDBNames, [&window](const NotesDatabase& database) {
        return holdsMask(database, *window.txtMaskSorce) && isMadeFrom(database, window.txtTemplale->text());
      });
  desk_.databases.registerList(
      kTargetList, kReplic, *window.lstDBNamesDest, [&window](const NotesDatabase& database) {
        return window.txtMaskDest->text().isEmpty() || holdsMask(database, *window.txtMaskDest);
      });
}

void SourceSelection::listSourceDatabases() {
  const QString server = desk_.window.lstServer->text();
  desk_.databases.GetDbs(server, kSourceList, kReplic);
  desk_.window.lblDB->setText(u"Databases on: "_s + server);
}

void SourceSelection::listTargetDatabases() {
  const QString server = desk_.window.lstDesignServer->text();
  desk_.databases.GetDbs(server, kTargetList, kReplic);
  desk_.window.lblDB2->setText(u"Databases on: "_s + server);
  desk_.window.lblDB2->repaint();
}

// The raw listing: databases only, no masks, while Enter and the button "?" list templates too.
void SourceSelection::lstServer_Click() {
  FrmReplic& window = desk_.window;
  desk_.host.setPointer(pointer::Hourglass);
  try {
    window.lstDBNames->clear();
    desk_.state.gServer = namedServer(window.lstServer->text());
    if (desk_.state.gSession) {
      const NotesDbDirectory directory = desk_.state.gSession.dbDirectory(desk_.state.gServer);
      NotesDatabase database = directory.firstDatabase(NotesDbDirectory::kDatabases);
      for (; database; database = directory.nextDatabase()) window.lstDBNames->addItem(database.filePath());
      window.lblDB->setText(u"Databases on: "_s + desk_.state.gServer);
      window.lblDB->repaint();
    }
  } catch (const RuntimeError& error) {
    // The title names another event.
    desk_.host.messageBox(error.description() + exact::kInLine, box::Critical,
                          u"Program Error in: lstServer_DblClick"_s);
  }
  desk_.host.setPointer(pointer::Default);
}

void SourceSelection::lstServer_KeyPress(int code) {
  if (code != key::Enter) return;
  listSourceDatabases();
  desk_.window.lblDB->repaint();
}

void SourceSelection::lstDesignServer_KeyPress(int code) {
  if (code == key::Enter) listTargetDatabases();
}

void SourceSelection::cmdExpand_Click() {
  listSourceDatabases();
  desk_.window.txtFind->setText(QString());
  desk_.window.txtReplace->setText(QString());
  desk_.window.lblDB->repaint();
}

void SourceSelection::cmdExpand2_Click() {
  listTargetDatabases();
}

void SourceSelection::lstDBNames_DblClick() {
  FrmReplic& window = desk_.window;
  if (desk_.state.gSearchBusy) return;
  window.lstViewNames->clear();
  window.lstAgentNames->clear();
  desk_.state.gDbPath = window.lstDBNames->text();
  Statements step;
  if (openToldDatabase(desk_, step)) listDesign(step);
}

// What a server's database lacks or refuses is passed over in silence; on this machine a failure ends the
// event in the general report.
void SourceSelection::listDesign(Statements& statement) {
  FrmReplic& window = desk_.window;
  const NotesDatabase& database = desk_.state.gDb;
  desk_.host.setPointer(pointer::Hourglass);
  QVector<Value> views, agents;
  statement([&] { views = database.views().values(); });
  for (const Value& view : std::as_const(views))
    statement([&] { window.lstViewNames->addItem(NotesView(view.object()).name()); });
  statement([&] {
    const Value all = database.agents();
    if (!all.isEmpty()) agents = all.values();
  });
  for (const Value& agent : std::as_const(agents))
    statement([&] { window.lstAgentNames->addItem(NotesAgent(agent.object()).name()); });
  statement([&] {
    if (window.txtFind->text().isEmpty())
      window.txtFind->setText(desk_.routines.RightFrom(database.title(), u"_"_s));
  });
  desk_.host.setPointer(pointer::Default);
  desk_.state.gDb.release();
}

// A failure has no trap here: it ends in the general report, and the hourglass stays.
void SourceSelection::lstViewNames_Click() {
  FrmReplic& window = desk_.window;
  const ReplicRun run(window);
  desk_.state.gDbPath = window.lstDBNames->text();
  desk_.state.gDb.release();
  desk_.state.gDb = openListedSource(desk_, desk_.state.gDbPath);
  // A click while events are taken works on a view of its own.
  const NotesView view = desk_.state.gDb.view(window.lstViewNames->text());
  desk_.host.setPointer(pointer::Hourglass);
  desk_.host.yield();
  window.txtDocsSelected->setText(numberText(view.entryCount()));
  window.txtDocsSelected->repaint();
  if (window.chkFields->value() != 1) {
    desk_.host.setPointer(pointer::Default);
    return;
  }
  desk_.host.yield();
  sampleFields(view);
  desk_.state.gDb.release();
  desk_.host.setPointer(pointer::Default);
}

// The limit is compared after a document is done, so one more than it says is read. The box shows how many
// there were behind the first one, and this is the limit of the next click.
void SourceSelection::sampleFields(const NotesView& view) {
  TextBox& progress = *desk_.window.txtNumDocs;
  NotesDocument document = view.firstDocument();
  const qint32 limit = roundToInt32(numberPrefix(progress.text()));
  Int16 counter = 0;
  QSet<QString> present;
  while (document) {
    addMissingFields(document, present);
    document = view.nextDocument(document);
    if (!document || counter >= limit) return;
    counter += 1;
    progress.setText(QString::number(counter));
    progress.repaint();
  }
}

// Long rows are looked through once for each name, not once for each item.
void SourceSelection::addMissingFields(const NotesDocument& document, QSet<QString>& present) {
  ListBox& fields = *desk_.window.fldList;
  const QString find = desk_.window.txtFind->text();
  const Value items = document.items();
  for (const Value& element : items.values()) {
    const NotesItem item = element.object();
    const QString text = item.text();
    if (!text.contains(find)) continue;
    const QString name = item.name();
    if (present.contains(name)) continue;
    if (!isPresent(fields, name)) fields.addItem(name + u": " + text);
    present.insert(name);
  }
}

}  // namespace lens
