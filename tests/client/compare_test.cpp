// Comparing two databases and two documents in the client window.
#include <QClipboard>
#include <QComboBox>
#include <QScrollBar>
#include <QTimer>

#include "client/client_fixture.h"

namespace lens {

class ClientCompare : public Client {
 protected:
  ClientCompare() {
    for (const char16_t* subject : {u"Same", u"Changed", u"Gone"})
      ids += save(memo(QString::fromUtf16(subject)));
    workspace->createReplica(*mail, u"CN=Hub/O=Acme"_s, u"mail.nsf"_s);
    other = workspace->database(u"CN=Hub/O=Acme"_s, u"mail.nsf"_s);
    mail->notes().remove(ids[2]);
    Note note;
    EXPECT_TRUE(mail->notes().read(ids[1], note));
    note.find(u"Subject")->value = textValue(u"Changed here");
    note.add(u"More"_s, itemflag::Summary, numberValue(5));
    mail->notes().save(note);
    save(memo(u"=New"_s));
  }
  QTableView& differences() { return part<QTableView>("compareDifferences"); }
  QTableView& items() { return part<QTableView>("compareItems"); }
  static QStringList texts(QTableView& table, int column) {
    QStringList all;
    for (int row = 0; row < table.model()->rowCount(); ++row)
      all += table.model()->index(row, column).data().toString();
    return all;
  }
  QString summary() { return part<QLabel>("compareSummary").text(); }
  void compare() {
    start();
    openMail();
    trigger("compareDatabasesAction");
    part<QPushButton>("compareStart").click();
  }

  std::shared_ptr<Database> other;
  QVector<NoteId> ids;
};

TEST_F(ClientCompare, OffersTheOpenDatabaseAndItsReplicaFirst) {
  workspace->createDatabase({}, u"a.nsf"_s, {});
  start();
  openMail();
  trigger("compareDatabasesAction");
  EXPECT_EQ(part<QComboBox>("compareFirst").currentText(), u"mail.nsf on Local"_s);
  EXPECT_EQ(part<QComboBox>("compareSecond").currentText(), u"mail.nsf on Hub/Acme"_s);
  EXPECT_EQ(part<QComboBox>("compareFirst").count(), 3);
}

TEST_F(ClientCompare, ListsWhatWasAddedIsGoneOrHasChanged) {
  compare();
  EXPECT_EQ(summary(), u"1 only in the first, 1 only in the second, 1 changed"_s);
  EXPECT_EQ(texts(differences(), 0),
            QStringList({u"changed"_s, u"only in the first"_s, u"only in the second"_s}));
  EXPECT_EQ(texts(differences(), 1), QStringList({u"Changed here"_s, u"=New"_s, u"Gone"_s}));
  EXPECT_EQ(differences().horizontalScrollBar()->maximum(), 0) << "every column is seen";
  EXPECT_EQ(texts(differences(), 2).first(), u"~Subject, -More"_s);
}

TEST_F(ClientCompare, TheItemsOfTheCurrentNoteStandSideBySide) {
  compare();
  EXPECT_EQ(texts(items(), 0), QStringList({u"  Form"_s, u"~ Subject"_s, u"- More"_s}));
  EXPECT_EQ(texts(items(), 1).value(1), u"TEXT: Changed here"_s);
  EXPECT_EQ(texts(items(), 2).value(1), u"TEXT: Changed"_s);
  EXPECT_EQ(texts(items(), 2).value(2), QString());
  EXPECT_FALSE(items().model()->index(0, 0).data(Qt::BackgroundRole).isValid());
  EXPECT_TRUE(items().model()->index(1, 0).data(Qt::BackgroundRole).isValid());
  items().setCurrentIndex(items().model()->index(1, 0));
  EXPECT_EQ(part<QPlainTextEdit>("compareFirstValue").toPlainText(), u"TEXT: Changed here"_s);
  EXPECT_EQ(part<QPlainTextEdit>("compareSecondValue").toPlainText(), u"TEXT: Changed"_s);
  differences().setCurrentIndex(differences().model()->index(2, 0));
  EXPECT_EQ(texts(items(), 0), QStringList({u"+ Form"_s, u"+ Subject"_s}));
}

TEST_F(ClientCompare, EnterOpensTheNoteInTheClientWindow) {
  compare();
  Q_EMIT differences().activated(differences().model()->index(2, 0));
  ASSERT_TRUE(workspace->client().database());
  EXPECT_EQ(workspace->client().database()->server, u"CN=Hub/O=Acme"_s);
  Note note;
  ASSERT_TRUE(other->notes().read(workspace->client().document(), note));
  EXPECT_EQ(note.text(u"Subject"), u"Gone"_s);
}

TEST_F(ClientCompare, EqualDatabasesAreToldToBe) {
  start();
  openMail();
  trigger("compareDatabasesAction");
  part<QComboBox>("compareSecond").setCurrentIndex(part<QComboBox>("compareFirst").currentIndex());
  part<QPushButton>("compareStart").click();
  EXPECT_EQ(summary(), u"The two databases hold the same"_s);
  EXPECT_EQ(differences().model()->rowCount(), 0);
}

TEST_F(ClientCompare, ADatabaseThatHasGoneIsTold) {
  start();
  openMail();
  trigger("compareDatabasesAction");
  other.reset();
  ASSERT_TRUE(QFile::remove(directory.path() + u"/workspace/servers/Hub/mail.nsf"_s) ||
              QFile::remove(workspace->absolutePath({u"CN=Hub/O=Acme"_s, u"mail.nsf"_s})));
  part<QPushButton>("compareStart").click();
  EXPECT_TRUE(summary().contains(u"mail.nsf"_s)) << summary().toStdString();
}

TEST_F(ClientCompare, ACancelledComparisonSaysSo) {
  {
    Database::Transaction transaction(*mail);
    for (int i = 0; i < 3000; ++i) save(memo(u"Memo %1"_s.arg(i)));
    transaction.commit();
  }
  start();
  openMail();
  trigger("compareDatabasesAction");
  QTimer::singleShot(0, window.get(), [&] { part<QPushButton>("importCancel").click(); });
  part<QPushButton>("compareStart").click();
  EXPECT_TRUE(summary().contains(u"cancelled"_s)) << summary().toStdString();
  EXPECT_LT(differences().model()->rowCount(), 3000);
}

TEST_F(ClientCompare, TwoMarkedDocumentsStandSideBySide) {
  start();
  openMail();
  table().selectRow(0);
  trigger("compareMarkedAction");
  EXPECT_TRUE(error().contains(u"Mark the two"_s)) << error().toStdString();
  table().selectAll();
  trigger("compareMarkedAction");
  EXPECT_TRUE(error().contains(u"Mark the two"_s)) << error().toStdString();
  table().clearSelection();
  for (const int row : {0, 1})
    table().selectionModel()->select(table().model()->index(row, 0),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
  trigger("compareMarkedAction");
  EXPECT_EQ(error(), QString());
  EXPECT_TRUE(part<QWidget>("compareWindow").isVisible());
  EXPECT_FALSE(part<QComboBox>("compareFirst").isVisible());
  EXPECT_EQ(texts(items(), 0), QStringList({u"  Form"_s, u"~ Subject"_s, u"+ More"_s}));
  EXPECT_EQ(summary(), u"2 of 3 items differ"_s);
}

TEST_F(ClientCompare, ListsGoOutAsCsvAndTable) {
  compare();
  choice->target = directory.path();
  part<QPushButton>("compareCsv").click();
  QFile file(directory.path() + u"/differences.csv"_s);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray csv = file.readAll();
  EXPECT_TRUE(csv.startsWith(
      "Difference,Title,Items,First ID,Second ID,UNID\r\nchanged,Changed here,\"~Subject, -More\","))
      << csv.toStdString();
  EXPECT_TRUE(csv.contains("only in the first,'=New,")) << csv.toStdString();
  items().selectRow(1);
  part<QPushButton>("compareCopy").click();
  EXPECT_TRUE(
      QGuiApplication::clipboard()->text().contains(u"~ Subject\tTEXT: Changed here\tTEXT: Changed"_s))
      << QGuiApplication::clipboard()->text().toStdString();
}

}  // namespace lens
