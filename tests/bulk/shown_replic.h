// The bulk tool's window over the main window, with databases on this machine and on a server whose address
// book lists the servers.
#pragma once

#include <QTest>

#include "bulk/bulk_fixture.h"

namespace lens {

class ShownReplic : public BulkTest {
 protected:
  inline static const QString kHub = u"CN=ACME-HUB01/O=Acme"_s, kMail = u"CN=ACME-MAIL01/O=Acme"_s;

  ShownReplic() { openDatabase(u"mail.nsf"_s); }

  // --- databases ---
  std::shared_ptr<Database> make(const QString& path, const QString& server = {},
                                 const QString& inheritsFrom = {}, const QString& title = {}) {
    DatabaseInfo info;
    info.title = title;
    info.inheritsFrom = inheritsFrom;
    return workspace->createDatabase(server, path, info);
  }
  // Two servers, and on the first one the address book that lists them.
  void addServers() {
    for (const QString& server : {kHub, kMail}) workspace->addServer(server);
    DatabaseInfo info;
    info.publicAddressBook = true;
    const auto book = workspace->createDatabase(kHub, u"names.nsf"_s, info);
    addView(*book, u"($Servers)"_s);
    for (const QString& server : {kHub, kMail}) {
      Note note = document(u"Server"_s);
      note.add(u"ServerName"_s, itemflag::Summary, textValue(server));
      book->notes().save(note);
    }
  }
  static void addView(Database& store, const QString& title) {
    Note view;
    view.header.noteClass = noteclass::View;
    view.add(u"$TITLE"_s, itemflag::Summary, textValue(title));
    store.notes().save(view);
  }
  static void addAgent(Database& store, const QString& title) {
    Note agent;
    agent.header.noteClass = noteclass::Filter;
    agent.add(u"$TITLE"_s, itemflag::Summary, textValue(title));
    agent.add(u"$Flags"_s, itemflag::Summary, textValue(u"f"_s));
    store.notes().save(agent);
  }
  // A document with a text item for each pair.
  static NoteId addDocument(Database& store, const QVector<std::pair<QString, QString>>& items) {
    Note note;
    for (const auto& [name, text] : items) note.add(name, itemflag::Summary, textValue(text));
    store.notes().save(note);
    return note.header.id;
  }

  // --- the window ---
  // The main window with what its start says put away, then the tool.
  void openTool() {
    start();
    showTool();
  }
  void showTool() {
    host.boxes.clear();
    host.pointers.clear();
    notes().log.clear();
    form().cmdCMRcoll->click.fire();
  }
  FrmReplic& window() { return app->bulk().window; }
  QStringList sources() { return rowsOf(*window().lstDBNames); }
  QStringList targets() { return rowsOf(*window().lstDBNamesDest); }
  QStringList fields() { return rowsOf(*window().fldList); }
  // Marks a row as a click of the mouse does, and runs the list's click.
  static void choose(ListBox& list, const QString& row) {
    const int place = list.find(row);
    ASSERT_GE(place, 0) << row.toStdString() << " is none of " << rowsOf(list).join(u" | "_s).toStdString();
    list.setSelected(place, true);
  }
  static QString native(const QString& path) { return QDir::toNativeSeparators(path); }
};

}  // namespace lens
