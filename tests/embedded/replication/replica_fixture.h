// Replicas of one database in a temporary directory, and what can be said of them.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QBuffer>
#include <QMap>
#include <QTemporaryDir>

#include "embedded/replication/replication.h"
#include "embedded/store/database.h"
#include "embedded/support/store_test.h"

namespace lens {

inline QByteArray integrityOf(const Database& database) {
  sqlite3_stmt* check = nullptr;
  sqlite3_prepare_v2(database.handle(), "PRAGMA integrity_check", -1, &check, nullptr);
  sqlite3_step(check);
  const QByteArray result(reinterpret_cast<const char*>(sqlite3_column_text(check, 0)));
  sqlite3_finalize(check);
  return result;
}

inline quint32 objectIn(const Item& item) {
  quint32 id = 0;
  for (int i = 0; i < 4; ++i) id |= quint32(quint8(item.value[4 + i])) << (8 * i);
  return id;
}

// A note in words: header, items, and the bytes of its attachments in place of their numbers.
inline QString told(const Database& database, const Note& note) {
  const NoteHeader& header = note.header;
  QStringList parts{QString::number(header.noteClass), header.parent.text(),
                    QString::number(header.sequence)};
  for (const TimeDate& time : {header.sequenceTime, header.created, header.modified, header.added})
    parts << timeDateHex(time);
  for (const Item& item : note.items) {
    QByteArray value = item.value;
    QBuffer object;
    if (item.type() == itemtype::Object && value.size() >= 8) {
      object.open(QIODevice::WriteOnly);
      database.objects().read(objectIn(item), object);
      for (int i = 4; i < 8; ++i) value[i] = 0;
    }
    parts << item.name + u'/' + QString::number(item.flags) + u'=' + QString::fromLatin1(value.toHex()) +
                 QString::fromLatin1(object.data().toHex());
  }
  return parts.join(u'|');
}

// Every live note and stub of a database by UNID.
inline QMap<QString, QString> stateOf(const Database& database) {
  QMap<QString, QString> state;
  database.notes().scan(0x7FFF, [&](const Note& note) {
    state.insert(note.header.unid.text(), told(database, note));
    return true;
  });
  for (const NoteVersion& version : database.versions().versionsAfter({}, 1 << 30))
    if (!version.live)
      state.insert(version.unid.text(),
                   QStringLiteral("stub %1 %2").arg(version.stamp.writer).arg(version.stamp.count));
  return state;
}

// The first notes in which two databases differ, "" when they are alike.
inline std::string differenceOf(const Database& a, const Database& b) {
  const QMap<QString, QString> inA = stateOf(a), inB = stateOf(b);
  QMap<QString, QString> all = inA;
  all.insert(inB);
  QStringList lines;
  for (auto note = all.cbegin(); note != all.cend() && lines.size() < 5; ++note)
    if (inA.value(note.key()) != inB.value(note.key()))
      lines << QStringLiteral("%1: %2 <> %3")
                   .arg(note.key(), inA.value(note.key()).left(200), inB.value(note.key()).left(200));
  return lines.join(u'\n').toStdString();
}

class Replicas : public testing::Test {
 protected:
  QString path(const QString& name) const { return directory.filePath(name + QStringLiteral(".nsf")); }
  std::shared_ptr<Database> make(const QString& name) {
    DatabaseInfo info;
    info.title = QStringLiteral("Letters");
    info.replicaId = QStringLiteral("C125000000ABCDEF");
    return Database::create(path(name), info);
  }
  static Note noteWith(const QString& subject, quint16 noteClass = noteclass::Document) {
    Note note;
    note.header.noteClass = noteClass;
    note.add(QStringLiteral("Subject"), itemflag::Summary, textValue(subject));
    return note;
  }
  static Unid add(Database& database, const QString& subject, quint16 noteClass = noteclass::Document) {
    Note note = noteWith(subject, noteClass);
    database.notes().save(note);
    return note.header.unid;
  }
  static void edit(Database& database, const Unid& unid, const QString& subject) {
    Note note;
    ASSERT_TRUE(database.notes().read(unid, note));
    note.find(u"Subject")->value = textValue(subject);
    database.notes().save(note);
  }
  static void remove(Database& database, const Unid& unid, bool stub = true) {
    Note note;
    ASSERT_TRUE(database.notes().read(unid, note));
    ASSERT_TRUE(database.notes().remove(note.header.id, stub));
  }
  static void attach(Database& database, const Unid& unid, const QByteArray& bytes) {
    Note note;
    ASSERT_TRUE(database.notes().read(unid, note));
    QBuffer source;
    source.setData(bytes);
    source.open(QIODevice::ReadOnly);
    FileObject file;
    file.objectId = database.objects().add(source).id;
    file.name = QStringLiteral("plan.txt");
    file.size = quint32(bytes.size());
    note.add(QStringLiteral("$FILE"), itemflag::Summary, fileObjectValue(file));
    database.notes().save(note);
  }
  static QString subject(const Database& database, const Unid& unid) {
    Note note;
    return database.notes().read(unid, note) ? note.text(u"Subject") : QStringLiteral("(none)");
  }
  static QVector<Note> conflictsIn(const Database& database) {
    QVector<Note> found;
    database.notes().scan(0x7FFF, [&](const Note& note) {
      if (note.has(u"$Conflict")) found.push_back(note);
      return true;
    });
    return found;
  }
  static int objectsIn(const Database& database) {
    sqlite3_stmt* count = nullptr;
    sqlite3_prepare_v2(database.handle(), "SELECT count(*) FROM object", -1, &count, nullptr);
    sqlite3_step(count);
    const int objects = sqlite3_column_int(count, 0);
    sqlite3_finalize(count);
    return objects;
  }

  QTemporaryDir directory;
};

// Two replicas that were the same once.
class Pair : public Replicas {
 protected:
  Pair() : a(make(QStringLiteral("a"))), b(make(QStringLiteral("b"))) {
    unid = add(*a, QStringLiteral("first"));
    replicate(*a, *b);
  }
  void expectAlike() { EXPECT_EQ(differenceOf(*a, *b), ""); }

  std::shared_ptr<Database> a, b;
  Unid unid;
};

}  // namespace lens
