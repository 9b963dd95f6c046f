// What grows how with a database: prints a table of times and sizes for databases of several sizes, given
// as numbers of documents of about 1 KB each. Not a comparison with a peer: it shows whether the cost of
// one change, one save or one look-up stays the same however large the database is.
//
//   lens_growth 10000 100000 1000000
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdio>
#include <functional>

#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "embedded/model/embedded_gateway.h"
#include "embedded/search/full_text.h"
#include "embedded/store/database.h"
#include "embedded/workspace/workspace.h"

namespace lens::bench {
namespace {

using namespace Qt::StringLiterals;

struct Figure {
  QString what;
  double milliseconds = 0;
};

Note letter(int number) {
  static const QStringList words = {u"harbour"_s, u"letter"_s, u"invoice"_s, u"signal"_s, u"meadow"_s,
                                    u"copper"_s,  u"ladder"_s, u"orchard"_s, u"window"_s, u"pepper"_s};
  Note note;
  note.add(u"Form"_s, itemflag::Summary, textValue(number % 2 ? u"Memo"_s : u"Reply"_s));
  note.add(u"Subject"_s, itemflag::Summary,
           textValue(words[number % 10] + u' ' + words[number / 10 % 10] + u' ' + QString::number(number)));
  note.add(u"From"_s, itemflag::Summary, textValue(u"CN=Ada Byron/O=Tessaly"_s));
  note.add(u"Size"_s, itemflag::Summary, numberValue(number % 1000));
  QString body;
  for (int word = 0; word < 110; ++word) body += words[(number * 7 + word * 13) % 10] + u' ';
  note.add(u"Body"_s, 0, textValue(body));
  return note;
}

void fill(Database& database, int documents) {
  constexpr int kInOneTransaction = 20'000;
  for (int number = 0; number < documents;) {
    Database::Transaction transaction(database);
    for (int i = 0; i < kInOneTransaction && number < documents; ++i, ++number) {
      Note note = letter(number);
      database.notes().save(note);
    }
    transaction.commit();
  }
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"By subject"_s));
  view.add(u"$Formula"_s, itemflag::Summary, sourceFormulaValue(u"SELECT Form = \"Memo\""_s));
  ViewColumn subject;
  subject.item = u"Subject"_s;
  subject.sorted = true;
  view.add(u"$ViewFormat"_s, itemflag::Summary, viewFormatValue({subject}));
  view.add(u"$Collation"_s, itemflag::Summary, collationValue({subject}));
  database.notes().save(view);
}

double timeOf(const std::function<void()>& work) {
  QElapsedTimer clock;
  clock.start();
  work();
  return double(clock.nsecsElapsed()) / 1e6;
}

void changeOne(const Object& database, int turn) {
  const QString id = QString::number(0x8FA + 4 * (turn * 97 + 12), 16);
  const Object document = database.call(u"GETDOCUMENTBYID"_s, id).object();
  document.call(u"REPLACEITEMVALUE"_s, u"Subject"_s, u"changed %1"_s.arg(turn));
  document.call(u"SAVE"_s, true, false);
}

// The quickest of several runs after one changed document each.
double afterOneChange(const Object& database, const std::function<void()>& work) {
  double best = 0;
  for (int turn = 0; turn < 7; ++turn) {
    changeOne(database, turn);
    const double time = timeOf(work);
    if (turn == 0 || time < best) best = time;
  }
  return best;
}

QVector<Figure> measured(int documents) {
  const QTemporaryDir directory;
  const auto workspace = Workspace::open(directory.filePath(u"workspace"_s), Regional(QLocale::c()));
  EmbeddedGateway gateway(workspace);
  QVector<Figure> figures;
  const auto measure = [&](const QString& what, const std::function<void()>& work) {
    figures.push_back({what, timeOf(work)});
  };
  const auto store = workspace->createDatabase({}, u"letters.nsf"_s, {});
  measure(u"fill, 20,000 documents in one transaction"_s, [&] { fill(*store, documents); });
  const Object session = gateway.create(u"Notes.NotesSession"_s);
  const Object database = session.call(u"GETDATABASE"_s, u"", u"letters.nsf").object();
  const auto search = [&] {
    database.call(u"SEARCH"_s, u"Form = \"Memo\" & @Contains(Subject; \"harbour\")"_s, Value(Object()), 0);
  };
  const auto openView = [&] { database.call(u"GETVIEW"_s, u"By subject"_s).object().get(u"ENTRYCOUNT"_s); };
  const auto find = [&] { database.call(u"FTSEARCH"_s, u"harbour AND \"meadow copper\""_s, 20); };
  figures.push_back({u"open one document by ID"_s, timeOf([&] {
                                                     for (int turn = 0; turn < 100; ++turn)
                                                       database.call(u"GETDOCUMENTBYID"_s,
                                                                     QString::number(0x8FA + 4 * turn, 16));
                                                   }) / 100});
  figures.push_back(
      {u"save one changed document"_s, afterOneChange(database, [&] { changeOne(database, 8); })});
  search();
  measure(u"SEARCH over all documents"_s, search);
  measure(u"first build of a view"_s, openView);
  figures.push_back({u"view after one changed document"_s, afterOneChange(database, openView)});
  measure(u"full-text index"_s, [&] { createFullTextIndex(*store); });
  find();
  measure(u"full-text query"_s, find);
  figures.push_back({u"index after one changed document"_s,
                     afterOneChange(database, [&] { refreshFullTextIndex(*store); })});
  figures.push_back({u"file in MB"_s, double(store->size()) / 1e6});
  return figures;
}

}  // namespace
}  // namespace lens::bench

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  QVector<QVector<lens::bench::Figure>> columns;
  std::printf("| documents |");
  for (int place = 1; place < argc; ++place) {
    columns.push_back(lens::bench::measured(std::atoi(argv[place])));
    std::printf(" %s |", argv[place]);
  }
  if (columns.isEmpty()) return std::printf("numbers of documents are expected\n"), 2;
  std::printf("\n|---|");
  for (qsizetype column = 0; column < columns.size(); ++column) std::printf("---|");
  for (qsizetype row = 0; row < columns[0].size(); ++row) {
    std::printf("\n| %s |", qPrintable(columns[0][row].what));
    for (const auto& column : columns) std::printf(" %.3g |", column[row].milliseconds);
  }
  std::printf("\n");
  return 0;
}
