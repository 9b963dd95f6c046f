// The tour of the README, step by step as it is written there.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QUrl>

#include "app/whole_program.h"
#include "client/file_choice.h"
#include "controls/combo_box.h"
#include "controls/list_box.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

QString withoutKey(QString caption) {
  return caption.remove(u'&');
}

// What is chosen in the desktop's own dialogs; those of the program come up.
struct ChosenFiles : DesktopFileChoice {
  QStringList dxl;
  QString directory;
  QStringList dxlFiles(QWidget*) override { return dxl; }
  QString folder(QWidget*) override { return directory; }
  QString exportFile(QWidget*, const QString& suggestion) override { return directory + u'/' + suggestion; }
};

class Tour : public WholeProgram {
 protected:
  Form1& form() { return app().form; }
  template <class Widget>
  Widget& part(const char* name) {
    return partOf<Widget>(client(), name);
  }
  QTableView& documents() { return part<QTableView>("documentTable"); }

  // The text of a step, from its number to the next one.
  static QString step(int number) {
    QFile file(QStringLiteral(LENS_SOURCE_DIR "/README.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QString readme = QString::fromUtf8(file.readAll());
    const QString tour =
        readme.section(u"## A tour of five minutes"_s, 1).section(u"Scripts use the program"_s, 0, 0);
    const QString from = u"\n%1. "_s.arg(number), to = u"\n%1. "_s.arg(number + 1);
    return tour.section(from, 1).section(to, 0, 0).simplified();
  }
  // What is to be pressed, chosen or looked at, as the step names it: a way through a menu is several names.
  static QStringList named(int number) {
    static const QRegularExpression italic(u"(?<!\\*)\\*([^*]+)\\*(?!\\*)"_s);
    QStringList names;
    for (const QRegularExpressionMatch& match : italic.globalMatch(step(number).remove(u"**"_s)))
      names += match.captured(1).split(u" > "_s);
    return names;
  }
  // Everything that can be read on the windows.
  static QStringList readable() {
    QStringList texts;
    for (const QWidget* widget : QApplication::allWidgets()) {
      if (auto* button = qobject_cast<const QAbstractButton*>(widget)) texts += withoutKey(button->text());
      if (auto* label = qobject_cast<const QLabel*>(widget)) texts += withoutKey(label->text());
      if (auto* frame = qobject_cast<const QGroupBox*>(widget)) texts += withoutKey(frame->title());
      if (auto* box = qobject_cast<const ComboBox*>(widget))
        for (int row = 0; row < box->listCount(); ++row) texts += box->list(row);
      if (auto* list = qobject_cast<const ListBox*>(widget))
        for (int row = 0; row < list->listCount(); ++row) texts += list->list(row);
      for (const QAction* action : widget->actions()) texts += withoutKey(action->text());
    }
    return texts;
  }
  void expectNamesAreOnTheScreen(int number) {
    const QStringList texts = readable();
    const QStringList names = named(number);
    EXPECT_FALSE(step(number).isEmpty());
    for (const QString& name : names) {
      const bool isThere = std::any_of(texts.begin(), texts.end(),
                                       [&](const QString& text) { return text.startsWith(name); }) ||
                           name == u"disc/ideas.nsf";
      EXPECT_TRUE(isThere) << "step " << number << " names \"" << name.toStdString()
                           << "\", which is nowhere on the screen";
    }
  }
  void choose(ListBox& list, const QString& beginning) {
    const int row = list.find(beginning);
    ASSERT_GE(row, 0) << beginning.toStdString();
    list.setSelected(row, true);
  }
  QString content() { return form().txtFieldContent->text(); }
  void trigger(const char* action) { part<QAction>(action).trigger(); }
  ChosenFiles& chooseFilesIn(const QString& folder) {
    EXPECT_TRUE(QDir(directory.path()).mkpath(folder));
    auto made = std::make_unique<ChosenFiles>();
    ChosenFiles& files = *made;
    files.directory = directory.filePath(folder);
    client().setFileChoice(std::move(made));
    return files;
  }
  // Goes on until a dialog was answered: the answer says whether it could be given yet.
  template <class Run, class Answer>
  void asked(const Run& run, const Answer& answer) {
    bool answered = false;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &look, [&] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (dialog && !answered) answered = answer(*dialog);
    });
    look.start(5);
    run();
    EXPECT_TRUE(QTest::qWaitFor([&] { return answered; })) << "nothing was asked";
  }
  // Imports into the open database; what is to be replaced there is listed first.
  template <class Run>
  QStringList replacedBy(const Run& run) {
    QStringList subjects;
    asked(run, [&](QWidget& dialog) {
      auto* import = dialog.findChild<QPushButton*>(u"importStart"_s);
      auto* intoOpen = dialog.findChild<QRadioButton*>(u"importIntoOpen"_s);
      if (!intoOpen->isChecked()) intoOpen->click();
      if (!import->isEnabled()) return false;
      const QAbstractItemModel& notes = *dialog.findChild<QTableView*>(u"importReplaced"_s)->model();
      for (int row = 0; row < notes.rowCount(); ++row) subjects += notes.index(row, 1).data().toString();
      import->click();
      return true;
    });
    return subjects;
  }
  // Of the last import or undoing of one.
  QString report() {
    const auto reports = client().findChildren<QPlainTextEdit*>(u"reportText"_s);
    return reports.isEmpty() ? part<QLabel>("errorText").text() : reports.last()->toPlainText();
  }
  QStringList subjects() {
    QStringList all;
    for (int row = 0; row < documents().model()->rowCount(); ++row)
      all += documents().model()->index(row, 1).data().toString();
    return all;
  }
  static QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
  }
};

TEST_F(Tour, NamesWhatIsOnTheScreen) {
  for (int number = 1; number <= 10; ++number) expectNamesAreOnTheScreen(number);
  int names = 0;
  for (int number = 1; number <= 10; ++number) names += int(named(number).size());
  EXPECT_GT(names, 20);
}

TEST_F(Tour, StepsOneToThreeShowItemsListsAndHits) {
  choose(*form().fldList, u"Body"_s);
  EXPECT_EQ(form().txtFieldName->text(), u"Body"_s);
  EXPECT_FALSE(content().isEmpty());
  QTest::keyClick(form().fldList, Qt::Key_Up);
  EXPECT_NE(form().txtFieldName->text(), u"Body"_s) << "arrow keys walk through the list";
  choose(*form().fldList, u"$Revisions"_s);
  EXPECT_GT(content().count(u'\n'), 0) << "each value has a line of its own";
  form().txtSearch->setText(u"the"_s);
  choose(*form().fldList, u"Body"_s);
  const int hit = int(content().indexOf(u"the"_s, 0, Qt::CaseInsensitive));
  ASSERT_GE(hit, 0);
  EXPECT_EQ(form().txtFieldContent->colorAt(hit + 1), 0x0000FFu);
  EXPECT_EQ(host.boxTexts(), QStringList());
}

TEST_F(Tour, StepsFourToSixTakeOtherDocumentsAndNotes) {
  const QString first = content();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&client()));
  client().activateWindow();
  QTest::keyClick(&part<QTableView>("readerItems"), Qt::Key_Escape);
  if (!documents().isVisible()) part<QAction>("closeDocumentAction").trigger();
  ASSERT_TRUE(documents().isVisible()) << "Esc leads back to the list";
  documents().selectRow(1);
  form().cmdGetDoc->raiseClick();
  choose(*form().fldList, u"Body"_s);
  EXPECT_NE(content(), first) << "marking a document is enough";
  const int type = [&] {
    for (int row = 0; row < form().cmbFieldType->listCount(); ++row)
      if (form().cmbFieldType->list(row).startsWith(u"DATETIMES"_s)) return row;
    return -1;
  }();
  ASSERT_GE(type, 0);
  form().cmbFieldType->setText(form().cmbFieldType->list(type));
  const int all = form().fldList->listCount();
  form().cmdFldtype->raiseClick();
  EXPECT_GT(form().fldList->listCount(), 0);
  EXPECT_LT(form().fldList->listCount(), all);
  if (form().cmdDECHEX->text() != u"HEX NoteID") form().cmdDECHEX->raiseClick();
  form().NotesID->setText(u"FFFF0010"_s);
  form().viewNotesID->raiseClick();
  EXPECT_GE(form().fldList->find(u"$TITLE"_s), 0) << "the icon note";
  EXPECT_EQ(host.boxTexts(), QStringList());
}

// A document of the sample as it came from elsewhere, with an element that nothing reads.
constexpr char kOwnData[] =
    "<document form='Memo'><noteinfo unid='C1258AA07F90ADE741258ADD002B7DAB'/>"
    "<item name='Subject'><text>Brought along</text></item><hologram depth='3'/></document>";

TEST_F(Tour, StepSevenBringsOwnDataInAndTakesItBack) {
  ChosenFiles& files = chooseFilesIn(u"own"_s);
  files.dxl = {files.directory + u"/memo.dxl"_s};
  QFile own(files.dxl.first());
  ASSERT_TRUE(own.open(QIODevice::WriteOnly));
  own.write(kOwnData);
  own.close();
  trigger("closeDocumentAction");
  const QStringList before = subjects();
  const QStringList replaced(u"Contract 2024-117, second draft"_s);
  for (const char* action : {"importFilesAction", "importFolderAction"}) {
    EXPECT_EQ(replacedBy([&] { trigger(action); }), replaced) << action;
    EXPECT_TRUE(subjects().contains(u"Brought along"_s)) << action;
    EXPECT_TRUE(report().contains(u"1 notes imported, 1 of them replaced"_s)) << report().toStdString();
    EXPECT_TRUE(report().contains(u"hologram"_s)) << "kept raw: " << report().toStdString();
    trigger("undoImportAction");
    EXPECT_EQ(subjects(), before) << action << ": File > Undo import takes them back";
  }
  QMimeData dragged;
  dragged.setUrls({QUrl::fromLocalFile(files.dxl.first())});
  const auto drop = [&] {
    QDragEnterEvent over(QPoint(5, 5), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&client(), &over);
    QDropEvent dropped(QPointF(5, 5), Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&client(), &dropped);
  };
  EXPECT_EQ(replacedBy(drop), replaced) << "files can be dropped, too";
}

TEST_F(Tour, StepEightSearchesByWordsAndWritesDxl) {
  ChosenFiles& files = chooseFilesIn(u"out"_s);
  trigger("closeDocumentAction");
  client().activateWindow();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&client()));
  auto& words = part<QLineEdit>("searchBox");
  const auto search = [&](const QString& query) {
    words.setFocus();
    words.setText(query);
    QTest::keyClick(&words, Qt::Key_Return);
  };
  asked([&] { search(u"contract"_s); },
        [&](QWidget& dialog) {
          auto* box = qobject_cast<QMessageBox*>(&dialog);
          EXPECT_TRUE(box && box->text().contains(u"no full-text index"_s));
          for (QAbstractButton* button : box->buttons())
            if (box->buttonRole(button) == QMessageBox::AcceptRole) button->click();
          return true;
        });
  ASSERT_TRUE(subjects().contains(u"Contract 2024-117, second draft"_s))
      << subjects().join(u'|').toStdString();
  ASSERT_FALSE(subjects().contains(u"Stationery"_s));
  search(u"FIELD Subject CONTAINS report"_s);
  EXPECT_EQ(subjects(), QStringList(u"Weekly report"_s)) << "a query, and the index is there";
  Q_EMIT documents().doubleClicked(documents().model()->index(0, 0));
  EXPECT_FALSE(part<QPlainTextEdit>("readerContent").extraSelections().isEmpty()) << "the hits are marked";

  const QString file = files.directory + u"/kmeier.dxl"_s;
  trigger("exportMarkedAction");
  EXPECT_EQ(contentOf(file).count("<document "), 1);
  trigger("closeDocumentAction");
  trigger("exportViewAction");
  EXPECT_EQ(contentOf(file).count("<document "), 1) << "the list shows what was found";
  trigger("exportDatabaseAction");
  EXPECT_EQ(contentOf(file).count("<document "), 9);
}

TEST_F(Tour, StepNineWritesOneDocumentAndThenAll) {
  form().cmdGetDoc->raiseClick();
  choose(*form().fldList, u"Subject"_s);
  form().txtFieldContent->setText(u"Changed on the tour"_s);
  form().cmdOverwrite->raiseClick();
  EXPECT_EQ(form().txtFieldName->text(), u"Body"_s) << "Body is shown again";
  form().txtFieldContent->setText(u"SELECT @All"_s);
  form().cmdCollbyFormula->raiseClick();
  const int documents = form().idList->listCount();
  EXPECT_GT(documents, 1);
  choose(*form().fldList, u"Subject"_s);
  EXPECT_EQ(form().txtFieldName->text(), u"Subject"_s);
  EXPECT_EQ(content(), u"Changed on the tour"_s) << "choosing a field shows its own content";
}

TEST_F(Tour, StepTenLooksBehindTheScenes) {
  ASSERT_TRUE(client().openDatabase({QString(), QDir::toNativeSeparators(u"disc/ideas.nsf"_s)}));
  form().cmdGetDoc->raiseClick();
  host.boxes.clear();
  choose(*form().lstDesigns, u"SELECTAGENTS"_s);
  form().lstDesigns->raiseDblClick();
  EXPECT_GE(form().idList->find(u"Every half hour"_s), 0);
  form().lastModified->dblClick.raise();
  EXPECT_FALSE(content().isEmpty());
  form().cmdFuncList->raiseClick();
  EXPECT_GE(form().idList->find(u"@Begins"_s), 0);
  EXPECT_EQ(host.boxTexts(), QStringList());
}

}  // namespace
}  // namespace lens
