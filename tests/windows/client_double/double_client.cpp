#include "double_client.h"

#include <QDir>

#include "notes/literals.h"

namespace lens {
namespace {

std::shared_ptr<Workspace> openNamedWorkspace() {
  const auto workspace =
      Workspace::open(qEnvironmentVariable("TESSALY_DOUBLE_WORKSPACE"), Regional(QLocale::system()));
  const QString mail = QDir::toNativeSeparators(u"mail/kmeier.nsf"_s);
  if (!workspace->databases(QString()).contains(mail)) return workspace;
  const QVector<NoteSummary> documents =
      workspace->database(QString(), mail)->notes().list(noteclass::Document);
  workspace->client().showDatabase({QString(), mail});
  if (!documents.isEmpty()) workspace->client().showDocument(documents.first().id);
  return workspace;
}

}  // namespace

DoubleClient::DoubleClient() : workspace(openNamedWorkspace()), gateway(workspace), capi(workspace) {}

DoubleClient& doubleClient() {
  static DoubleClient client;
  return client;
}

}  // namespace lens
