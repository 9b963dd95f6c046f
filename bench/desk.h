// The application on a workspace of its own, with one database in the client.
#pragma once

#include <QTemporaryDir>
#include <memory>

#include "app/application.h"
#include "embedded/capi/embedded_capi.h"
#include "embedded/model/embedded_gateway.h"
#include "host/desktop_host.h"

namespace lens::bench {

// Nobody is there to close a box.
class BenchHost : public DesktopHost {
 public:
  int messageBox(const QString&, int, const QString&) override { return answer::Ok; }
};

struct Desk {
  Desk() {
    workspace = Workspace::open(directory.filePath(QStringLiteral("workspace")), host.regional());
    database = workspace->createDatabase(QString(), QStringLiteral("a.nsf"), {});
  }

  QString path() const { return database->path(); }
  NoteId save(Note note) {
    database->notes().save(note);
    return note.header.id;
  }
  // The document is open in the client, and the window shows it.
  void start(NoteId note) {
    workspace->client().showDatabase({QString(), QStringLiteral("a.nsf")});
    workspace->client().showDocument(note);
    notes = std::make_unique<EmbeddedGateway>(workspace);
    capi = std::make_unique<EmbeddedCApi>(workspace);
    application = std::make_unique<Application>(*notes, *capi, host, QString());
    application->start();
  }
  Form1& form() { return application->form; }

  QTemporaryDir directory;
  BenchHost host;
  std::shared_ptr<Workspace> workspace;
  std::shared_ptr<Database> database;
  std::unique_ptr<EmbeddedGateway> notes;
  std::unique_ptr<EmbeddedCApi> capi;
  std::unique_ptr<Application> application;
};

}  // namespace lens::bench
