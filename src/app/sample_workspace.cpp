#include "app/sample_workspace.h"

#include <QDir>
#include <QFile>

#include "embedded/dxl/dxl_importer.h"

// The samples lie in a library, which the linker leaves out unless somebody asks for them.
static void loadSamples() {
  Q_INIT_RESOURCE(samples);
}

namespace lens {
namespace {

const QString kHub = QStringLiteral("CN=ACME-HUB01/O=Acme");
const QString kMail = QStringLiteral("mail/kmeier.nsf");

struct Sample {
  QString resource;
  QString server;
  QString path;
  bool publicAddressBook;
};

void importSample(Workspace& workspace, const Sample& sample) {
  DatabaseInfo info;
  info.publicAddressBook = sample.publicAddressBook;
  auto database = workspace.createDatabase(sample.server, sample.path, info);
  ImportReport report;
  DxlImporter(*database).importFile(sample.resource, report);
  if (report.failed.isEmpty()) return;
  // No empty database stays behind, or the next start would take the workspace for a filled one.
  database.reset();
  QFile::remove(workspace.absolutePath(workspace.place(sample.server, sample.path)));
  throw RuntimeError(err::InvalidCall, report.failed.join(u'\n'));
}

bool hasDatabases(const Workspace& workspace) {
  if (!workspace.databases(QString()).isEmpty()) return true;
  for (const QString& server : workspace.serverNames())
    if (!workspace.databases(server).isEmpty()) return true;
  return false;
}

}  // namespace

void fillFirstTime(Workspace& workspace) {
  if (hasDatabases(workspace)) return;
  loadSamples();
  for (const char16_t* server : {u"CN=ACME-HUB01/O=Acme", u"CN=ACME-MAIL01/O=Acme", u"CN=ACME-APP02/O=Acme"})
    workspace.addServer(QString::fromUtf16(server));
  importSample(workspace, {QStringLiteral(":/samples/names.dxl"), kHub, QStringLiteral("names.nsf"), true});
  importSample(workspace, {QStringLiteral(":/samples/mail.dxl"), QString(), kMail, false});
  importSample(workspace, {QStringLiteral(":/samples/discussion.dxl"), QString(),
                           QStringLiteral("disc/ideas.nsf"), false});
}

void openSampleMail(Workspace& workspace) {
  const QStringList local = workspace.databases(QString());
  const QString path = QDir::toNativeSeparators(kMail);
  if (!local.contains(path)) return;
  const QVector<NoteSummary> documents = workspace.database(QString(), path)->list(noteclass::Document);
  workspace.client().showDatabase({QString(), path});
  if (!documents.isEmpty()) workspace.client().showDocument(documents.first().id);
}

}  // namespace lens
