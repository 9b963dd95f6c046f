// Database files from elsewhere, damaged or made to harm: whatever a byte of them says, the whole engine
// comes to an end over them, with an error that names the file or with what can be read.
#include <sqlite3.h>

#include <QBuffer>
#include <limits>
#include <vector>

#include "embedded/dxl/dxl_exporter.h"
#include "embedded/replication/replication.h"
#include "embedded/search/full_text.h"
#include "embedded/search/selection.h"
#include "embedded/store/compaction.h"
#include "embedded/store/database_copy.h"
#include "embedded/support/store_test.h"
#include "embedded/support/view_fixture.h"
#include "embedded/views/folder_documents.h"

namespace lens::testbed {
namespace {

// No connection may take more steps in one file than this many times a thousand.
constexpr int kMostTicks = 20'000;
int ticks = 0;

int tick(void*) {
  return ++ticks > kMostTicks;
}

// Called by SQLite for every connection that is opened.
int watchConnection(sqlite3* handle, const char**, const struct sqlite3_api_routines*) {
  sqlite3_progress_handler(handle, 1000, tick, nullptr);
  return SQLITE_OK;
}

QString inMemory() {
  const QString memory = u"/dev/shm"_s;
  return (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + u"/lens-XXXXXX"_s;
}

class HostileFile : public ViewTest {
 protected:
  HostileFile() {
    sqlite3_auto_extension(reinterpret_cast<void (*)()>(watchConnection));
    ticks = 0;
    file = shelf.filePath(u"hostile.nsf"_s);
    database = Database::create(file, {});
    view = addView({.columns = {category(u"Kind"_s), sorted(u"Number"_s)}, .hierarchy = true});
    folder = addView({.columns = {sorted(u"Subject"_s)}, .flags = u"F"_s}, u"Folder"_s);
    NoteId last;
    for (int i = 0; i < 8; ++i) {
      const Unid parent = i % 3 == 2 ? unidOf(last) : Unid();
      last = add(u"pump %1"_s.arg(i),
                 {{u"Kind"_s, textValue(u"k%1"_s.arg(i % 2))}, {u"Number"_s, numberValue(i)}}, parent);
      documents.push_back(last);
    }
    QByteArray bytes(3000, 'x');
    QBuffer source(&bytes);
    source.open(QIODevice::ReadOnly);
    object = database->objects().add(source).id;
    addToFolder(*database, folder, {documents[0], documents[1]});
    database->notes().remove(documents[7]);
    database->notes().remove(documents[6], false);
    for (const NoteId one : {view, folder}) ViewIndex(*database, one).refresh();
    createFullTextIndex(*database);
    // Small pages make a small file, in which most bytes mean something.
    for (const char* sql : {"PRAGMA journal_mode = DELETE", "PRAGMA page_size = 512", "VACUUM"})
      sqlite3_exec(database->handle(), sql, nullptr, nullptr, nullptr);
    const auto take = [](void* to, int, char** values, char**) {
      *static_cast<int*>(to) = QByteArray(values[0]).toInt();
      return 0;
    };
    sqlite3_exec(database->handle(), "SELECT rootpage FROM sqlite_master WHERE name = 'note_class'", take,
                 &classPage, nullptr);
    database.reset();
    whole = contentOf(file);
  }
  ~HostileFile() override { sqlite3_reset_auto_extension(); }

  void place(const QByteArray& content) {
    database.reset();
    for (const QString& suffix : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s}) QFile::remove(file + suffix);
    writeFile(file, content);
    ticks = 0;
  }
  // Runs statements on the closed file, as a program of somebody else would.
  void change(const QByteArray& sql) {
    place(whole);
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(file).constData(), &other), SQLITE_OK);
    char* fault = nullptr;
    EXPECT_EQ(sqlite3_exec(other, sql.constData(), nullptr, nullptr, &fault), SQLITE_OK)
        << sql.constData() << ": " << (fault ? fault : "");
    sqlite3_free(fault);
    sqlite3_close(other);
  }

  // One thing that the engine does: it succeeds, or tells the file.
  template <class Work>
  void attempt(const char* what, const Work& work) {
    try {
      work();
    } catch (const RuntimeError& error) {
      ++told;
      if (error.number() == enginefault::Damaged) ++toldAsDamage;
      if (!error.description().contains(u"hostile.nsf"))
        ADD_FAILURE() << what << " names no file: " << error.description().toStdString();
    }
    EXPECT_LE(ticks, kMostTicks) << what << " comes to no end";
    ticks = 0;
  }

  void drive() {
    attempt("properties", [&] { Database::infoOf(file); });
    attempt("opening", [&] { database = Database::open(file); });
    if (!database) return;
    NoteStore& notes = database->notes();
    attempt("listing", [&] { notes.list(0xFFFF); });
    attempt("counting", [&] { notes.noteCount(0xFFFF), notes.specialNote(noteclass::Icon); });
    attempt("reading", [&] {
      for (quint32 id = 0x8FA; id <= 0x8FA + 48; id += 4) {
        attempt("a note", [&] {
          Note note;
          notes.read(NoteId(id), note);
        });
        attempt("its state", [&] { notes.state(NoteId(id)); });
      }
    });
    attempt("walking", [&] { notes.scan(0xFFFF, [](const Note&) { return true; }); });
    attempt("searching", [&] {
      formula::MachineEnvironment environment;
      selectDocuments(*database, {searchFormula(*database, u"Number > 2", environment), environment});
    });
    attempt("words", [&] { fullTextSearch(*database, u"pump AND [Number] > 1", 0); });
    attempt("the index of words", [&] { refreshFullTextIndex(*database); });
    for (const NoteId one : {view, folder}) {
      attempt("a view", [&] {
        ViewIndex index(*database, one);
        index.refresh();
        index.lines();
        index.documents();
        if (!index.design().columns.isEmpty()) viewColumn(index, 0, regional);
        findByKey(index, {u"3"_s, true}, regional);
        findByKey(index, {u"k1"_s, false}, regional);
      });
    }
    attempt("an attachment", [&] {
      QBuffer target;
      target.open(QIODevice::WriteOnly);
      database->objects().read(object, target);
    });
    attempt("an export", [&] {
      QBuffer target;
      target.open(QIODevice::WriteOnly);
      exportDatabase(*database, target);
    });
    attempt("a replica", [&] {
      const QString path = shelf.filePath(u"replica of hostile.nsf"_s);
      createReplica(*database, path);
    });
    QFile::remove(shelf.filePath(u"replica of hostile.nsf"_s));
    attempt("a new note", [&] {
      Note note = noteWith(u"new"_s);
      notes.save(note);
    });
    attempt("a changed note", [&] {
      Note note;
      if (notes.read(documents[1], note)) notes.save(note);
    });
    attempt("a folder", [&] { addToFolder(*database, folder, {documents[2]}); });
    attempt("deletions", [&] {
      notes.remove(documents[2]);
      notes.remove(documents[3], false);
    });
    for (const NoteId one : {view, folder})
      attempt("a view that changed", [&] { ViewIndex(*database, one).refresh(); });
    attempt("the index of words that changed", [&] { refreshFullTextIndex(*database); });
    attempt("compacting", [&] { compact(*database); });
    database.reset();
  }

  void driveFlipped(qsizetype at, char flip) {
    SCOPED_TRACE(testing::Message() << "byte " << at << " of " << whole.size());
    QByteArray flipped = whole;
    flipped[at] = char(flipped[at] ^ flip);
    place(flipped);
    drive();
  }

  const QTemporaryDir shelf{inMemory()};
  QString file;
  QByteArray whole;
  NoteId view, folder;
  QVector<NoteId> documents;
  quint32 object = 0;
  int classPage = 0;  // of the index of classes
  int told = 0, toldAsDamage = 0;
};

TEST_F(HostileFile, AWholeOneTellsNothing) {
  place(whole);
  drive();
  EXPECT_EQ(told, 0);
}

TEST_F(HostileFile, FlippedBytesEndWithAnErrorOrWithWhatCanBeRead) {
  const qsizetype stride = qEnvironmentVariableIsSet("LENS_SOAK") ? 7 : 397;
  constexpr char kFlips[] = {char(0xFF), 0x01, char(0x80), 0x08};
  for (qsizetype at = 16; at < whole.size() && !HasFailure(); at += stride)
    driveFlipped(at, kFlips[(at / stride) % 4]);
  EXPECT_GT(toldAsDamage, 0);
}

// Listings go from class to class in this index. Among its bytes are those that tell a number from a text.
TEST_F(HostileFile, FlippedBitsInTheIndexOfClassesComeToAnEnd) {
  const qsizetype begin = (classPage - 1) * 512;
  ASSERT_GT(begin, 0);
  const bool both = qEnvironmentVariableIsSet("LENS_SOAK");
  // The entries of documents have odd lengths: every second byte is each one of some entry.
  for (qsizetype at = begin; at < begin + 512 && !HasFailure(); at += both ? 1 : 2)
    for (const int flip : {0x04, 0x08})
      if (whole[at] != 0 && (both || (at % 4 == 0) == (flip == 0x04))) driveFlipped(at, char(flip));
}

// Every column of every table, with a value of every kind.
TEST_F(HostileFile, AValueOfAnotherKindIsDamageOrPassedOver) {
  struct Column {
    const char* table;
    const char* name;
  };
  const Column columns[] = {{"note", "class"},
                            {"note", "unid"},
                            {"note", "parent"},
                            {"note", "sequence"},
                            {"note", "sequence_time"},
                            {"note", "created"},
                            {"note", "modified"},
                            {"note", "added"},
                            {"note", "accessed"},
                            {"note", "state"},
                            {"note", "change"},
                            {"note", "items"},
                            {"info", "value"},
                            {"object", "size"},
                            {"object", "chunks"},
                            {"object", "checksum"},
                            {"object_chunk", "number"},
                            {"object_chunk", "bytes"},
                            {"erased", "note"},
                            {"lineage", "stamps"},
                            {"folder_document", "folder"},
                            {"folder_document", "change"},
                            {"folder_document", "present"},
                            {"folder_document", "time"},
                            {"view_index", "digest"},
                            {"view_index", "change"},
                            {"view_index", "moment"},
                            {"view_index", "folder_change"},
                            {"view_index", "rows"},
                            {"view_block", "notes"},
                            {"view_note", "state"},
                            {"view_note", "rows"},
                            {"view_note", "parent"},
                            {"view_note", "unid"},
                            {"view_row", "level"},
                            {"view_row", "categories"},
                            {"view_row", "key"},
                            {"full_text_kept", "fields"},
                            {"full_text_field", "name"},
                            {"full_text_value", "kind"},
                            {"full_text_value", "value"},
                            {"full_text_span", "first"}};
  // A number and something else at each column, of two kinds by turns; LENS_SOAK tries all at each.
  const std::vector<const char*> byTurns[] = {{"'text'", "-1"}, {"x'FF'", "9223372036854775807"}};
  const std::vector<const char*> all = {
      "'text'",     "x'FF'", "-1", "9223372036854775807", "x''", "1.5", "-9223372036854775808",
      "4294967295", "1e300"};
  int number = 0;
  for (const Column& column : columns)
    for (const char* value : qEnvironmentVariableIsSet("LENS_SOAK") ? all : byTurns[number++ % 2]) {
      SCOPED_TRACE(testing::Message() << column.table << "." << column.name << " = " << value);
      for (const char* which : {"", " WHERE rowid % 2 = 0"}) {
        const bool plain = *which == 0;
        if (!plain && (qstrcmp(column.table, "note") != 0)) continue;
        change(QByteArray("UPDATE OR IGNORE ") + column.table + " SET " + column.name + " = " + value +
               which);
        drive();
      }
      if (HasFailure()) return;
    }
}

TEST_F(HostileFile, NumbersAtTheirEndAreNotCountedOn) {
  for (const char* number : {"9223372036854775807", "4611686018427387904", "-1"}) {
    change(QByteArray("UPDATE note SET change = ") + number + " WHERE id = 2298");
    drive();
    change(QByteArray("INSERT OR REPLACE INTO info VALUES ('highest change', ") + number + ")");
    attempt("opening", [&] { database = Database::open(file); });
    change(QByteArray("UPDATE folder_document SET change = ") + number);
    database = Database::open(file);
    told = 0;
    attempt("a folder", [&] { addToFolder(*database, folder, {documents[2]}); });
    EXPECT_EQ(told, 1) << number;
    change(QByteArray("UPDATE folder_document SET time = ") + number);
    drive();
  }
  for (const char* number : {"9223372036854775807", "4294967296", "2147483647"}) {
    change(QByteArray("INSERT OR REPLACE INTO info VALUES ('highest id', ") + number + ")");
    database = Database::open(file);
    told = 0;
    attempt("a new note", [&] {
      Note note = noteWith(u"new"_s);
      database->notes().save(note);
    });
    EXPECT_EQ(told, 1) << number;
    drive();
  }
}

TEST_F(HostileFile, TheHighestSequenceStaysTheHighest) {
  change("UPDATE note SET sequence = 4294967295");
  database = Database::open(file);
  Note note;
  ASSERT_TRUE(database->notes().read(documents[0], note));
  database->notes().save(note);
  EXPECT_EQ(note.header.sequence, std::numeric_limits<quint32>::max());
  database->notes().remove(documents[1]);
  NoteVersion version;
  ASSERT_TRUE(database->versions().findVersion(note.header.unid, version));
  EXPECT_EQ(version.sequence, std::numeric_limits<quint32>::max());
}

TEST_F(HostileFile, WhatThisProgramDoesNotMakeIsNeverRun) {
  const char* const schemas[] = {
      "CREATE TRIGGER t AFTER INSERT ON note BEGIN DELETE FROM note; END",
      "CREATE TRIGGER t AFTER UPDATE ON note BEGIN DELETE FROM note WHERE id <> new.id; END",
      "CREATE VIEW v AS SELECT * FROM note",
      "CREATE TABLE other (a)",
      "CREATE TABLE other (a DEFAULT (randomblob(1000000000)))",
      "CREATE INDEX other ON note (length(items))",
      "CREATE INDEX other ON note (hex(zeroblob(100000000))) WHERE id < 0",
      "CREATE VIRTUAL TABLE words USING fts5(a)",
      "DROP INDEX note_unid",
      "DROP INDEX note_class; CREATE INDEX note_class ON note (class)",
      "DROP TABLE lineage",
      "DROP TABLE folder_document; CREATE VIEW folder_document AS SELECT unid AS folder, unid AS document,"
      " 1 AS change, 1 AS present, 1 AS time FROM note",
      "DROP TABLE erased; CREATE TABLE erased (change INTEGER PRIMARY KEY, note INTEGER NOT NULL,"
      " more AS (hex(zeroblob(100000000))))",
      "DROP TABLE view_row; CREATE VIEW view_row AS SELECT 1 AS view, x'00' AS key, 1 AS level, x'' AS"
      " categories FROM note, note, note, note, note, note, note, note",
      "PRAGMA writable_schema = 1; UPDATE sqlite_master SET sql = replace(sql, 'state INTEGER', 'state') "
      "WHERE"
      " name = 'note'",
      "PRAGMA writable_schema = 1; UPDATE sqlite_master SET name = x'FF00' WHERE name = 'note_change'",
      "PRAGMA writable_schema = 1; UPDATE sqlite_master SET sql = 5 WHERE name = 'note_change'",
  };
  for (const char* const schema : schemas) {
    SCOPED_TRACE(schema);
    change(schema);
    const QByteArray before = contentOf(file);
    QString why;
    EXPECT_EQ(errorNumber([&] { Database::open(file); }, &why), enginefault::Damaged);
    EXPECT_TRUE(why.contains(file)) << why.toStdString();
    EXPECT_EQ(errorNumber([&] { Database::infoOf(file); }), enginefault::Damaged);
    EXPECT_EQ(contentOf(file), before);
    EXPECT_LE(ticks, 100) << "hardly a step is taken";
  }
}

TEST_F(HostileFile, DerivedTablesOfAnotherKindAreMadeAnew) {
  for (const char* const schema :
       {"DROP TABLE view_row; CREATE TABLE view_row (view INTEGER, row BLOB DEFAULT (zeroblob(1000000000)))",
        "DROP TABLE view_index; CREATE TABLE view_index (view INTEGER PRIMARY KEY, digest BLOB)",
        "DROP TABLE full_text; CREATE TABLE full_text (words, fields)",
        "DROP TABLE full_text_kept; CREATE TABLE full_text_kept (a, b AS (zeroblob(1000000000)))"}) {
    SCOPED_TRACE(schema);
    change(schema);
    drive();
    database = Database::open(file);
    ViewIndex index(*database, folder);
    index.refresh();
    EXPECT_GT(index.count(), 0);
    createFullTextIndex(*database);
    EXPECT_FALSE(fullTextSearch(*database, u"pump", 0).isEmpty());
    change(schema);
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner));
    EXPECT_EQ(errorNumber([&] { Database::open(file); }), enginefault::Damaged);
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
  }
}

// Several documents under one UNID that answer it, and so each other: their index goes for a moment.
TEST_F(HostileFile, AnswersInACircleComeToAnEnd) {
  change(
      "CREATE TEMP TABLE kept AS SELECT * FROM sqlite_master WHERE name = 'note_unid';"
      "PRAGMA writable_schema = 1; DELETE FROM sqlite_master WHERE name = 'note_unid';"
      "PRAGMA writable_schema = RESET;"
      "UPDATE note SET unid = (SELECT unid FROM note WHERE id = 2306), parent = (SELECT unid FROM note WHERE "
      "id"
      " = 2306) WHERE class = 1 AND id > 2306;"
      "DELETE FROM view_index; DELETE FROM view_note; DELETE FROM view_block; DELETE FROM view_row;"
      "PRAGMA writable_schema = 1; INSERT INTO sqlite_master SELECT * FROM kept;"
      "PRAGMA writable_schema = RESET");
  database = Database::open(file);
  ViewIndex(*database, view).refresh();
  ticks = 0;
  drive();
}

}  // namespace
}  // namespace lens::testbed
