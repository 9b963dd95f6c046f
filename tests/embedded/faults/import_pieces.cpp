// Importing DXL: one file is one transaction, or as good as one.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QFile>

#include "embedded/dxl/dxl_importer.h"
#include "embedded/store/database.h"
#include "piece_of_work.h"

namespace lens::testbed {
namespace {

constexpr int kFiles = 3;
constexpr int kNotesOfAFile = 5;

QString fileIn(const QString& directory) {
  return directory + QStringLiteral("/target.nsf");
}

QString exportIn(const QString& directory, int number) {
  return QStringLiteral("%1/in%2.dxl").arg(directory).arg(number);
}

void writeExport(const QString& path, int number) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("<database xmlns='http://www.lotus.com/dxl'>");
  for (int note = 0; note < kNotesOfAFile; ++note) {
    file.write("<document><item name='File'><text>" + QByteArray::number(number) + "</text></item>");
    file.write("<item name='Text' summary='false'><text>" + QByteArray(9000, 't') + "</text></item>");
    file.write("<item name='$FILE' summary='true'><object><file name='a.bin' size='3000'><filedata>" +
               QByteArray(3000, 'f').toBase64() + "</filedata></file></object></item></document>");
  }
  file.write("</database>");
}

// How many notes of each file there are; each must be whole.
QVector<int> notesOfFiles(const Database& database) {
  QVector<int> notes(kFiles);
  database.notes().scan(noteclass::Document, [&](const Note& note) {
    ++notes[note.text(u"File").toInt()];
    FileObject file;
    const Item* item = note.find(u"$FILE");
    EXPECT_TRUE(item && readFileObject(item->data(), file) && database.objects().size(file.objectId) == 3000);
    EXPECT_EQ(note.text(u"Text").size(), 9000);
    return true;
  });
  return notes;
}

const RegisterPiece importing(
    {"ImportingFiles",
     [](const QString& directory) {
       Database::create(fileIn(directory), {});
       for (int number = 0; number < kFiles; ++number) writeExport(exportIn(directory, number), number);
     },
     [](const QString& directory, const auto& stepDone) {
       const auto database = Database::open(fileIn(directory));
       DxlImporter importer(*database);
       for (int number = 0; number < kFiles; ++number) {
         ImportReport report;
         importer.importFile(exportIn(directory, number), report);
         // The importer tells of a file that failed and would go on with the next one.
         if (!report.failed.isEmpty()) throw RuntimeError(enginefault::NotSaved, report.failed.first());
         stepDone();
       }
     },
     [](const QString& directory, int stepsDone) {
       const auto database = Database::open(fileIn(directory));
       const QVector<int> notesOf = notesOfFiles(*database);
       for (int number = 0; number < kFiles; ++number) {
         const int expected = number < stepsDone ? kNotesOfAFile : 0;
         EXPECT_TRUE(notesOf[number] == expected || (number == stepsDone && notesOf[number] == kNotesOfAFile))
             << "file " << number << ": " << notesOf[number] << " notes";
       }
     }});

// Small files share a transaction, yet each is whole or absent.
const RegisterPiece importingFolder(
    {"ImportingAFolder",
     [](const QString& directory) {
       Database::create(fileIn(directory), {});
       for (int number = 0; number < kFiles; ++number) writeExport(exportIn(directory, number), number);
     },
     [](const QString& directory, const auto& stepDone) {
       const auto database = Database::open(fileIn(directory));
       QStringList files;
       for (int number = 0; number < kFiles; ++number) files.append(exportIn(directory, number));
       ImportReport report;
       DxlImporter(*database).importFiles(files, report);
       if (!report.failed.isEmpty()) throw RuntimeError(enginefault::NotSaved, report.failed.first());
       stepDone();
     },
     [](const QString& directory, int stepsDone) {
       const auto database = Database::open(fileIn(directory));
       const QVector<int> notes = notesOfFiles(*database);
       for (const int ofFile : notes)
         EXPECT_TRUE(ofFile == kNotesOfAFile || (ofFile == 0 && stepsDone == 0)) << ofFile;
     }});

qint64 countOf(const Database& database, const char* sql) {
  sqlite3_stmt* statement = nullptr;
  EXPECT_EQ(sqlite3_prepare_v2(database.handle(), sql, -1, &statement, nullptr), SQLITE_OK) << sql;
  const qint64 count = sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : -1;
  sqlite3_finalize(statement);
  return count;
}

// Files that are taken for large ones, in a transaction for each element: new notes and replaced ones. What
// is not whole leaves no row, not even a hidden one.
const RegisterPiece importingInTurns(
    {"ImportingInTurns",
     [](const QString& directory) {
       const auto database = Database::create(fileIn(directory), {});
       Note note;
       note.header.unid = Unid::fromText(QStringLiteral("000000000000000000000000000000AB"));
       note.add(QStringLiteral("File"), 0, textValue(u"0"));
       note.add(QStringLiteral("Old"), 0, textValue(u"yes"));
       database->notes().save(note);
       for (int number = 0; number < kFiles; ++number) {
         writeExport(exportIn(directory, number), number);
         QFile file(exportIn(directory, number));
         ASSERT_TRUE(file.open(QIODevice::ReadWrite));
         QByteArray xml = file.readAll();
         xml.replace(
             "</database>",
             "<acl/><document><noteinfo unid='000000000000000000000000000000AB'/><item name='Last'><text>" +
                 QByteArray::number(number) + "</text></item></document></database>");
         file.resize(0);
         file.seek(0);
         file.write(xml);
       }
     },
     [](const QString& directory, const auto& stepDone) {
       const auto database = Database::open(fileIn(directory));
       DxlImporter importer(*database);
       importer.setLarge({1, {0, 0}});
       for (int number = 0; number < kFiles; ++number) {
         ImportReport report;
         importer.importFile(exportIn(directory, number), report);
         if (!report.failed.isEmpty()) throw RuntimeError(enginefault::NotSaved, report.failed.first());
         stepDone();
       }
     },
     [](const QString& directory, int stepsDone) {
       const auto database = Database::open(fileIn(directory));
       Note marked;
       ASSERT_TRUE(database->notes().read(Unid::fromText(QStringLiteral("000000000000000000000000000000AB")),
                                          marked));
       const int done = marked.has(u"Old") ? 0 : 1 + marked.text(u"Last").toInt();
       EXPECT_TRUE(done == stepsDone || done == stepsDone + 1) << done << " after " << stepsDone;
       const int documents = done * kNotesOfAFile;
       EXPECT_EQ(database->notes().noteCount(noteclass::Document), 1 + documents);
       EXPECT_EQ(database->notes().noteCount(noteclass::Acl), done ? 1 : 0);
       EXPECT_EQ(countOf(*database, "SELECT count(*) FROM object"), documents);
       EXPECT_EQ(countOf(*database, "SELECT count(*) FROM object_chunk"), documents);
       EXPECT_EQ(countOf(*database, "SELECT count(*) FROM note WHERE class & 1"), 1 + documents);
       EXPECT_EQ(countOf(*database, "SELECT count(*) FROM info WHERE key LIKE 'arriving%'"), 0);
       EXPECT_EQ(countOf(*database, "PRAGMA user_version"), 4);
     }});

}  // namespace
}  // namespace lens::testbed
