// Real databases of the platform in the client window: opened from wherever they lie, and only to be read.
#include <QJsonDocument>
#include <QProgressBar>
#include <QStatusBar>
#include <QTimer>

#include "client/client_fixture.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/evaluation_context.h"
#include "embedded/nsf/made_samples.h"
#include "embedded/nsf/maker/nsf_maker.h"

namespace lens {
namespace {

class RealInClient : public Client {
 protected:
  RealInClient() {
    path = directory.path() + u"/far away.nsf"_s;
    write(made::sampleDatabase());
  }
  void write(const made::MadeDatabase& described) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(made::makeFile(described).bytes);
  }
  // Enough to be read for some time.
  void writeMany() {
    made::MadeDatabase described;
    described.bucketSize = 32768;
    for (quint32 i = 0; i < 4000; ++i) described.add(made::document(i, "letter"));
    write(described);
  }
  bool isAnythingKept() const { return QFileInfo::exists(workspace->directory() + u"/cache/nsf"_s); }
  void openFile() {
    choice->database = path;
    trigger("openFileAction");
  }
  // As real.nsf, which is the current one on the left then.
  void putIntoWorkspace() {
    const QString file = workspace->dataDirectory() + u"/real.nsf"_s;
    QFile::remove(file);
    ASSERT_TRUE(QFile::copy(path, file));
    if (!window) start();
    window->refresh();
    auto& tree = part<DatabaseTree>("databaseTree");
    tree.setCurrentItem(tree.findItems(u"real.nsf"_s, Qt::MatchRecursive).value(0));
  }
  QString status() { return part<QStatusBar>("statusBar").currentMessage(); }
  QString path;
};

TEST_F(RealInClient, OpensFromTheFileDialogAndSaysWhatItIs) {
  start();
  openFile();
  EXPECT_EQ(error(), QString());
  const auto* const place = workspace->client().database();
  ASSERT_TRUE(place);
  EXPECT_EQ(workspace->absolutePath(*place), path);
  const auto copy = workspace->database({}, path);
  const QString line = workspace->realDatabase(*copy)->line();
  EXPECT_TRUE(line.startsWith(u"read-only copy of far away.nsf, "_s)) << line.toStdString();
  EXPECT_TRUE(window->windowTitle().contains(line)) << window->windowTitle().toStdString();
  EXPECT_TRUE(status().contains(line)) << status().toStdString();
}

TEST_F(RealInClient, ShowsEveryDocumentOfEveryView) {
  start();
  openFile();
  auto& views = part<QListWidget>("viewList");
  int shown = 0;
  for (int view = 0; view < views.count(); ++view) {
    views.setCurrentRow(view);
    for (int row = 0; row < table().model()->rowCount(); ++row) {
      table().setCurrentIndex(table().model()->index(row, 0));
      trigger("openDocumentAction");
      EXPECT_EQ(error(), QString());
      if (page() != u"reader"_s) continue;
      ++shown;
      trigger("closeDocumentAction");
    }
  }
  EXPECT_GT(shown, 3);
}

TEST_F(RealInClient, SearchesWordsAfterAnIndexWasMade) {
  start();
  openFile();
  trigger("createIndexAction");
  EXPECT_EQ(error(), QString());
  EXPECT_FALSE(part<QAction>("createIndexAction").isEnabled());
  EXPECT_TRUE(part<QAction>("updateIndexAction").isEnabled());
  EXPECT_TRUE(window->windowTitle().contains(u"read-only copy of"_s));
}

TEST_F(RealInClient, AWindowDestroyedWhileOneOfSeveralFilesIsReadOpensNoMore) {
  writeMany();
  start();
  QTimer::singleShot(0, qApp, [&] { window.reset(); });
  window->openFiles({path, path});
  EXPECT_EQ(window, nullptr);
  EXPECT_FALSE(isAnythingKept());
}

TEST_F(RealInClient, IsNeitherDeletedNorRenamedNorReadForTheAnswer) {
  putIntoWorkspace();
  for (const char* action : {"deleteDatabaseAction", "renameDatabaseAction"}) {
    choice->otherName = u"mine.nsf"_s;
    trigger(action);
    EXPECT_TRUE(error().contains(u"it is a real one"_s)) << error().toStdString();
    EXPECT_EQ(choice->lastQuestion, QString());
    EXPECT_FALSE(isAnythingKept());
  }
  EXPECT_EQ(workspace->databases({}), QStringList({u"mail.nsf"_s, u"real.nsf"_s}));
}

TEST_F(RealInClient, IsCopiedWithProgressAndCancel) {
  writeMany();
  putIntoWorkspace();
  choice->otherName = u"new/mine.nsf"_s;
  const auto expectCancelled = [&](const QString& what) {
    const QString caption = cancelled("copyDatabaseAction");
    EXPECT_TRUE(caption.contains(what)) << caption.toStdString();
    EXPECT_TRUE(status().contains(u"was cancelled"_s)) << status().toStdString();
    EXPECT_FALSE(QFileInfo::exists(workspace->dataDirectory() + u"/new"_s));
  };
  expectCancelled(u"reading"_s);
  EXPECT_FALSE(isAnythingKept());
  workspace->database({}, u"real.nsf"_s);
  expectCancelled(u"copy"_s);
  write(made::sampleDatabase());
  putIntoWorkspace();
  trigger("copyDatabaseAction");
  EXPECT_EQ(error(), QString());
  const auto mine = workspace->database({}, u"new/mine.nsf"_s);
  EXPECT_TRUE(mine->isWritable());
  EXPECT_NE(mine->info().replicaId, workspace->infoOf({{}, u"real.nsf"_s}).replicaId);
  EXPECT_EQ(*workspace->client().database(),
            (DatabasePlace{{}, QDir::toNativeSeparators(u"new/mine.nsf"_s)}));
}

TEST_F(RealInClient, GivingUpTheDialogOpensNothing) {
  start();
  openMail();
  trigger("openFileAction");
  EXPECT_EQ(choice->asked, 1);
  EXPECT_EQ(workspace->client().database()->path, u"mail.nsf"_s);
  EXPECT_FALSE(window->windowTitle().contains(u"read-only"_s));
}

TEST_F(RealInClient, AFileThatIsNoneIsTold) {
  start();
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no database at all");
  file.close();
  openFile();
  EXPECT_TRUE(error().contains(u"far away.nsf"_s)) << error().toStdString();
  EXPECT_FALSE(workspace->client().database());
}

TEST_F(RealInClient, TheWindowLivesOnWhileAFileIsRead) {
  writeMany();
  start();
  bool barSeen = false, progressSeen = false;
  QString refused;
  QTimer meanwhile;
  meanwhile.setSingleShot(true);
  QObject::connect(&meanwhile, &QTimer::timeout, window.get(), [&] {
    barSeen = part<QWidget>("importBar").isVisible();
    trigger("importFilesAction");
    refused = error();
    // The progress goes on being shown until this ends, however soon the file is read.
    progressSeen = QTest::qWaitFor([&] { return part<QProgressBar>("importProgress").value() > 0; });
  });
  meanwhile.start(5);
  openFile();
  EXPECT_TRUE(barSeen);
  EXPECT_TRUE(progressSeen);
  EXPECT_TRUE(refused.contains(u"A database is being read"_s)) << refused.toStdString();
  EXPECT_FALSE(part<QWidget>("importBar").isVisible());
  ASSERT_TRUE(workspace->client().database());
  EXPECT_EQ(table().model()->rowCount(), 4000);
}

TEST_F(RealInClient, ACancelledReadingLeavesNothing) {
  writeMany();
  start();
  openMail();
  QTimer::singleShot(0, window.get(), [&] { part<QPushButton>("importCancel").click(); });
  openFile();
  EXPECT_EQ(error(), QString());
  EXPECT_FALSE(isAnythingKept());
  EXPECT_EQ(workspace->client().database()->path, u"mail.nsf"_s) << "what was open stays open";
  EXPECT_FALSE(part<QWidget>("importBar").isVisible());
  openFile();
  EXPECT_EQ(table().model()->rowCount(), 4000);
}

TEST_F(RealInClient, AWindowDestroyedWhileAFileIsReadEndsIt) {
  writeMany();
  start();
  QTimer::singleShot(0, qApp, [&] { window.reset(); });
  openFile();
  EXPECT_EQ(window, nullptr);
  EXPECT_FALSE(isAnythingKept());
}

TEST_F(RealInClient, AFileThatIsReadAlreadyOpensBesideOtherWork) {
  workspace->database({}, path);
  start();
  openMail();
  for (int i = 0; i < 2000; ++i) save(memo(u"pump %1"_s.arg(i)));
  bool opened = false;
  QTimer::singleShot(0, window.get(), [&] {
    opened = part<QWidget>("importBar").isVisible() && window->openDatabase({QString(), path});
  });
  trigger("createIndexAction");
  EXPECT_TRUE(opened);
}

TEST_F(RealInClient, WarnsOnceWhereNotAllCanBeShown) {
  write(made::sampleWithALostNote());
  start();
  openFile();
  const auto real = workspace->realDatabase(*workspace->database({}, path));
  EXPECT_TRUE(error().contains(real->warning())) << error().toStdString();
  EXPECT_TRUE(error().contains(u"far away.nsf"_s)) << error().toStdString();
  EXPECT_TRUE(window->windowTitle().contains(
      u"%1 of %2 notes read"_s.arg(real->notesFound - 1).arg(real->notesFound)));
  part<QPushButton>("errorDismiss").click();
  table().setCurrentIndex(table().model()->index(0, 0));
  trigger("openDocumentAction");
  EXPECT_EQ(page(), u"reader"_s);
  EXPECT_EQ(error(), QString());
  window->closeDatabase();
  openFile();
  EXPECT_NE(error(), QString()) << "opened again, it is told again";
}

TEST_F(RealInClient, AWholeFileIsOpenedWithoutAWarning) {
  start();
  EXPECT_FALSE(part<QAction>("readingReportAction").isEnabled());
  openFile();
  EXPECT_EQ(error(), QString());
  EXPECT_TRUE(part<QAction>("readingReportAction").isEnabled());
  openMail();
  EXPECT_FALSE(part<QAction>("readingReportAction").isEnabled());
}

TEST_F(RealInClient, ItsReportIsShownAndSavedAsTextAndAsJson) {
  write(made::sampleWithALostNote());
  start();
  openFile();
  trigger("readingReportAction");
  EXPECT_TRUE(report().contains(u"Notes: "_s) && report().contains(u"the record there is that of note"_s))
      << report().toStdString();
  QPushButton* save = nullptr;
  for (QPushButton* button : window->findChild<QDialog*>(u"ImportReport"_s)->findChildren<QPushButton*>())
    if (button->text() == u"&Save..."_s) save = button;
  ASSERT_TRUE(save);
  part<QPushButton>("errorDismiss").click();
  save->click();  // the user gives up
  EXPECT_EQ(error(), QString());
  const auto saved = [&](const QString& name) {
    choice->report = directory.filePath(name);
    save->click();
    QFile file(choice->report);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << error().toStdString();
    return file.readAll();
  };
  EXPECT_EQ(QString::fromUtf8(saved(u"what.txt"_s)), report());
  const QJsonDocument json = QJsonDocument::fromJson(saved(u"what.JSON"_s));
  EXPECT_EQ(json[u"notesRead"_s].toInt(), json[u"notesFound"_s].toInt() - 1);
  choice->report = directory.filePath(u"none/what.txt"_s);
  save->click();
  EXPECT_TRUE(error().contains(u"what.txt"_s)) << error().toStdString();
}

// --- Views ---------------------------------------------------------------------------------------------

class RealViewInClient : public RealInClient {
 protected:
  static ViewColumn column(const QString& item, const QByteArray& formula = {}) {
    ViewColumn made;
    made.title = u"The "_s + item;
    made.item = item;
    made.width = 80;
    made.formula = formula;
    return made;
  }
  // A view of three letters; the formulas in compiled form.
  void writeView(const QByteArray& selection, const QVector<ViewColumn>& columns) {
    made::MadeDatabase described;
    for (quint32 i = 1; i <= 3; ++i) described.add(made::document(i, "letter " + QByteArray::number(i)));
    made::MadeNote view = made::document(9);
    view.noteClass = noteclass::View;
    view.items = {{"$TITLE", itemtype::Text, made::flag::Summary, "Letters"},
                  {"$FORMULA", itemtype::Formula, made::flag::Summary, selection}};
    if (!columns.isEmpty())
      view.items.push_back({"$VIEWFORMAT", itemtype::ViewFormat, made::flag::Summary,
                            viewFormatValue(columns, true).sliced(2)});
    described.add(view);
    write(described);
    start();
    openFile();
    EXPECT_EQ(error(), QString());
    showView(u"Letters"_s);
  }
  QByteArray selecting(const QString& formula) {
    return formula::writeCompiledSelection(formula, {}, environment).bytes;
  }
  QStringList rows() {
    QStringList lines;
    for (int row = 0; row < table().model()->rowCount(); ++row) lines += cell(row, 0);
    return lines;
  }
  QString title(int at) { return table().model()->headerData(at, Qt::Horizontal).toString(); }
  QString label() { return part<QLabel>("documentLabel").text(); }

  const formula::MachineEnvironment environment;
  // A function that has no known name.
  const QByteArray unreadable = QByteArray::fromHex("0a0000000800c1000300");
  const QStringList all{u"letter 1"_s, u"letter 2"_s, u"letter 3"_s};
};

TEST_F(RealViewInClient, HasWhatItsCompiledFormulasSayOfTheDocuments) {
  const QByteArray twice = formula::writeCompiledColumn(u"Subject + \"!\""_s, u"$1", environment).bytes;
  writeView(selecting(u"SELECT Subject != \"letter 2\""_s), {column(u"Subject"_s), column(u"$1"_s, twice)});
  EXPECT_EQ(error(), QString());
  EXPECT_EQ(rows(), QStringList({all[0], all[2]}));
  EXPECT_EQ(title(1), u"The $1");
  EXPECT_EQ(cell(0, 1), u"letter 1!");
  EXPECT_FALSE(label().contains(u"not readable"_s)) << label().toStdString();
}

TEST_F(RealViewInClient, ShowsAllDocumentsMarkedWhereItsSelectionCannotBeRead) {
  writeView(unreadable, {column(u"Subject"_s)});
  EXPECT_EQ(error(), QString());
  EXPECT_EQ(rows(), all);
  EXPECT_TRUE(label().contains(u"formula not readable"_s) && label().contains(u"function C1"_s))
      << label().toStdString();
  EXPECT_EQ(title(0), u"The Subject");
  showView(u"All documents"_s);
  EXPECT_FALSE(label().contains(u"not readable"_s)) << "the mark stays: " << label().toStdString();
}

TEST_F(RealViewInClient, ShowsAllDocumentsMarkedAlsoWithoutColumns) {
  writeView(unreadable, {});
  EXPECT_EQ(error(), QString());
  EXPECT_EQ(table().model()->rowCount(), 3);
  EXPECT_TRUE(label().contains(u"formula not readable"_s)) << label().toStdString();
}

TEST_F(RealViewInClient, AColumnWhoseFormulaCannotBeReadShowsItsItemMarked) {
  writeView(selecting(u"SELECT Subject != \"letter 2\""_s), {column(u"Subject"_s, unreadable)});
  EXPECT_EQ(title(0), u"Subject (formula not readable)");
  EXPECT_EQ(rows(), QStringList({all[0], all[2]}));
}

// Who removes all documents of a view means those of the view.
TEST_F(RealViewInClient, AViewOfOursWhoseSelectionCannotBeReadIsNotShown) {
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Letters"));
  view.add(u"$Formula"_s, itemflag::Summary, rawValue(itemtype::Formula, unreadable));
  view.add(u"$ViewFormat"_s, itemflag::Summary, viewFormatValue({column(u"Subject"_s)}, false));
  save(view);
  save(memo(u"a letter"_s));
  start();
  openMail();
  showView(u"Letters"_s);
  EXPECT_TRUE(error().contains(u"compiled form only"_s)) << error().toStdString();
  EXPECT_EQ(table().model()->rowCount(), 0);
}

}  // namespace
}  // namespace lens
