// A view in the document table as its own columns show it.
#include <QHeaderView>

#include "client/client_fixture.h"
#include "client/document_model.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"

namespace lens {
namespace {

ViewColumn column(const QString& title, const QString& item) {
  ViewColumn made;
  made.title = title;
  made.item = item;
  made.width = 10 * 8;
  return made;
}

ViewColumn category(const QString& title, const QString& item) {
  ViewColumn made = column(title, item);
  made.sorted = made.categorized = made.separateValues = true;
  return made;
}

struct ClientView : Client {
  NoteId addView(const QString& title, const QVector<ViewColumn>& columns, bool hierarchy = false) {
    Note view;
    view.header.noteClass = noteclass::View;
    view.add(u"$TITLE"_s, itemflag::Summary, textValue(title));
    view.add(u"$Formula"_s, itemflag::Summary, sourceFormulaValue(u"SELECT @All"_s));
    view.add(u"$ViewFormat"_s, itemflag::Summary, viewFormatValue(columns, hierarchy));
    view.add(u"$Collation"_s, itemflag::Summary, collationValue(columns));
    return save(view);
  }
  NoteId order(const QString& subject, const QStringList& tags, double price) {
    Note note = memo(subject);
    note.add(u"Tags"_s, itemflag::Summary, textListValue(tags));
    note.add(u"Price"_s, itemflag::Summary, numberValue(price));
    return save(note);
  }
  void openView(const QString& title) {
    start();
    openMail();
    showView(title);
  }
  QStringList rows() {
    QStringList lines;
    for (int row = 0; row < table().model()->rowCount(); ++row) {
      QStringList cells;
      for (int at = 0; at < table().model()->columnCount(); ++at) cells.append(cell(row, at));
      lines.append(cells.join(u'|'));
    }
    return lines;
  }
  QStringList titles() {
    QStringList texts;
    for (int at = 0; at < table().model()->columnCount(); ++at)
      texts.append(table().model()->headerData(at, Qt::Horizontal).toString());
    return texts;
  }
  bool isBold(int row) { return table().model()->index(row, 0).data(Qt::FontRole).value<QFont>().bold(); }
};

}  // namespace

TEST_F(ClientView, HasTheTitlesAndValuesOfItsColumns) {
  ViewColumn hidden = column(u"Secret"_s, u"Form"_s), twice = column(u"Twice"_s, u"$1"_s);
  hidden.hidden = true;
  twice.formula = sourceFormula(u"Price * 2"_s);
  ViewColumn subject = column(u"What"_s, u"Subject"_s);
  subject.sorted = true;
  addView(u"Orders"_s, {subject, hidden, column(u"Tags"_s, u"Tags"_s), twice});
  order(u"Valve"_s, {u"steel"_s, u"small"_s}, 1.5);
  order(u"Pump"_s, {u"old"_s}, 4);
  openView(u"Orders"_s);
  EXPECT_EQ(titles(), QStringList({u"What"_s, u"Tags"_s, u"Twice"_s}));
  EXPECT_EQ(rows(), QStringList({u"Pump|old|8"_s, u"Valve|steel, small|3"_s}));
  EXPECT_FALSE(isBold(0));
  showView(u"All documents"_s);
  EXPECT_EQ(titles(), QStringList({u"Form"_s, u"Subject"_s, u"Modified"_s, u"Note ID"_s}));
}

TEST_F(ClientView, ShowsCategoriesInBoldAboveTheirDocuments) {
  addView(u"By tag"_s, {category(u"Tag"_s, u"Tags"_s), column(u"What"_s, u"Subject"_s)});
  order(u"Valve"_s, {u"metal\\steel"_s}, 1);
  order(u"Pump"_s, {u"red"_s, u"blue"_s}, 1);
  save(memo(u"Untagged"_s));
  openView(u"By tag"_s);
  EXPECT_EQ(rows(), QStringList({u"(not categorized)|"_s, u"|Untagged"_s, u"blue|"_s, u"|Pump"_s, u"metal|"_s,
                                 u"  steel|"_s, u"|Valve"_s, u"red|"_s, u"|Pump"_s}));
  EXPECT_TRUE(isBold(2));
  EXPECT_FALSE(isBold(3));
  EXPECT_EQ(part<QLabel>("documentLabel").text(), u"Doc&uments: 4"_s) << "the pump stands in two places";
}

TEST_F(ClientView, ACategoryIsNoDocument) {
  addView(u"By tag"_s, {category(u"Tag"_s, u"Tags"_s), column(u"What"_s, u"Subject"_s)});
  const NoteId pump = order(u"Pump"_s, {u"red"_s, u"blue"_s}, 1);
  openView(u"By tag"_s);
  table().setCurrentIndex(table().model()->index(0, 0));
  EXPECT_EQ(workspace->client().visibleSelection(), QVector<NoteId>());
  trigger("openDocumentAction");
  EXPECT_EQ(page(), u"viewPage"_s);
  EXPECT_EQ(error(), QString());
  trigger("selectAllAction");
  EXPECT_EQ(workspace->client().visibleSelection(), QVector<NoteId>{pump}) << "once, whatever its rows";
  EXPECT_EQ(unprocessed(), 1);
  table().setCurrentIndex(table().model()->index(1, 0));
  trigger("openDocumentAction");
  EXPECT_EQ(page(), u"reader"_s);
}

TEST_F(ClientView, ResponsesStandFurtherIn) {
  addView(u"Threads"_s, {column(u"What"_s, u"Subject"_s)}, true);
  Note main = memo(u"Question"_s);
  mail->notes().save(main);
  Note answer = memo(u"Answer"_s);
  answer.header.parent = main.header.unid;
  save(answer);
  addView(u"By tag"_s, {category(u"Tag"_s, u"Tags"_s), column(u"What"_s, u"Subject"_s)}, true);
  openView(u"Threads"_s);
  EXPECT_EQ(rows(), QStringList({u"Question"_s, u"  Answer"_s}));
  showView(u"By tag"_s);
  EXPECT_EQ(rows(), QStringList({u"(not categorized)|"_s, u"|Question"_s, u"|  Answer"_s}));
}

TEST_F(ClientView, ReadsOnlyTheNotesOfRowsInSight) {
  addView(u"By tag"_s, {category(u"Tag"_s, u"Tags"_s), column(u"What"_s, u"Subject"_s)});
  {
    Database::Transaction transaction(*mail);
    for (int i = 0; i < 3000; ++i) order(u"Order %1"_s.arg(i), {u"tag %1"_s.arg(i % 50)}, i);
    transaction.commit();
  }
  openView(u"By tag"_s);
  expectOnlyRowsInSightAreRead(3050, 3000);
}

TEST_F(ClientView, FollowsChangesWhenItIsRefreshed) {
  addView(u"Orders"_s, {column(u"What"_s, u"Subject"_s), column(u"Price"_s, u"Price"_s)});
  const NoteId first = order(u"Pump"_s, {}, 1);
  openView(u"Orders"_s);
  table().horizontalHeader()->resizeSection(0, 333);
  mail->notes().remove(first);
  EXPECT_EQ(rows(), QStringList{u"(deleted since the view was read)|"_s}) << "nothing was read before";
  order(u"Valve"_s, {}, 2);
  trigger("refreshAction");
  EXPECT_EQ(rows(), QStringList{u"Valve|2"_s});
  EXPECT_EQ(table().columnWidth(0), 333) << "what the user made of it stays";
}

TEST_F(ClientView, AColumnThatCannotBeComputedSaysWhy) {
  ViewColumn wrong = column(u"Wrong"_s, u"$1"_s);
  wrong.formula = sourceFormula(u"1 / 0"_s);
  addView(u"Orders"_s, {column(u"What"_s, u"Subject"_s), wrong});
  order(u"Pump"_s, {}, 1);
  openView(u"Orders"_s);
  ASSERT_EQ(rows().size(), 1);
  EXPECT_TRUE(rows().first().contains(u"unable to compute"_s)) << rows().first().toStdString();
}

TEST_F(ClientView, WithoutColumnsIsAListOfDocuments) {
  ViewColumn hidden = column(u"What"_s, u"Subject"_s);
  hidden.hidden = true;
  addView(u"Nothing"_s, {hidden});
  order(u"Pump"_s, {}, 1);
  openView(u"Nothing"_s);
  EXPECT_EQ(titles().first(), u"Form"_s);
  EXPECT_EQ(cell(0, DocumentModel::Subject), u"Pump"_s);
}

// CLIENT_PICTURE names a file to keep the window's look in.
TEST_F(ClientView, GivesItsColumnsRoom) {
  ViewColumn due = column(u"Price"_s, u"Price"_s), from = column(u"Form"_s, u"Form"_s);
  ViewColumn what = column(u"Subject"_s, u"Subject"_s);
  what.width = 40 * 8;
  addView(u"Orders by tag"_s, {category(u"Tag"_s, u"Tags"_s), what, due, from});
  order(u"Pump house, second delivery"_s, {u"harbour\\north"_s, u"urgent"_s}, 1250.5);
  order(u"Valves for the quay"_s, {u"harbour\\north"_s, u"harbour\\south"_s}, 310);
  order(u"Paint"_s, {u"office"_s}, 45.9);
  save(memo(u"Weekly report"_s));
  openView(u"Orders by tag"_s);
  table().selectRow(2);
  const QString file = qEnvironmentVariable("CLIENT_PICTURE");
  if (!file.isEmpty()) window->grab().save(file + u".view.png"_s);
  EXPECT_GE(table().columnWidth(1), 40 * table().fontMetrics().averageCharWidth());
  EXPECT_GE(table().columnWidth(0), 24 * table().fontMetrics().averageCharWidth());
}

}  // namespace lens
