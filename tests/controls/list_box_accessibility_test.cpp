#include <QAccessible>
#include <QDir>

#include "control_test.h"
#include "controls/file_lists.h"

namespace lens {
namespace {

// A list of twenty rows, six of them in sight, as a screen reader sees it.
struct SpokenList {
  SpokenList() {
    list.setAccessibleName(QStringLiteral("Fields"));
    list.setAccessibleDescription(QStringLiteral("Fields of the document"));
    list.resize(200, 16 * 6 + 8);
    for (int row = 0; row < 20; ++row) list.addItem(QStringLiteral("row %1").arg(row));
    showWithFocus(list);
  }
  QAccessibleInterface& spoken() { return *QAccessible::queryAccessibleInterface(&list); }
  QString nameOf(int row) { return spoken().child(row)->text(QAccessible::Name); }
  // The row that is told as current, -1 for none.
  int currentRow() {
    int current = -1;
    for (int row = 0; row < spoken().childCount(); ++row)
      if (spoken().child(row)->state().focused) current = row;
    const QAccessibleInterface* focused = spoken().focusChild();
    EXPECT_EQ(focused ? spoken().indexOfChild(focused) : -1, current);
    return current;
  }
  // The system tells the list of its changes only where a screen reader runs.
  void tell(QAccessibleTableModelChangeEvent::ModelChangeType type) {
    QAccessibleTableModelChangeEvent event(&list, type);
    spoken().tableInterface()->modelChange(&event);
  }
  ListBox list;
};

TEST(ListBoxAccessibility, IsAListOfItsRows) {
  SpokenList shown;
  QAccessibleInterface& list = shown.spoken();
  EXPECT_EQ(list.role(), QAccessible::List);
  EXPECT_EQ(list.text(QAccessible::Name), QStringLiteral("Fields"));
  EXPECT_EQ(list.text(QAccessible::Description), QStringLiteral("Fields of the document"));
  EXPECT_TRUE(list.state().focused);
  ASSERT_EQ(list.childCount(), 20);
  EXPECT_EQ(list.child(20), nullptr);
  EXPECT_EQ(list.child(-1), nullptr);
  ASSERT_TRUE(list.tableInterface());
  EXPECT_EQ(list.tableInterface()->rowCount(), 20);
  EXPECT_EQ(list.tableInterface()->columnCount(), 1);
  EXPECT_EQ(list.tableInterface()->cellAt(7, 0), list.child(7));
  QAccessibleInterface& row = *list.child(7);
  EXPECT_EQ(row.role(), QAccessible::ListItem);
  EXPECT_EQ(row.text(QAccessible::Name), QStringLiteral("row 7"));
  EXPECT_EQ(row.parent(), &list);
  EXPECT_EQ(list.indexOfChild(&row), 7);
  EXPECT_EQ(row.tableCellInterface()->rowIndex(), 7);
}

TEST(ListBoxAccessibility, CurrentRowIsTheIndex) {
  SpokenList shown;
  EXPECT_EQ(shown.currentRow(), -1);
  QTest::keyClick(&shown.list, Qt::Key_Down);
  QTest::keyClick(&shown.list, Qt::Key_Down);
  EXPECT_EQ(shown.currentRow(), 1);
  shown.list.setListIndex(15);
  EXPECT_EQ(shown.currentRow(), 15);
  shown.list.addItem(QStringLiteral("first"), 0);
  shown.tell(QAccessibleTableModelChangeEvent::RowsInserted);
  EXPECT_EQ(shown.currentRow(), 16);
  shown.list.removeItem(16);
  shown.tell(QAccessibleTableModelChangeEvent::RowsRemoved);
  EXPECT_EQ(shown.currentRow(), -1);
}

TEST(ListBoxAccessibility, RowsAreWhereTheyAreSeen) {
  SpokenList shown;
  shown.list.setTopIndex(10);
  QAccessibleInterface& row = *shown.spoken().child(11);
  EXPECT_EQ(row.rect().topLeft(), shown.list.viewport()->mapToGlobal(QPoint(0, 3 + 16)));
  EXPECT_EQ(row.rect().size(), QSize(shown.list.viewport()->width(), 16));
  EXPECT_EQ(shown.spoken().childAt(row.rect().center().x(), row.rect().center().y()), &row);
  EXPECT_FALSE(row.state().invisible);
  EXPECT_TRUE(shown.spoken().child(8)->state().invisible);
  EXPECT_TRUE(shown.spoken().child(19)->state().invisible);
}

TEST(ListBoxAccessibility, RowsFollowTheirTexts) {
  SpokenList shown;
  EXPECT_EQ(shown.nameOf(0), QStringLiteral("row 0"));
  shown.list.setList(0, QStringLiteral("z"));
  EXPECT_EQ(shown.nameOf(0), QStringLiteral("z"));
  shown.list.setSorted(true);
  EXPECT_EQ(shown.nameOf(0), QStringLiteral("row 1"));
  EXPECT_EQ(shown.nameOf(19), QStringLiteral("z"));
  shown.list.clear();
  EXPECT_EQ(shown.spoken().childCount(), 0);
  EXPECT_EQ(shown.spoken().child(0), nullptr);
}

TEST(ListBoxAccessibility, ARowKeepsItsIdentityWhenOthersComeAndGo) {
  SpokenList shown;
  QAccessibleInterface& list = shown.spoken();
  QAccessibleInterface* row = list.child(2);
  const QAccessible::Id gone = QAccessible::uniqueId(list.child(5));
  const QAccessible::Id id = QAccessible::uniqueId(row);
  shown.list.removeItem(5);
  shown.tell(QAccessibleTableModelChangeEvent::RowsRemoved);
  EXPECT_EQ(QAccessible::accessibleInterface(gone), nullptr);
  shown.list.addItem(QStringLiteral("first"), 0);
  shown.tell(QAccessibleTableModelChangeEvent::RowsInserted);
  EXPECT_EQ(list.child(3), row);
  EXPECT_EQ(row->text(QAccessible::Name), QStringLiteral("row 2"));
  EXPECT_EQ(shown.nameOf(2), QStringLiteral("row 1"));
  shown.list.clear();
  shown.tell(QAccessibleTableModelChangeEvent::ModelReset);
  EXPECT_EQ(QAccessible::accessibleInterface(id), nullptr);
}

TEST(ListBoxAccessibility, ChecksAreTold) {
  SpokenList shown;
  shown.list.setChecked(true);
  shown.list.setSelected(1, true);
  EXPECT_TRUE(shown.spoken().child(1)->state().checked);
  EXPECT_FALSE(shown.spoken().child(2)->state().checked);
}

TEST(ListBoxAccessibility, ListsOfFilesAreListsToo) {
  DirList list;
  list.setPath(QDir::tempPath());
  QAccessibleInterface& spoken = *QAccessible::queryAccessibleInterface(&list);
  EXPECT_EQ(spoken.role(), QAccessible::List);
  EXPECT_EQ(spoken.childCount(), list.listCount());
}

}  // namespace
}  // namespace lens
