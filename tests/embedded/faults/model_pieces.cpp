// What the tool does through the object model: batches, copies, removals, replicas, indexes.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <algorithm>

#include "embedded/format/source_formula.h"
#include "embedded/model/embedded_gateway.h"
#include "embedded/search/full_text.h"
#include "embedded/store/database.h"
#include "embedded/workspace/workspace.h"
#include "piece_of_work.h"

namespace lens::testbed {
namespace {

using namespace Qt::StringLiterals;

constexpr int kDocuments = 4;
constexpr qsizetype kPages = 9'000;

// A workspace in the directory, and the databases of its local machine by name.
class Desk {
 public:
  explicit Desk(const QString& directory)
      : workspace(Workspace::open(directory + u"/desk"_s, Regional(QLocale::c()))), gateway_(workspace) {}

  Object database(const QString& name) {
    return gateway_.create(u"Notes.NotesSession"_s).call(u"GETDATABASE"_s, u"", name).object();
  }
  std::shared_ptr<Database> store(const QString& name) { return workspace->database({}, name); }
  QString file(const QString& name) const { return workspace->dataDirectory() + u'/' + name; }

  std::shared_ptr<Workspace> workspace;

 private:
  EmbeddedGateway gateway_;
};

void add(Database& database, const QString& subject, const QByteArray& attachment = {}) {
  Database::Transaction transaction(database);
  Note note;
  note.add(u"Form"_s, itemflag::Summary, textValue(u"Letter"_s));
  note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
  note.add(u"Pages"_s, 0, textValue(QString(kPages, u'p')));
  if (!attachment.isEmpty()) {
    FileObject file;
    file.objectId = database.objects().begin();
    database.objects().append(file.objectId, attachment);
    database.objects().finish(file.objectId);
    file.name = u"report.pdf"_s;
    file.size = quint32(attachment.size());
    note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(file));
  }
  database.notes().save(note);
  transaction.commit();
}

void prepareLetters(const QString& directory) {
  Desk desk(directory);
  DatabaseInfo info;
  info.replicaId = u"C1257A0000112233"_s;
  const auto store = desk.workspace->createDatabase({}, u"letters.nsf"_s, info);
  for (int number = 0; number < kDocuments; ++number)
    add(*store, u"letter %1"_s.arg(number), QByteArray(20'000, char('a' + number)));
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Letters"_s));
  view.add(u"$Formula"_s, itemflag::Summary, sourceFormulaValue(u"SELECT Form = \"Letter\""_s));
  store->notes().save(view);
}

void prepareTwo(const QString& directory) {
  prepareLetters(directory);
  Desk(directory).workspace->createDatabase({}, u"archive.nsf"_s, {});
}

// The subjects of all letters; a letter that is not whole fails the test.
QStringList lettersIn(const Database& database) {
  QStringList subjects;
  database.notes().scan(noteclass::Document, [&](const Note& note) {
    subjects << note.text(u"Subject");
    EXPECT_EQ(note.text(u"Pages").size(), kPages);
    FileObject file;
    const Item* item = note.find(u"$FILE");
    EXPECT_TRUE(item && readFileObject(item->data(), file) &&
                database.objects().size(file.objectId) == 20'000);
    return true;
  });
  return subjects;
}

Object allLetters(const Object& database) {
  return database.call(u"SEARCH"_s, u"Form = \"Letter\""_s, Value(Object()), 0).object();
}

template <class Visit>
void eachOf(const Object& collection, const Visit& visit) {
  Object document = collection.call(u"GETFIRSTDOCUMENT"_s).object();
  while (document) {
    visit(document);
    document = collection.call(u"GETNEXTDOCUMENT"_s, document).object();
  }
}

const RegisterPiece batch({"ReplacingAnItemInEachDocument", prepareLetters,
                           [](const QString& directory, const auto& stepDone) {
                             Desk desk(directory);
                             eachOf(allLetters(desk.database(u"letters.nsf"_s)), [&](const Object& document) {
                               document.call(u"REPLACEITEMVALUE"_s, u"Subject"_s, u"changed"_s);
                               document.call(u"SAVE"_s, true, false, true);
                               stepDone();
                             });
                           },
                           [](const QString& directory, int stepsDone) {
                             const QStringList subjects = lettersIn(*Desk(directory).store(u"letters.nsf"_s));
                             ASSERT_EQ(subjects.size(), kDocuments);
                             const qsizetype changed = subjects.count(u"changed"_s);
                             EXPECT_TRUE(changed == stepsDone || changed == stepsDone + 1) << changed;
                             for (qsizetype place = 0; place < changed; ++place)
                               EXPECT_EQ(subjects[place], u"changed"_s);
                           }});

const RegisterPiece removing({"RemovingAllOfACollection", prepareLetters,
                              [](const QString& directory, const auto& stepDone) {
                                Desk desk(directory);
                                allLetters(desk.database(u"letters.nsf"_s)).call(u"REMOVEALL"_s, true);
                                stepDone();
                              },
                              [](const QString& directory, int stepsDone) {
                                const qsizetype left =
                                    lettersIn(*Desk(directory).store(u"letters.nsf"_s)).size();
                                EXPECT_TRUE(left == 0 || (left == kDocuments && stepsDone == 0)) << left;
                              }});

const RegisterPiece copying({"CopyingToADatabase", prepareTwo,
                             [](const QString& directory, const auto& stepDone) {
                               Desk desk(directory);
                               const Object target = desk.database(u"archive.nsf"_s);
                               eachOf(allLetters(desk.database(u"letters.nsf"_s)),
                                      [&](const Object& document) {
                                        document.call(u"COPYTODATABASE"_s, target);
                                        stepDone();
                                      });
                             },
                             [](const QString& directory, int stepsDone) {
                               Desk desk(directory);
                               EXPECT_EQ(lettersIn(*desk.store(u"letters.nsf"_s)).size(), kDocuments);
                               const qsizetype copies = lettersIn(*desk.store(u"archive.nsf"_s)).size();
                               EXPECT_TRUE(copies == stepsDone || copies == stepsDone + 1) << copies;
                             }});

const RegisterPiece replica(
    {"MakingAReplica", prepareLetters,
     [](const QString& directory, const auto& stepDone) {
       Desk desk(directory);
       desk.database(u"letters.nsf"_s).call(u"CREATEREPLICA"_s, u"", u"copies/letters.nsf"_s);
       stepDone();
     },
     [](const QString& directory, int stepsDone) {
       Desk desk(directory);
       EXPECT_EQ(lettersIn(*desk.store(u"letters.nsf"_s)).size(), kDocuments);
       const bool made = QFile::exists(desk.file(u"copies/letters.nsf"_s));
       EXPECT_TRUE(made || stepsDone == 0);
       if (!made) return;
       EXPECT_EQ(lettersIn(*desk.store(u"copies/letters.nsf"_s)).size(), kDocuments);
     }});

// Two replicas that have both gone on: letters of their own, one changed here, one deleted there.
void prepareReplicas(const QString& directory) {
  prepareLetters(directory);
  Desk desk(directory);
  desk.database(u"letters.nsf"_s).call(u"CREATEREPLICA"_s, u"", u"copy.nsf"_s);
  const auto here = desk.store(u"letters.nsf"_s), there = desk.store(u"copy.nsf"_s);
  add(*here, u"from here"_s, QByteArray(20'000, 'h'));
  add(*there, u"from there"_s, QByteArray(20'000, 't'));
  const QVector<NoteSummary> notes = here->notes().list(noteclass::Document);
  Note changed, deleted;
  ASSERT_TRUE(here->notes().read(notes[0].unid, changed) && there->notes().read(notes[1].unid, deleted));
  changed.find(u"Subject")->value = textValue(u"changed here"_s);
  here->notes().save(changed);
  there->notes().remove(deleted.header.id);
}

const RegisterPiece replicating(
    {"Replicating", prepareReplicas,
     [](const QString& directory, const auto& stepDone) {
       Desk desk(directory);
       desk.database(u"letters.nsf"_s).call(u"REPLICATE"_s, u"");
       stepDone();
     },
     [](const QString& directory, int) {
       Desk desk(directory);
       lettersIn(*desk.store(u"letters.nsf"_s));
       lettersIn(*desk.store(u"copy.nsf"_s));
       // Whatever had arrived: the next replication brings the rest.
       desk.database(u"letters.nsf"_s).call(u"REPLICATE"_s, u"");
       QStringList expected{u"changed here"_s, u"letter 2"_s, u"letter 3"_s, u"from here"_s, u"from there"_s};
       QStringList here = lettersIn(*desk.store(u"letters.nsf"_s));
       QStringList there = lettersIn(*desk.store(u"copy.nsf"_s));
       for (QStringList* list : {&expected, &here, &there}) list->sort();
       EXPECT_EQ(here.join(u", "), expected.join(u", "));
       EXPECT_EQ(there.join(u", "), expected.join(u", "));
     }});

QStringList subjectsOfView(const Object& database) {
  QStringList subjects;
  const Object view = database.call(u"GETVIEW"_s, u"Letters"_s).object();
  Object document = view.call(u"GETFIRSTDOCUMENT"_s).object();
  while (document) {
    subjects << document.call(u"GETITEMVALUE"_s, u"Subject"_s).at(0).text();
    document = view.call(u"GETNEXTDOCUMENT"_s, document).object();
  }
  return subjects;
}

const RegisterPiece viewing({"BringingAViewUpToDate", prepareLetters,
                             [](const QString& directory, const auto& stepDone) {
                               Desk desk(directory);
                               const Object database = desk.database(u"letters.nsf"_s);
                               subjectsOfView(database);
                               stepDone();
                               add(*desk.store(u"letters.nsf"_s), u"another"_s, QByteArray(20'000, 'x'));
                               subjectsOfView(database);
                               stepDone();
                             },
                             [](const QString& directory, int stepsDone) {
                               Desk desk(directory);
                               QStringList stored = lettersIn(*desk.store(u"letters.nsf"_s));
                               QStringList shown = subjectsOfView(desk.database(u"letters.nsf"_s));
                               EXPECT_TRUE(stepsDone < 2 || stored.contains(u"another"_s));
                               stored.sort();
                               shown.sort();
                               EXPECT_EQ(shown.join(u", "), stored.join(u", "));
                             }});

const RegisterPiece indexing({"BringingAFullTextIndexUpToDate", prepareLetters,
                              [](const QString& directory, const auto& stepDone) {
                                Desk desk(directory);
                                const auto store = desk.store(u"letters.nsf"_s);
                                createFullTextIndex(*store);
                                stepDone();
                                add(*store, u"another"_s, QByteArray(20'000, 'x'));
                                refreshFullTextIndex(*store);
                                stepDone();
                              },
                              [](const QString& directory, int stepsDone) {
                                const auto store = Desk(directory).store(u"letters.nsf"_s);
                                EXPECT_TRUE(stepsDone == 0 || hasFullTextIndex(*store));
                                if (!hasFullTextIndex(*store)) return;
                                const QStringList stored = lettersIn(*store);
                                EXPECT_EQ(fullTextSearch(*store, u"letter", 0).size(), stored.size());
                                EXPECT_EQ(fullTextSearch(*store, u"another", 0).size(),
                                          stored.count(u"another"_s));
                              }});

}  // namespace
}  // namespace lens::testbed
