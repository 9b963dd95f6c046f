#include <QAction>
#include <QLineEdit>
#include <QRadioButton>
#include <QTimer>

#include "client/client_fixture.h"
#include "client/import_dialog.h"

namespace lens {
namespace {

// With the desktop's own dialogs.
class ImportTargetTest : public Client {
 protected:
  void startWithDialogs() {
    start();
    window->setFileChoice(nullptr);
    choice = nullptr;
  }
  // Imports, and acts on the dialog once it is there and done with looking.
  template <class Action>
  void importAnd(const QStringList& files, const Action& act) {
    seen = false;
    QTimer wait;
    QObject::connect(&wait, &QTimer::timeout, window.get(), [&] {
      auto* dialog = qobject_cast<ImportDialog*>(QApplication::activeModalWidget());
      if (!dialog || dialog->findChild<WorkBar*>()->isRunning() || seen) return;
      if (!startOf(*dialog).isEnabled()) return;
      seen = true;
      wait.stop();
      act(*dialog);
    });
    wait.start(5);
    window->importDxl(files);
    EXPECT_TRUE(seen);
  }
  static QPushButton& startOf(QDialog& dialog) { return *dialog.findChild<QPushButton*>(u"importStart"_s); }
  static QRadioButton& radio(QDialog& dialog, const char* name) {
    return *dialog.findChild<QRadioButton*>(QString::fromLatin1(name));
  }
  static QString label(QDialog& dialog) {
    return dialog.findChild<QLabel*>(u"importReplacedLabel"_s)->text().remove(u'&');
  }
  static QStringList replaced(QDialog& dialog) {
    const QAbstractItemModel& model = *dialog.findChild<QTableView*>(u"importReplaced"_s)->model();
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row)
      rows += model.index(row, DocumentModel::Subject).data().toString();
    return rows;
  }
  // A file of one document that has no database around it.
  QString noteFile(const QString& name, const QString& unid, const QString& subject) {
    QFile file(directory.path() + u'/' + name);
    if (!file.open(QIODevice::WriteOnly)) throw std::runtime_error("no room for test data");
    file.write(
        u"<document form='Memo'><noteinfo unid='%1'/><item name='Subject'><text>%2</text></item>"
        "</document>"_s.arg(unid, subject)
            .toUtf8());
    return file.fileName();
  }
  // What an import of that universal ID would replace.
  NoteId saveOld(const QString& unid = QString(32, u'1')) const {
    Note old = memo(u"Old subject"_s);
    old.header.unid = Unid::fromText(unid);
    return save(old);
  }
  int documents() { return mail->notes().noteCount(noteclass::Document); }
  QString subjectOf(NoteId id) {
    Note note;
    return mail->notes().read(id, note) ? note.text(u"Subject") : u"(none)"_s;
  }
  QAction& undo() { return part<QAction>("undoImportAction"); }

  bool seen = false;
};

TEST_F(ImportTargetTest, AFileThatHoldsADatabaseGoesIntoANewOneUnlessTheUserWantsOtherwise) {
  startWithDialogs();
  openMail();
  importAnd({dxlFile(u"two.dxl"_s, 2)}, [&](ImportDialog& dialog) {
    EXPECT_TRUE(radio(dialog, "importIntoNew").isChecked());
    EXPECT_TRUE(radio(dialog, "importIntoOpen").text().contains(u"mail.nsf on Local"_s));
    EXPECT_EQ(dialog.findChild<QLineEdit*>(u"importNewPath"_s)->text(), u"two.nsf"_s);
    EXPECT_EQ(label(dialog), u"Nothing is replaced in a new database"_s);
    startOf(dialog).click();
  });
  EXPECT_EQ(documents(), 0) << "nothing went into the open database without a word";
  EXPECT_EQ(workspace->client().database()->path, u"two.nsf"_s);
  EXPECT_EQ(table().model()->rowCount(), 2);
  importAnd({directory.path() + u"/two.dxl"_s}, [&](ImportDialog& dialog) {
    EXPECT_EQ(dialog.findChild<QLineEdit*>(u"importNewPath"_s)->text(), u"two 2.nsf"_s) << "a free name";
    dialog.reject();
  });
}

TEST_F(ImportTargetTest, AFolderGoesIntoANewOneToo) {
  startWithDialogs();
  openMail();
  ASSERT_TRUE(QDir(directory.path()).mkdir(u"in"_s));
  noteFile(u"in/a.dxl"_s, QString(32, u'1'), u"x"_s);
  importAnd({directory.path() + u"/in"_s}, [&](ImportDialog& dialog) {
    EXPECT_TRUE(radio(dialog, "importIntoNew").isChecked());
    dialog.reject();
  });
}

TEST_F(ImportTargetTest, ListsWhatWouldBeReplacedBeforeItIs) {
  const NoteId id = saveOld();
  save(memo(u"Another"_s));
  startWithDialogs();
  openMail();
  const QString file = noteFile(u"one.dxl"_s, QString(32, u'1'), u"New subject"_s);
  importAnd({file}, [&](ImportDialog& dialog) {
    EXPECT_TRUE(radio(dialog, "importIntoOpen").isChecked()) << "the file is no database";
    EXPECT_EQ(replaced(dialog), QStringList(u"Old subject"_s));
    EXPECT_TRUE(label(dialog).startsWith(u"1 note"_s)) << label(dialog).toStdString();
    dialog.reject();
  });
  EXPECT_EQ(subjectOf(id), u"Old subject"_s) << "given up";
  importAnd({file}, [&](ImportDialog& dialog) { startOf(dialog).click(); });
  EXPECT_EQ(subjectOf(id), u"New subject"_s);
  importAnd({noteFile(u"fresh.dxl"_s, QString(32, u'2'), u"Fresh"_s)}, [&](ImportDialog& dialog) {
    EXPECT_EQ(label(dialog), u"No note of the open database would be replaced"_s);
    dialog.reject();
  });
}

TEST_F(ImportTargetTest, TheListFollowsTheTarget) {
  saveOld(QString(31, u'0') + u'1');
  startWithDialogs();
  openMail();
  int looks = 0;
  QTimer wait;
  QObject::connect(&wait, &QTimer::timeout, window.get(), [&] {
    auto* dialog = qobject_cast<ImportDialog*>(QApplication::activeModalWidget());
    if (!dialog || dialog->findChild<WorkBar*>()->isRunning()) return;
    if (looks == 0) {
      radio(*dialog, "importIntoOpen").click();
      EXPECT_FALSE(startOf(*dialog).isEnabled()) << "nobody has looked yet";
      ++looks;
    } else if (startOf(*dialog).isEnabled()) {
      EXPECT_EQ(replaced(*dialog), QStringList(u"Old subject"_s));
      wait.stop();
      dialog->reject();
      ++looks;
    }
  });
  wait.start(5);
  window->importDxl({dxlFile(u"two.dxl"_s, 2)});
  EXPECT_EQ(looks, 2);
}

TEST_F(ImportTargetTest, ADatabaseThatIsOnlyReadIsNotOffered) {
  mail.reset();
  ASSERT_TRUE(QFile::setPermissions(workspace->dataDirectory() + u"/mail.nsf"_s, QFile::ReadOwner));
  startWithDialogs();
  openMail();
  importAnd({noteFile(u"one.dxl"_s, QString(32, u'1'), u"x"_s)}, [&](ImportDialog& dialog) {
    EXPECT_FALSE(radio(dialog, "importIntoOpen").isEnabled());
    EXPECT_TRUE(radio(dialog, "importIntoNew").isChecked());
    dialog.reject();
  });
}

TEST_F(ImportTargetTest, AnImportIsUndoneAsLongAsTheDatabaseIsOpen) {
  const NoteId id = saveOld();
  start();
  openMail();
  EXPECT_FALSE(undo().isEnabled());
  window->importDxl({noteFile(u"one.dxl"_s, QString(32, u'1'), u"New subject"_s)});
  window->importDxl({noteFile(u"two.dxl"_s, QString(32, u'2'), u"Second"_s)});
  EXPECT_EQ(documents(), 2);
  ASSERT_TRUE(undo().isEnabled());
  EXPECT_TRUE(undo().text().contains(u"two.dxl"_s)) << undo().text().toStdString();
  undo().trigger();
  EXPECT_EQ(documents(), 1);
  EXPECT_EQ(table().model()->rowCount(), 1) << "the list follows";
  EXPECT_TRUE(undo().text().contains(u"one.dxl"_s)) << undo().text().toStdString();
  undo().trigger();
  EXPECT_EQ(subjectOf(id), u"Old subject"_s);
  EXPECT_FALSE(undo().isEnabled());
  window->importDxl({noteFile(u"two.dxl"_s, QString(32, u'2'), u"Second"_s)});
  ASSERT_TRUE(undo().isEnabled());
  window->closeDatabase();
  EXPECT_FALSE(undo().isEnabled());
  openMail();
  EXPECT_FALSE(undo().isEnabled());
}

TEST_F(ImportTargetTest, AnUndoLeavesWhatSomebodyChangedSinceAndSaysWhich) {
  start();
  openMail();
  window->importDxl({dxlFile(u"three.dxl"_s, 3)});
  Note changed;
  ASSERT_TRUE(mail->notes().read(mail->notes().list(noteclass::Document)[1].id, changed));
  changed.items.last().value = textValue(u"Changed by hand");
  mail->notes().save(changed);
  for (QDialog* old : window->findChildren<QDialog*>()) delete old;
  undo().trigger();
  EXPECT_EQ(documents(), 1);
  EXPECT_EQ(subjectOf(changed.header.id), u"Changed by hand"_s);
  EXPECT_TRUE(report().contains(u"Changed by hand"_s)) << report().toStdString();
  EXPECT_TRUE(report().contains(u"somebody has changed it since"_s)) << report().toStdString();
}

TEST_F(ImportTargetTest, TheSameFileImportedTwiceIsUndoneTwice) {
  const NoteId id = saveOld();
  start();
  openMail();
  const QString file = noteFile(u"one.dxl"_s, QString(32, u'1'), u"New subject"_s);
  const QString fresh = noteFile(u"two.dxl"_s, QString(32, u'2'), u"Second"_s);
  for (int i = 0; i < 2; ++i) window->importDxl({file, fresh});
  undo().trigger();
  EXPECT_EQ(subjectOf(id), u"New subject"_s);
  EXPECT_EQ(documents(), 2);
  undo().trigger();
  EXPECT_EQ(subjectOf(id), u"Old subject"_s);
  EXPECT_EQ(documents(), 1);
  EXPECT_FALSE(report().contains(u"Left as they are"_s)) << report().toStdString();
}

TEST_F(ImportTargetTest, ACancelledUndoCanBeDoneAgain) {
  start();
  openMail();
  window->importDxl({dxlFile(u"many.dxl"_s, 2000)});
  cancelled("undoImportAction");
  EXPECT_TRUE(error().contains(u"Cancelled"_s)) << error().toStdString();
  EXPECT_EQ(documents(), 2000);
  undo().trigger();
  EXPECT_EQ(documents(), 0);
}

TEST_F(ImportTargetTest, AnUndoWhoseDatabaseIsClosedBeforeItBeginsChangesNothing) {
  start();
  openMail();
  window->importDxl({dxlFile(u"many.dxl"_s, 500)});
  const WhenWorkBegins close(*window, [&] { window->closeDatabase(); });
  undo().trigger();
  EXPECT_EQ(documents(), 500);
  EXPECT_FALSE(undo().isEnabled());
  EXPECT_EQ(workspace->client().database(), nullptr);
}

TEST_F(ImportTargetTest, AWindowDestroyedDuringAnUndoLeavesItWholeOrUndone) {
  start();
  openMail();
  window->importDxl({dxlFile(u"many.dxl"_s, 2000)});
  QTimer::singleShot(0, qApp, [&] { window.reset(); });
  undo().trigger();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !window; }));
  EXPECT_TRUE(documents() == 0 || documents() == 2000) << documents();
}

// Its notes would count as those that were imported.
TEST_F(ImportTargetTest, ADatabaseThatAnotherProgramPutThereIsNeitherImportedIntoNorUndone) {
  start();
  openMail();
  const QString file = dxlFile(u"three.dxl"_s, 3), path = mail->path();
  window->importDxl({file});
  putAnotherInPlaceOf(path);
  window->importDxl({file});
  EXPECT_TRUE(error().contains(u"replaced the file"_s)) << error().toStdString();
  undo().trigger();
  EXPECT_TRUE(error().contains(u"replaced the file"_s)) << error().toStdString();
  EXPECT_EQ(Database::open(path)->notes().noteCount(noteclass::Document), 0);
}

TEST_F(ImportTargetTest, AnImportThatCannotBeUndoneSaysSo) {
  start();
  openMail();
  const QByteArray temporary = qgetenv("TMPDIR");
  qputenv("TMPDIR", "/proc");  // where nobody makes a directory
  window->importDxl({dxlFile(u"three.dxl"_s, 3)});
  temporary.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", temporary);
  EXPECT_EQ(documents(), 3);
  EXPECT_FALSE(undo().isEnabled());
  EXPECT_TRUE(report().contains(u"The import cannot be undone"_s)) << report().toStdString();
  window->importDxl({noteFile(u"two.dxl"_s, QString(32, u'2'), u"Second"_s)});
  EXPECT_TRUE(undo().isEnabled()) << "there is a place again";
}

TEST_F(ImportTargetTest, ANewDatabaseTakesNoNameThatIsTaken) {
  save(memo(u"one"_s));
  start();
  choice->intoNew = true;
  for (const QString& name : {u"mail.nsf"_s, u"MAIL"_s}) {
    choice->name = name;
    window->importDxl({dxlFile(u"three.dxl"_s, 3)});
    EXPECT_TRUE(error().contains(u"mail.nsf"_s)) << error().toStdString();
    EXPECT_EQ(documents(), 1);
  }
}

TEST_F(ImportTargetTest, AnImportIntoANewDatabaseIsUndoneToo) {
  start();
  choice->intoNew = true;
  window->importDxl({dxlFile(u"three.dxl"_s, 3)});
  ASSERT_EQ(table().model()->rowCount(), 3);
  ASSERT_TRUE(undo().isEnabled());
  undo().trigger();
  EXPECT_EQ(table().model()->rowCount(), 0);
}

TEST_F(ImportTargetTest, ADatabaseThatAProgramClosesMeanwhileIsNoTarget) {
  startWithDialogs();
  openMail();
  importAnd({noteFile(u"one.dxl"_s, QString(32, u'1'), u"x"_s)}, [&](ImportDialog& dialog) {
    workspace->client().closeDatabase();
    startOf(dialog).click();
  });
  EXPECT_EQ(documents(), 0);
  EXPECT_TRUE(error().contains(u"Nothing was imported"_s)) << error().toStdString();
}

}  // namespace
}  // namespace lens
