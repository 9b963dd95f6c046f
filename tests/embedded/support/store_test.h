// What the tests of the store share: a database in a temporary directory and short ways to notes.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "embedded/format/packed_items.h"
#include "embedded/store/database.h"
#include "support/error_number.h"

namespace lens {

inline std::ostream& operator<<(std::ostream& out, const QByteArray& bytes) {
  return out << bytes.toHex(' ').constData();
}

inline QByteArray contentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(content), content.size());
}

inline Note noteWith(const QString& subject, quint16 noteClass = noteclass::Document) {
  Note note;
  note.header.noteClass = noteClass;
  note.add(QStringLiteral("Subject"), itemflag::Summary, textValue(subject));
  return note;
}

class StoreTest : public testing::Test {
 protected:
  StoreTest() { database = Database::create(path(), {QStringLiteral("Letters"), {}, {}, {}, {}, false}); }
  QString path(const QString& name = QStringLiteral("letters.nsf")) const { return directory.filePath(name); }
  void reopen() {
    database.reset();
    database = Database::open(path());
  }
  NoteId saved(const QString& subject, quint16 noteClass = noteclass::Document) {
    Note note = noteWith(subject, noteClass);
    database->notes().save(note);
    return note.header.id;
  }
  QString subjectOf(NoteId id) {
    Note note;
    return database->notes().read(id, note) ? note.text(u"Subject") : QStringLiteral("(none)");
  }
  // Runs a statement beside the store, as damage would come about.
  void damage(const char* sql) {
    ASSERT_EQ(sqlite3_exec(database->handle(), sql, nullptr, nullptr, nullptr), 0);
  }
  QStringList files() const { return QDir(directory.path()).entryList(QDir::Files | QDir::Hidden); }

  QTemporaryDir directory;
  std::shared_ptr<Database> database;
};

}  // namespace lens
