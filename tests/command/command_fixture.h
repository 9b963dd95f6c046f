// Commands without a process: a workspace in a temporary directory, a command line, and what came of it.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include "command/command_table.h"
#include "command/run_command.h"
#include "embedded/store/database.h"
#include "embedded/workspace/workspace.h"
#include "support/printers.h"

namespace lens {

using namespace Qt::StringLiterals;

struct CommandResult {
  int code = 0;
  QString out, error;

  QStringList lines() const {
    QStringList all = out.split(u'\n');
    if (!all.isEmpty() && all.last().isEmpty()) all.removeLast();
    return all;
  }
  QStringList errorLines() const { return error.split(u'\n', Qt::SkipEmptyParts); }
  // Each line of the output, which is an object each.
  QVector<QJsonObject> objects() const {
    QVector<QJsonObject> all;
    for (const QString& line : lines()) {
      QJsonParseError fault;
      all.push_back(QJsonDocument::fromJson(line.toUtf8(), &fault).object());
      EXPECT_EQ(fault.error, QJsonParseError::NoError) << line.toStdString();
    }
    return all;
  }
};

class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    workspace = Workspace::open(place(), Regional(QLocale::c()));
    workspace->addServer(u"CN=Hub/O=Acme"_s);
    DatabaseInfo info;
    info.title = u"Karin's mail"_s;
    mail = workspace->createDatabase({}, u"mail.nsf"_s, info);
  }
  QString place() const { return directory.path() + u"/workspace"_s; }
  QString file(const QString& name) const { return directory.path() + u'/' + name; }

  // --- what there is ---
  static Note memo(const QString& subject) {
    Note note;
    note.add(u"Form"_s, itemflag::Summary, textValue(u"Memo"));
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    return note;
  }
  // Saves into mail.nsf; the first note has the ID 8FA, the next one 8FE.
  NoteId save(Note note) const {
    mail->notes().save(note);
    return note.header.id;
  }
  void attach(Note& note, const QString& name, QByteArray bytes) const {
    QBuffer source(&bytes);
    source.open(QIODevice::ReadOnly);
    const StoredObject object = mail->objects().add(source);
    FileObject attached;
    attached.objectId = object.id;
    attached.name = name;
    attached.size = quint32(object.size);
    note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(attached));
  }
  Note read(NoteId id) const {
    Note note;
    EXPECT_TRUE(mail->notes().read(id, note));
    return note;
  }
  QString dxlFile(const QString& name, int memos, const QByteArray& tail = "</database>\n") const {
    QByteArray text =
        "<?xml version='1.0' encoding='utf-8'?>\n<database xmlns='http://www.lotus.com/dxl' title='Other'>\n";
    for (int i = 1; i <= memos; ++i)
      text += "<document form='Memo'><noteinfo unid='" + QByteArray::number(i).rightJustified(32, '0') +
              "'/><item name='Subject'><text>Imported " + QByteArray::number(i) +
              "</text></item></document>\n";
    write(file(name), text + tail);
    return file(name);
  }
  static void write(const QString& path, const QByteArray& bytes) {
    QFile target(path);
    ASSERT_TRUE(target.open(QIODevice::WriteOnly)) << path.toStdString();
    ASSERT_EQ(target.write(bytes), bytes.size());
  }
  static QByteArray contentOf(const QString& path) {
    QFile source(path);
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
  }
  QStringList filesIn(const QString& path) const {
    return QDir(path).entryList(QDir::Files | QDir::Hidden, QDir::Name);
  }

  // --- a command ---
  CommandResult run(const QStringList& arguments) { return runInto(arguments, nullptr); }
  // Into a device of the test's own.
  CommandResult runInto(const QStringList& arguments, QIODevice* device) {
    QBuffer out, error, in(&answer);
    for (QBuffer* buffer : {&out, &error}) buffer->open(QIODevice::WriteOnly);
    in.open(QIODevice::ReadOnly);
    Console::Ends ends{
        device ? device : &out, &error, answer.isEmpty() ? nullptr : &in, false, showsProgress, {}, 0};
    if (interruptAfter >= 0) ends.interrupted = [this] { return interruptAfter-- <= 0; };
    CommandResult result;
    result.code = runCommand(arguments, ends, [&](const QString& named) {
      openedAt = named.isEmpty() ? place() : named;
      Doors doors = openDoors(openedAt, Regional(QLocale::c()), ends.interrupted);
      if (clientBehindDoors) doors.workspace.reset();
      return doors;
    });
    result.out = QString::fromUtf8(out.data());
    result.error = QString::fromUtf8(error.data());
    return result;
  }

  QTemporaryDir directory;
  std::shared_ptr<Workspace> workspace;
  std::shared_ptr<Database> mail;
  QString openedAt;
  QByteArray answer;  // what somebody at the terminal types; nobody is there while it is empty
  bool showsProgress = false;
  bool clientBehindDoors = false;  // what only the engine can do is refused then
  int interruptAfter = -1;         // the user has enough when he was asked so often
};

}  // namespace lens
