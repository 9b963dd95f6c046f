// Everything a window test needs: a workspace in a temporary directory with a database on top, the
// whole application on the offscreen platform, and a host that records every box.
//
//   TEST_F(Capture, ListsTheItems) {
//     Note memo = document("Memo");
//     memo.add(u"Subject"_s, itemflag::Summary, textValue(u"Pumps"_s));
//     openDocument(save(memo));
//     start();                                  // load step, window shown
//     click("cmdGetDoc");                       // press a button; failures go where they would
//     EXPECT_EQ(rows("fldList"), ...);          // rows of a list
//     EXPECT_EQ(text("txtFieldName"), "Body");  // text of a box or label, caption of a button
//     EXPECT_EQ(boxes(), QStringList());        // texts of all boxes so far; details in host.boxes
//   }
//
// Controls go by their names: control<ListBox>("fldList"). Before start() a test may put faults in
// place: notes.failAt, notes.failing (object model), capi.failAt, capi.log (C API).
#pragma once

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <memory>

#include "app/application.h"
#include "embedded/capi/embedded_capi.h"
#include "embedded/model/embedded_gateway.h"
#include "embedded/workspace/workspace.h"
#include "support/faulty_gateway.h"
#include "support/forwarding_capi.h"
#include "support/printers.h"
#include "support/recording_host.h"

namespace lens {

using namespace Qt::StringLiterals;

class LensFixture : public testing::Test {
 protected:
  LensFixture();
  ~LensFixture() override;

  // --- the workspace ---
  // Makes a local database (or one of a server) and puts it on top in the client.
  std::shared_ptr<Database> openDatabase(const QString& path, const QString& server = QString());
  void closeDatabase() { workspace->client().showNoDatabase(); }
  // A document with a Form item, not yet saved.
  static Note document(const QString& form);
  // Saves into the database on top and gives the note ID.
  NoteId save(Note& note);
  void openDocument(NoteId noteId) { workspace->client().showDocument(noteId); }
  void selectDocuments(const QVector<NoteId>& noteIds) { workspace->client().select(noteIds); }
  // An attachment with its "$FILE" item.
  void attach(Note& note, const QString& fileName, const QByteArray& bytes);

  // --- the program ---
  // Builds the application, runs its load step and shows the window.
  void start();
  // Builds the application without running the load step.
  void build();
  template <class Control>
  Control& control(const char* name) {
    auto* found = app->form.findChild<Control*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("no control of that kind: ") + name);
    return *found;
  }
  Form1& form() { return app->form; }
  Globals& state() { return app->state; }
  // The application's desk with another library behind its door.
  Desk deskWith(CApi& library) {
    return {app->form, app->state, *notesDoor, library, host, app->routines, app->sessions, app->layout};
  }

  // Runs the click of a button, list, check box or label, as a user's click would.
  void click(const char* name);
  // Types a text key by key into a box.
  void type(const char* name, const QString& text);
  // Selects a row of a list, which fires its click.
  void select(const char* list, int row);
  // Selects the first row that begins so; fails the test when there is none.
  void selectRow(const char* list, const QString& beginning);

  QString text(const char* name);
  void setText(const char* name, const QString& text);
  QStringList rows(const char* list);
  int value(const char* checkBox) { return control<CheckBox>(checkBox).value(); }
  bool isShown(const char* name);
  QString caption() { return app->form.windowTitle(); }

  QStringList boxes() const { return host.boxTexts(); }
  // Runs something that ends the process; true when it did.
  template <class Statements>
  static bool endsProcess(Statements&& statements) {
    try {
      statements();
      return false;
    } catch (const ProcessEnded&) {
      return true;
    }
  }

  QTemporaryDir directory;
  RecordingHost host;
  std::shared_ptr<Workspace> workspace;
  std::shared_ptr<Database> database;  // on top in the client
  std::unique_ptr<EmbeddedGateway> engineNotes;
  std::unique_ptr<EmbeddedCApi> engineCapi;
  std::unique_ptr<FaultyGateway> notesDoor;
  std::unique_ptr<ForwardingCApi> capiDoor;
  FaultyGateway& notes() { return *notesDoor; }
  ForwardingCApi& capi() { return *capiDoor; }
  std::unique_ptr<Application> app;
};

}  // namespace lens
