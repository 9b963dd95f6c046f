// Lists as CSV and tables, documents as JSON.
#include <QClipboard>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMimeData>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>

#include "client/client_fixture.h"

#ifdef Q_OS_LINUX
#include "support/small_files.h"
#endif

namespace lens {

class ClientLists : public Client {
 protected:
  void startWith(const QStringList& subjects) {
    Database::Transaction transaction(*mail);
    for (const QString& subject : subjects) ids += save(memo(subject));
    transaction.commit();
    start();
    openMail();
    choice->target = directory.path();
  }
  QByteArray written(const QString& suffix) {
    QFile file(directory.path() + u"/mail."_s + suffix);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
  }
  QStringList csvLines() {
    QStringList lines = QString::fromUtf8(written(u"csv"_s)).split(u"\r\n"_s);
    if (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    return lines;
  }
  QString status() { return part<QStatusBar>("statusBar").currentMessage(); }
  QVector<NoteId> ids;
};

TEST_F(ClientLists, TheListThatTheKeyboardIsInGoesOutAsCsv) {
  startWith({u"First"_s, u"Second, \"quoted\""_s});
  table().setFocus();
  trigger("exportListAction");
  const QStringList lines = csvLines();
  ASSERT_EQ(lines.size(), 3);
  EXPECT_EQ(lines[0], u"Form,Subject,Modified,Note ID"_s);
  EXPECT_TRUE(lines[1].startsWith(u"Memo,First,"_s)) << lines[1].toStdString();
  EXPECT_TRUE(lines[2].startsWith(u"Memo,\"Second, \"\"quoted\"\"\","_s)) << lines[2].toStdString();
  EXPECT_TRUE(status().contains(u"2 row"_s)) << status().toStdString();
  part<QListWidget>("viewList").setFocus();
  trigger("exportListAction");
  EXPECT_EQ(csvLines(), QStringList({u"All documents"_s, u"Design notes"_s}));
}

TEST_F(ClientLists, ItemsGoOutWithTheirWholeValues) {
  startWith({QString(1000, u'x')});
  ASSERT_TRUE(window->openDocument(ids.first()));
  trigger("exportListAction");
  EXPECT_EQ(csvLines().value(0), u"Item,Type,Value"_s);
  EXPECT_TRUE(csvLines().contains(u"Subject,TEXT,"_s + QString(1000, u'x')))
      << written(u"csv"_s).toStdString();
}

TEST_F(ClientLists, ColumnsAndRowsGoOutAsTheyAreSeen) {
  startWith({u"A"_s, u"B"_s});
  table().horizontalHeader()->moveSection(1, 0);
  table().setColumnHidden(3, true);
  table().setRowHidden(0, true);
  table().setFocus();
  trigger("exportListAction");
  ASSERT_EQ(csvLines().size(), 2);
  EXPECT_EQ(csvLines()[0], u"Subject,Form,Modified"_s);
  EXPECT_TRUE(csvLines()[1].startsWith(u"B,Memo,"_s));
}

TEST_F(ClientLists, WhatASpreadsheetWouldRunIsMadeSafeAndTold) {
  startWith({u"=HYPERLINK(\"http://x\")"_s, u"+1"_s, u"-1"_s, u"@SUM"_s, u"plain"_s});
  table().setFocus();
  trigger("exportListAction");
  const QString all = QString::fromUtf8(written(u"csv"_s));
  for (const char16_t* safe : {u",\"'=HYPERLINK", u",'+1,", u",'-1,", u",'@SUM,", u",plain,"})
    EXPECT_TRUE(all.contains(QString::fromUtf16(safe))) << QString::fromUtf16(safe).toStdString();
  EXPECT_TRUE(status().contains(u"4 cell"_s)) << status().toStdString();
}

TEST_F(ClientLists, TheTreeGoesOutAsItIsUnfolded) {
  startWith({});
  window->closeDatabase();
  part<QTreeWidget>("databaseTree").setFocus();
  trigger("exportListAction");
  QFile file(directory.path() + u"/list.csv"_s);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  const QByteArray all = file.readAll();
  EXPECT_TRUE(all.startsWith("Local\r\nmail.nsf")) << all.toStdString();
}

TEST_F(ClientLists, ACancelledExportLeavesNoFile) {
  QStringList subjects;
  for (int i = 0; i < 3000; ++i) subjects += u"Memo %1"_s.arg(i);
  startWith(subjects);
  table().setFocus();
  QTimer::singleShot(0, window.get(), [&] { part<QPushButton>("importCancel").click(); });
  trigger("exportListAction");
  EXPECT_EQ(written(u"csv"_s), QByteArray());
  EXPECT_TRUE(status().contains(u"cancelled"_s)) << status().toStdString();
}

TEST_F(ClientLists, AListThatChangesMeanwhileEndsTheExport) {
  QStringList subjects;
  for (int i = 0; i < 3000; ++i) subjects += u"Memo %1"_s.arg(i);
  startWith(subjects);
  table().setFocus();
  QTimer::singleShot(0, window.get(), [&] { window->closeDatabase(); });
  trigger("exportListAction");
  EXPECT_EQ(written(u"csv"_s), QByteArray());
  EXPECT_TRUE(error().contains(u"has changed"_s)) << error().toStdString();
}

TEST_F(ClientLists, MarkedDocumentsGoOutAsJsonWithTypesFlagsAndValues) {
  startWith({u"A"_s, u"B"_s, u"C"_s});
  table().selectRow(1);
  trigger("exportJsonAction");
  const QList<QByteArray> lines = written(u"json"_s).trimmed().split('\n');
  ASSERT_EQ(lines.size(), 1);
  const QJsonObject document = QJsonDocument::fromJson(lines[0]).object();
  EXPECT_EQ(document[u"noteId"_s].toString(), u"%1"_s.arg(ids[1].value(), 8, 16, QChar(u'0')).toUpper());
  EXPECT_EQ(document[u"unid"_s].toString().size(), 32);
  const QJsonObject subject = document[u"items"_s].toArray().last().toObject();
  EXPECT_EQ(subject[u"name"_s].toString(), u"Subject"_s);
  EXPECT_EQ(subject[u"type"_s].toString(), u"TEXT"_s);
  EXPECT_EQ(subject[u"flags"_s].toArray(), QJsonArray{u"summary"_s});
  EXPECT_EQ(subject[u"values"_s].toArray(), QJsonArray{u"B"_s});
  table().selectAll();
  trigger("exportJsonAction");
  EXPECT_EQ(written(u"json"_s).count('\n'), 3);
  ASSERT_TRUE(window->openDocument(ids[2]));
  trigger("exportJsonAction");
  EXPECT_TRUE(written(u"json"_s).contains("[\"C\"]"));
  EXPECT_EQ(written(u"json"_s).count('\n'), 1);
}

TEST_F(ClientLists, NothingMarkedAndNoDatabaseAreTold) {
  startWith({u"A"_s});
  table().clearSelection();
  trigger("exportJsonAction");
  EXPECT_TRUE(error().contains(u"no documents"_s)) << error().toStdString();
  window->closeDatabase();
  EXPECT_FALSE(part<QAction>("exportJsonAction").isEnabled());
}

TEST_F(ClientLists, AFileThatCannotBeWrittenIsTold) {
  startWith({u"A"_s});
  table().selectAll();
  choice->target = directory.path() + u"/missing"_s;
  for (const char* action : {"exportListAction", "exportJsonAction"}) {
    trigger(action);
    EXPECT_TRUE(error().contains(u"was not written"_s)) << action << ": " << error().toStdString();
    window->refresh();
    table().selectAll();
  }
}

TEST_F(ClientLists, MarkedRowsAreCopiedAsATable) {
  startWith({u"A & <b>"_s, u"=1+1"_s, u"C"_s});
  table().setFocus();
  table().selectRow(0);
  trigger("copyTableAction");
  const QMimeData* data = QApplication::clipboard()->mimeData();
  ASSERT_TRUE(data && data->hasHtml() && data->hasText());
  EXPECT_TRUE(data->html().contains(u"<th>Subject</th>"_s));
  EXPECT_TRUE(data->html().contains(u"<td>A &amp; &lt;b&gt;</td>"_s)) << data->html().toStdString();
  EXPECT_FALSE(data->html().contains(u"<td>C</td>"_s));
  EXPECT_TRUE(data->text().startsWith(u"Form\tSubject\tModified\tNote ID\nMemo\tA & <b>\t"_s))
      << data->text().toStdString();
  table().clearSelection();
  trigger("copyTableAction");
  EXPECT_EQ(QApplication::clipboard()->text().count(u'\n'), 4);
  EXPECT_TRUE(QApplication::clipboard()->text().contains(u"\t'=1+1\t"_s));
}

#ifdef Q_OS_LINUX
TEST_F(ClientLists, OnAFullDiskTheFormerFileStays) {
  QStringList subjects;
  for (int i = 0; i < 500; ++i) subjects += u"Memo %1"_s.arg(i);
  startWith(subjects);
  table().setFocus();
  table().selectAll();
  for (const auto& [action, suffix] :
       {std::pair("exportListAction", u"csv"_s), {"exportJsonAction", u"json"_s}}) {
    trigger(action);
    const QByteArray whole = written(suffix);
    ASSERT_GT(whole.size(), 20'000) << action;
    for (const qsizetype room : {qsizetype(0), qsizetype(16'384), whole.size() - 1}) {
      {
        const SmallFiles full{rlim_t(room)};
        trigger(action);
      }
      EXPECT_TRUE(error().contains(u"was not written"_s)) << action << room;
      EXPECT_EQ(written(suffix), whole) << action << room;
    }
  }
}
#endif

}  // namespace lens
