// What is done with a database as a whole: compaction, the step to a newer schema; and folders.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "embedded/store/compaction.h"
#include "embedded/store/database.h"
#include "embedded/views/folder_documents.h"
#include "piece_of_work.h"

namespace lens::testbed {
namespace {

using namespace Qt::StringLiterals;

constexpr int kDocuments = 6;

QString fileIn(const QString& directory) {
  return directory + u"/letters.nsf"_s;
}

Note letter(int number) {
  Note note;
  note.add(u"Subject"_s, itemflag::Summary, textValue(QString::number(number)));
  note.add(u"Body"_s, 0, textValue(QString(9'000, QChar(u'0' + number))));
  return note;
}

void addFile(Database& database, Note& note) {
  FileObject file;
  file.objectId = database.objects().begin();
  database.objects().append(file.objectId, QByteArray(60'000, 'f'));
  database.objects().finish(file.objectId);
  file.name = u"a.bin"_s;
  note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(file));
}

// The subjects of the documents; one that is not whole fails the test.
QStringList lettersIn(const Database& database) {
  QStringList subjects;
  database.notes().scan(noteclass::Document, [&](const Note& note) {
    const QString subject = note.text(u"Subject");
    subjects << subject;
    EXPECT_EQ(note.text(u"Body"), QString(9'000, subject[0]));
    FileObject file;
    const Item* item = note.find(u"$FILE");
    if (item && readFileObject(item->data(), file)) {
      EXPECT_EQ(database.objects().size(file.objectId), 60'000);
    }
    return true;
  });
  return subjects;
}

// Every second document is gone, its attachment is not.
void prepareWaste(const QString& directory) {
  const auto database = Database::create(fileIn(directory), {});
  for (int number = 0; number < kDocuments; ++number) {
    Database::Transaction transaction(*database);
    Note note = letter(number);
    addFile(*database, note);
    database->notes().save(note);
    if (number % 2) database->notes().remove(note.header.id);
    transaction.commit();
  }
}

const RegisterPiece compacting({"Compacting", prepareWaste,
                                [](const QString& directory, const auto& stepDone) {
                                  compact(*Database::open(fileIn(directory)));
                                  stepDone();
                                },
                                [](const QString& directory, int stepsDone) {
                                  const auto database = Database::open(fileIn(directory));
                                  EXPECT_EQ(lettersIn(*database), QStringList({u"0"_s, u"2"_s, u"4"_s}));
                                  EXPECT_TRUE(stepsDone == 0 || database->size() < kDocuments * 60'000);
                                  compact(*database);
                                  EXPECT_EQ(lettersIn(*database).size(), 3);
                                }});

// As the first schema left it.
void prepareFirstSchema(const QString& directory) {
  {
    const auto database = Database::create(fileIn(directory), {});
    for (int number = 0; number < 3; ++number) {
      Note note = letter(number);
      database->notes().save(note);
    }
  }
  sqlite3* handle = nullptr;
  ASSERT_EQ(sqlite3_open(fileIn(directory).toUtf8().constData(), &handle), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(handle, "DROP TABLE erased; DROP TABLE lineage; PRAGMA user_version = 1", nullptr,
                         nullptr, nullptr),
            SQLITE_OK);
  sqlite3_close(handle);
}

const RegisterPiece upgrading({"BringingAnOldDatabaseUpToDate", prepareFirstSchema,
                               [](const QString& directory, const auto& stepDone) {
                                 const auto database = Database::open(fileIn(directory));
                                 stepDone();
                                 Note note = letter(3);
                                 database->notes().save(note);
                                 stepDone();
                               },
                               [](const QString& directory, int stepsDone) {
                                 const auto database = Database::open(fileIn(directory));
                                 const QStringList letters = lettersIn(*database);
                                 EXPECT_GE(letters.size(), stepsDone == 2 ? 4 : 3);
                                 EXPECT_LE(letters.size(), stepsDone == 0 ? 3 : 4);
                                 // What the old schema had no place for works now.
                                 const NoteId first = database->notes().list(noteclass::Document).first().id;
                                 const qint64 seen = database->versions().changeSequence();
                                 EXPECT_TRUE(database->notes().remove(first, false));
                                 EXPECT_EQ(database->versions().changesSince(seen).size(), 1);
                               }});

void prepareFolder(const QString& directory) {
  const auto database = Database::create(fileIn(directory), {});
  Note folder;
  folder.header.noteClass = noteclass::View;
  folder.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Kept"));
  folder.add(u"$Flags"_s, itemflag::Summary, textValue(u"F"));
  database->notes().save(folder);
  for (int number = 0; number < kDocuments; ++number) {
    Note note = letter(number);
    database->notes().save(note);
  }
}

const RegisterPiece filing({"PuttingDocumentsIntoAFolder", prepareFolder,
                            [](const QString& directory, const auto& stepDone) {
                              const auto database = Database::open(fileIn(directory));
                              const NoteId folder = database->notes().list(noteclass::View).first().id;
                              QVector<NoteId> ids;
                              for (const NoteSummary& note : database->notes().list(noteclass::Document))
                                ids.push_back(note.id);
                              addToFolder(*database, folder, ids);
                              stepDone();
                              removeFromFolder(*database, folder, ids.first(3));
                              stepDone();
                              database->notes().remove(ids.last());
                              stepDone();
                            },
                            [](const QString& directory, int stepsDone) {
                              const auto database = Database::open(fileIn(directory));
                              EXPECT_GE(lettersIn(*database).size(), kDocuments - 1);
                              const Unid folder = database->notes().list(noteclass::View).first().unid;
                              // All or none of each step.
                              const QVector<qsizetype> sizes{0, kDocuments, kDocuments - 3, kDocuments - 4};
                              const qsizetype size = folderDocuments(*database, folder).size();
                              EXPECT_TRUE(size == sizes[stepsDone] || size == sizes.value(stepsDone + 1, -1))
                                  << size << " behind step " << stepsDone;
                            }});

}  // namespace
}  // namespace lens::testbed
