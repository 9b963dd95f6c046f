// A workspace in a temporary directory with one mail file, for tests of the two doors.
//
//   TestWorkspace t;
//   const NoteId id = t.add({{u"Form", textValue(u"Memo")}, {u"Subject", textValue(u"Hello")}});
//   Object doc = t.mail().call(QStringLiteral("GETDOCUMENTBYID"), t.hex(id)).object();
//
// The region is German, the user is CN=Karin Meier/O=Acme.
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <utility>

#include "embedded/design/agent.h"
#include "embedded/format/source_formula.h"
#include "embedded/mime/mime_entity.h"
#include "embedded/model/embedded_gateway.h"
#include "embedded/richtext/rich_text.h"
#include "embedded/store/database.h"
#include "embedded/workspace/workspace.h"

namespace lens::testbed {

struct NamedValue {
  QString name;
  QByteArray value;
  quint16 flags = itemflag::Summary;
};

inline Note noteOf(const QVector<NamedValue>& items, quint16 noteClass = noteclass::Document) {
  Note note;
  note.header.noteClass = noteClass;
  for (const NamedValue& item : items) note.add(item.name, item.flags, item.value);
  return note;
}

inline QByteArray richValue(const QString& text) {
  RichText rich;
  rich.beginParagraph();
  rich.appendText(text);
  return rawValue(itemtype::RichText, rich.toBytes());
}

class TestWorkspace {
 public:
  TestWorkspace()
      : directory_(root_.filePath(QStringLiteral("workspace"))),
        workspace(Workspace::open(directory_, Regional(QLocale(QLocale::German, QLocale::Germany)))),
        gateway(workspace) {
    DatabaseInfo info;
    info.title = QStringLiteral("Mail of Karin");
    info.replicaId = QStringLiteral("C1257A0000112233");
    info.inheritsFrom = QStringLiteral("StdMail");
    store = workspace->createDatabase({}, QStringLiteral("mail.nsf"), info);
  }

  QString file(const QString& name) const { return root_.filePath(name); }
  const QString& directory() const { return directory_; }

  NoteId add(const QVector<NamedValue>& items, quint16 noteClass = noteclass::Document) {
    Note note = noteOf(items, noteClass);
    store->notes().save(note);
    return note.header.id;
  }
  NoteId addView(const QString& title, const QByteArray& formula = {}, const QString& flags = {}) {
    QVector<NamedValue> items{{QStringLiteral("$TITLE"), textValue(title)}};
    if (!formula.isEmpty()) items.push_back({QStringLiteral("$Formula"), formula});
    if (!flags.isEmpty()) items.push_back({QStringLiteral("$Flags"), textValue(flags)});
    return add(items, noteclass::View);
  }
  // An agent run by hand that is a formula; `search` picks its documents as the platform's agent record
  // tells.
  NoteId addAgent(const QString& title, const QString& formula, quint16 search = 1,
                  const QString& flags = QStringLiteral("f")) {
    AgentSchedule settings;
    settings.trigger = 4;
    settings.search = search;
    return add({{QStringLiteral("$TITLE"), textValue(title)},
                {QStringLiteral("$Flags"), textValue(flags)},
                {QStringLiteral("$AssistType"), numberValue(65412)},
                {QStringLiteral("$AssistFlags"), textValue(u"D")},
                {QStringLiteral("$AssistInfo"), assistInfoValue(settings), 0},
                {QStringLiteral("$AssistQuery"), emptyQueryValue(), 0},
                {QStringLiteral("$AssistAction"), formulaActionValue(sourceFormula(formula)), 0}},
               noteclass::Filter);
  }
  // A document with one attachment of these bytes.
  NoteId addFile(const QString& name, const QByteArray& bytes) {
    const quint32 object = store->objects().begin();
    store->objects().append(object, bytes);
    FileObject file;
    file.objectId = store->objects().finish(object).id;
    file.name = name;
    file.size = quint32(bytes.size());
    return add({{QStringLiteral("$FILE"), fileObjectValue(file)}});
  }
  NoteId addMime(const QByteArray& message) {
    Note note = noteOf({{QStringLiteral("Form"), textValue(u"Memo")}});
    for (const QByteArray& value : mimePartValues(message)) note.add(QStringLiteral("Body"), 0, value);
    store->notes().save(note);
    return note.header.id;
  }

  static QString hex(NoteId id) { return id.hexText(); }
  Object session() { return gateway.create(QStringLiteral("Notes.NotesSession")); }
  Object ui() { return gateway.create(QStringLiteral("Notes.NotesUIWorkSpace")); }
  Object mail() {
    return session().call(QStringLiteral("GETDATABASE"), QString(), QStringLiteral("mail.nsf")).object();
  }
  Object document(NoteId id) { return mail().call(QStringLiteral("GETDOCUMENTBYID"), hex(id)).object(); }

 private:
  QTemporaryDir root_;
  QString directory_;

 public:
  std::shared_ptr<Workspace> workspace;
  EmbeddedGateway gateway;
  std::shared_ptr<Database> store;  // of mail.nsf
};

// The number of the RuntimeError that the body raises, 0 when it raises none.
template <class Body>
int raised(const Body& body) {
  try {
    body();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

}  // namespace lens::testbed
