// Saving, changing, deleting and attaching, straight in the store.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>

#include "embedded/store/database.h"
#include "piece_of_work.h"

namespace lens::testbed {
namespace {

constexpr int kSteps = 4;
constexpr qsizetype kFileSize = 600'000;

QString fileIn(const QString& directory) {
  return directory + QStringLiteral("/letters.nsf");
}

// A document of several pages, whose parts all tell the same number: half of it would show.
Note letter(int number) {
  Note note;
  const QString text = QString::number(number);
  note.add(QStringLiteral("Subject"), itemflag::Summary, textValue(text));
  note.add(QStringLiteral("Body"), 0, textValue(QString(20'000, text[0])));
  note.add(QStringLiteral("End"), itemflag::Summary, textValue(text));
  return note;
}

void expectWhole(const Note& note) {
  const QString subject = note.text(u"Subject");
  ASSERT_EQ(note.items.size(), 3);
  EXPECT_EQ(note.text(u"Body"), QString(20'000, subject[0]));
  EXPECT_EQ(note.text(u"End"), subject);
}

QVector<Note> lettersIn(const Database& database) {
  QVector<Note> notes;
  database.notes().scan(noteclass::Document, [&](const Note& note) {
    notes.push_back(note);
    return true;
  });
  return notes;
}

void prepareLetters(const QString& directory) {
  const auto database = Database::create(fileIn(directory), {});
  for (int number = 0; number < kSteps; ++number) {
    Note note = letter(number);
    database->notes().save(note);
  }
}

const RegisterPiece saving({"Saving",
                            [](const QString& directory) { Database::create(fileIn(directory), {}); },
                            [](const QString& directory, const auto& stepDone) {
                              const auto database = Database::open(fileIn(directory));
                              for (int number = 0; number < kSteps; ++number) {
                                Note note = letter(number);
                                database->notes().save(note);
                                stepDone();
                              }
                            },
                            [](const QString& directory, int stepsDone) {
                              const auto database = Database::open(fileIn(directory));
                              const QVector<Note> notes = lettersIn(*database);
                              EXPECT_GE(notes.size(), stepsDone);
                              EXPECT_LE(notes.size(), stepsDone + 1);
                              for (int number = 0; number < notes.size(); ++number) {
                                EXPECT_EQ(notes[number].text(u"Subject"), QString::number(number));
                                expectWhole(notes[number]);
                              }
                            }});

const RegisterPiece changing({"Changing", prepareLetters,
                              [](const QString& directory, const auto& stepDone) {
                                const auto database = Database::open(fileIn(directory));
                                for (Note& note : lettersIn(*database)) {
                                  note.items = letter(note.text(u"Subject").toInt() + 5).items;
                                  database->notes().save(note);
                                  stepDone();
                                }
                              },
                              [](const QString& directory, int stepsDone) {
                                const auto database = Database::open(fileIn(directory));
                                const QVector<Note> notes = lettersIn(*database);
                                ASSERT_EQ(notes.size(), kSteps);
                                for (int number = 0; number < kSteps; ++number) {
                                  expectWhole(notes[number]);
                                  const int subject = notes[number].text(u"Subject").toInt();
                                  const bool changed = subject == number + 5;
                                  EXPECT_TRUE(changed || subject == number) << subject;
                                  EXPECT_TRUE(number == stepsDone || changed == (number < stepsDone));
                                  EXPECT_EQ(notes[number].header.sequence, subject >= 5 ? 2u : 1u);
                                }
                              }});

const RegisterPiece batch({"ABatchInOneTransaction", prepareLetters,
                           [](const QString& directory, const auto& stepDone) {
                             const auto database = Database::open(fileIn(directory));
                             Database::Transaction transaction(*database);
                             for (Note& note : lettersIn(*database)) {
                               note.items = letter(note.text(u"Subject").toInt() + 5).items;
                               database->notes().save(note);
                             }
                             transaction.commit();
                             stepDone();
                           },
                           [](const QString& directory, int stepsDone) {
                             const auto database = Database::open(fileIn(directory));
                             int changed = 0;
                             for (const Note& note : lettersIn(*database)) {
                               expectWhole(note);
                               changed += note.text(u"Subject").toInt() >= 5;
                             }
                             EXPECT_TRUE(changed == kSteps || (changed == 0 && stepsDone == 0)) << changed;
                           }});

const RegisterPiece deleting({"Deleting", prepareLetters,
                              [](const QString& directory, const auto& stepDone) {
                                const auto database = Database::open(fileIn(directory));
                                for (const NoteSummary& note : database->notes().list(noteclass::Document)) {
                                  database->notes().remove(note.id, note.id.value() % 8 == 2);
                                  stepDone();
                                }
                              },
                              [](const QString& directory, int stepsDone) {
                                const auto database = Database::open(fileIn(directory));
                                const QVector<Note> notes = lettersIn(*database);
                                EXPECT_LE(notes.size(), kSteps - stepsDone);
                                EXPECT_GE(notes.size(), kSteps - stepsDone - 1);
                                for (const Note& note : notes) expectWhole(note);
                              }});

QByteArray bytesOf(int number) {
  return QByteArray(kFileSize, char('a' + number));
}

const RegisterPiece attaching({"Attaching",
                               [](const QString& directory) { Database::create(fileIn(directory), {}); },
                               [](const QString& directory, const auto& stepDone) {
                                 const auto database = Database::open(fileIn(directory));
                                 for (int number = 0; number < 2; ++number) {
                                   QByteArray bytes = bytesOf(number);
                                   QBuffer source(&bytes);
                                   source.open(QIODevice::ReadOnly);
                                   Database::Transaction transaction(*database);
                                   FileObject file;
                                   file.objectId = database->objects().add(source).id;
                                   file.name = QStringLiteral("report.pdf");
                                   Note note = letter(number);
                                   note.items[2] = {QStringLiteral("$FILE"), 0, fileObjectValue(file)};
                                   database->notes().save(note);
                                   transaction.commit();
                                   stepDone();
                                 }
                               },
                               [](const QString& directory, int stepsDone) {
                                 const auto database = Database::open(fileIn(directory));
                                 const QVector<Note> notes = lettersIn(*database);
                                 EXPECT_GE(notes.size(), stepsDone);
                                 EXPECT_LE(notes.size(), stepsDone + 1);
                                 for (int number = 0; number < notes.size(); ++number) {
                                   FileObject file;
                                   const Item* item = notes[number].find(u"$FILE");
                                   ASSERT_TRUE(item && readFileObject(item->data(), file));
                                   QBuffer target;
                                   target.open(QIODevice::WriteOnly);
                                   database->objects().read(file.objectId, target);
                                   EXPECT_EQ(target.data(), bytesOf(number));
                                 }
                               }});

const RegisterPiece creating({"MakingADatabase", [](const QString&) {},
                              [](const QString& directory, const auto& stepDone) {
                                DatabaseInfo info;
                                info.title = QStringLiteral("Letters");
                                Database::create(fileIn(directory), info);
                                stepDone();
                              },
                              [](const QString& directory, int stepsDone) {
                                if (!QFile::exists(fileIn(directory))) {
                                  EXPECT_EQ(stepsDone, 0);
                                  return;
                                }
                                const auto database = Database::open(fileIn(directory));
                                const QString title = database->info().title;
                                EXPECT_TRUE(stepsDone == 0 || title == QStringLiteral("Letters"));
                              }});

}  // namespace
}  // namespace lens::testbed
