// Database files from elsewhere: a small one with the fuzzer's changes, given as places and bytes. Whatever
// they say, everything that reads a file comes to an end, with an error that names the file or with what can
// be read.
#include <sqlite3.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "check.h"
#include "embedded/dxl/dxl_exporter.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/search/full_text.h"
#include "embedded/search/selection.h"
#include "embedded/store/database.h"
#include "embedded/views/view_index.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr char kContent[] =
    "<database>"
    "<view name='All' showresponsehierarchy='true' showinmenu='true'>"
    "<code event='selection'><formula>SELECT @All</formula></code>"
    "<column itemname='Subject' sort='ascending'/><column itemname='Kind' categorized='true' "
    "sort='ascending'/></view>"
    "<document form='Memo'><item name='Subject'><text>pump one</text></item>"
    "<item name='Kind'><textlist><text>a</text><text>b</text></textlist></item>"
    "<item name='Number'><number>3</number></item>"
    "<item name='Body'><richtext><pardef id='1'/><par def='1'>Some text of it</par></richtext></item>"
    "<item name='$FILE' summary='true'><object><file name='a.txt' hosttype='msdos'>"
    "<filedata>YWJjZGVmZ2hpamtsbW5vcA==</filedata></file></object></item></document>"
    "<document form='Memo'><item name='Subject'><text>pump two</text></item>"
    "<item name='Day'><datetime>20240311T081244,00+01</datetime></item></document>"
    "</database>";

struct World {
  QTemporaryDir shelf{(QDir(u"/dev/shm"_s).exists() ? u"/dev/shm"_s : QDir::tempPath()) + u"/lens-XXXXXX"_s};
  QString path = shelf.filePath(u"hostile.nsf"_s);
  QByteArray whole;

  World() {
    const QString dxl = shelf.filePath(u"content.dxl"_s);
    write(dxl, kContent);
    {
      const auto database = Database::create(path, {});
      ImportReport report;
      DxlImporter(*database).importFile(dxl, report);
      check(report.failed.isEmpty(), "The content does not come in.", report.failed.join(u' '));
      for (const NoteSummary& view : database->notes().list(noteclass::View))
        ViewIndex(*database, view.id).refresh();
      createFullTextIndex(*database);
      // Small pages make a small file, in which most bytes mean something.
      for (const char* sql : {"PRAGMA journal_mode = DELETE", "PRAGMA page_size = 512", "VACUUM"})
        sqlite3_exec(database->handle(), sql, nullptr, nullptr, nullptr);
    }
    QFile file(path);
    check(file.open(QIODevice::ReadOnly), "The file is gone.");
    whole = file.readAll();
  }
  static void write(const QString& name, const QByteArray& bytes) {
    QFile file(name);
    check(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size(), "No room.");
  }
};

template <class Work>
void attempt(const Work& work) {
  try {
    work();
  } catch (const RuntimeError& error) {
    check(error.description().contains(u"hostile.nsf"), "An error that names no file.", error.description());
  }
}

void readEverything(Database& database) {
  NoteStore& notes = database.notes();
  QVector<NoteSummary> all;
  attempt([&] { all = notes.list(0xFFFF); });
  for (const NoteSummary& one : std::as_const(all))
    attempt([&] {
      Note note;
      notes.read(one.id, note);
    });
  attempt([&] { notes.scan(0xFFFF, [](const Note&) { return true; }); });
  attempt([&] {
    formula::MachineEnvironment environment;
    selectDocuments(database, {searchFormula(database, u"Number > 2", environment), environment});
  });
  attempt([&] { fullTextSearch(database, u"pump AND [Number] > 1", 0); });
  for (const NoteSummary& one : std::as_const(all))
    if (one.noteClass == noteclass::View)
      attempt([&] {
        ViewIndex index(database, one.id);
        index.refresh();
        index.lines();
        index.documents();
      });
  attempt([&] {
    QBuffer target;
    target.open(QIODevice::WriteOnly);
    exportDatabase(database, target);
  });
  attempt([&] {
    Note note;
    if (!all.isEmpty() && notes.read(all.last().id, note)) notes.save(note);
  });
  attempt([&] { refreshFullTextIndex(database); });
}

// Three bytes of a change say where, the fourth which bits.
void tryChanges(QByteArrayView input) {
  static World world;
  QByteArray bytes = world.whole;
  for (qsizetype i = 0; i + 4 <= input.size(); i += 4) {
    const auto at = [&](qsizetype place) { return quint32(quint8(input[place])); };
    const quint32 where = at(i) | at(i + 1) << 8 | at(i + 2) << 16;
    bytes[qsizetype(where % quint32(bytes.size()))] ^= input[i + 3];
  }
  for (const QString& suffix : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
    QFile::remove(world.path + suffix);
  World::write(world.path, bytes);
  attempt([&] { Database::infoOf(world.path); });
  std::shared_ptr<Database> database;
  attempt([&] { database = Database::open(world.path); });
  if (database) readEverything(*database);
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryChanges(QByteArrayView(data, qsizetype(size)));
  return 0;
}
