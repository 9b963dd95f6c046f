#include "app/sample_workspace.h"

#include <QDir>

#include "embedded/dxl/dxl_importer.h"
#include "embedded/files/file_lock.h"
#include "embedded/help/help_database.h"
#include "embedded/search/full_text.h"
#include "notes/literals.h"

// The samples lie in a library, which the linker leaves out unless somebody asks for them.
static void loadSamples() {
  Q_INIT_RESOURCE(samples);
}

namespace lens {
namespace {

const QString kSamples = u"Samples"_s;  // entry of notes.ini
const QString kFilling = u"filling"_s;
constexpr int kLongestFillingMs = 120'000;
const QString kHub = u"CN=ACME-HUB01/O=Acme"_s;
const QString kApplications = u"CN=ACME-APP02/O=Acme"_s;
const QString kMail = u"mail/kmeier.nsf"_s;
const QString kDiscussion = u"disc/ideas.nsf"_s;

struct Sample {
  QString resource;
  QString server;
  QString path;
  bool publicAddressBook;
};

// An import comes in whole or not at all, so a database with notes is one that is done, and may hold
// the user's work by now.
bool isFilled(Workspace& workspace, const Sample& sample) {
  constexpr quint16 kAllClasses = 0x7FFF;
  const QString path = QDir::toNativeSeparators(sample.path);
  return workspace.databases(sample.server).contains(path) &&
         workspace.database(sample.server, path)->notes().noteCount(kAllClasses) > 0;
}

void importSample(Workspace& workspace, const Sample& sample) {
  if (isFilled(workspace, sample)) return;
  DatabaseInfo info;
  info.publicAddressBook = sample.publicAddressBook;
  const auto database = workspace.createDatabase(sample.server, sample.path, info, true);
  ImportReport report;
  DxlImporter(*database).importFile(sample.resource, report);
  if (!report.failed.isEmpty()) throw RuntimeError(err::InvalidCall, report.failed.join(u'\n'));
}

// The help is made anew from the program's own tables, as a database of every client with Designer.
void makeHelp(Workspace& workspace) {
  const Sample help{QString(), QString(), u"help/designer.nsf"_s, false};
  if (isFilled(workspace, help)) return;
  DatabaseInfo info;
  info.title = u"Designer help"_s;
  const auto database = workspace.createDatabase(help.server, help.path, info, true);
  fillHelpDatabase(*database);
  createFullTextIndex(*database);
}

// A second copy on a server, so that there is something to replicate with.
void makeReplica(Workspace& workspace, const QString& path, const QString& server) {
  const DatabasePlace place = workspace.place(server, path);
  if (workspace.databases(server).contains(place.path)) return;
  workspace.createReplica(*workspace.database(QString(), path), server, path);
}

bool hasDatabases(const Workspace& workspace) {
  if (!workspace.databases(QString()).isEmpty()) return true;
  for (const QString& server : workspace.serverNames())
    if (!workspace.databases(server).isEmpty()) return true;
  return false;
}

// The mark stays while the filling runs: a start that was cut short is done again. Whoever fills sets it
// before the first database is there, so it is looked for behind them.
bool needsNoFilling(Workspace& workspace) {
  if (!hasDatabases(workspace)) return false;
  workspace.readAgain();
  return workspace.iniValue(kSamples) != kFilling;
}

}  // namespace

void fillFirstTime(Workspace& workspace) {
  if (needsNoFilling(workspace)) return;
  const FileLock alone(workspace.directory() + u"/samples"_s, kLongestFillingMs);
  if (alone.state() == FileLock::State::Taken)
    throw RuntimeError(
        err::PathFileAccess,
        u"%1: another program is filling the workspace with samples"_s.arg(workspace.directory()));
  workspace.readAgain();
  if (needsNoFilling(workspace)) return;
  workspace.setIniValue(kSamples, kFilling);
  loadSamples();
  for (const QString& server : {kHub, u"CN=ACME-MAIL01/O=Acme"_s, kApplications}) workspace.addServer(server);
  importSample(workspace, {u":/samples/names.dxl"_s, kHub, u"names.nsf"_s, true});
  importSample(workspace, {u":/samples/mail.dxl"_s, QString(), kMail, false});
  importSample(workspace, {u":/samples/discussion.dxl"_s, QString(), kDiscussion, false});
  importSample(workspace, {u":/samples/template.dxl"_s, QString(), u"acmedisc.ntf"_s, false});
  makeReplica(workspace, kDiscussion, kApplications);
  makeHelp(workspace);
  workspace.setIniValue(kSamples, u"filled"_s);
}

std::shared_ptr<Database> openSampleMail(Workspace& workspace) {
  const QStringList local = workspace.databases(QString());
  const QString path = QDir::toNativeSeparators(kMail);
  if (!local.contains(path)) return nullptr;
  const auto database = workspace.database(QString(), path);
  const QVector<NoteSummary> documents = database->notes().list(noteclass::Document);
  workspace.client().showDatabase({QString(), path});
  if (!documents.isEmpty()) workspace.client().showDocument(documents.first().id);
  return database;
}

}  // namespace lens
