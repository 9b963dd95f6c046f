// The window by keyboard alone: access keys, Tab and Ctrl+Tab, arrows, typed text. Nothing is set or
// clicked by code here.
#include <QAbstractButton>
#include <QApplication>
#include <QSet>
#include <QTest>
#include <algorithm>

#include "editing/editing_fixture.h"

namespace lens {
namespace {

class Keyboard : public EditingTest {
 protected:
  void showActive(Note note) {
    show(std::move(note));
    form().activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form()));
  }
  void key(Qt::Key code, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* focus = QApplication::focusWidget();
    QTest::keyClick(focus ? focus : &form(), code, modifiers);
  }
  // A button shows for a moment that it was pressed, and only then does it click.
  void access(Qt::Key code) {
    key(code, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !isAnyButtonDown(); }));
  }
  bool isAnyButtonDown() {
    const auto buttons = form().findChildren<QAbstractButton*>();
    return std::any_of(buttons.begin(), buttons.end(), [](const auto* button) { return button->isDown(); });
  }
  void readAgain() {
    goTo("cmdGetDoc");
    key(Qt::Key_Space);
  }
  void typeText(const QString& text) {
    for (const QChar c : text) {
      if (c == u'\n')
        key(Qt::Key_Return);
      else
        QTest::keyClicks(QApplication::focusWidget(), QString(c));
    }
  }
  // By Tab; a text of many lines takes Tab as a character and is left with Ctrl+Tab.
  void goTo(const char* name) {
    const QWidget* const wanted = &control<QWidget>(name);
    for (int step = 0; step < 100 && QApplication::focusWidget() != wanted; ++step) {
      const bool takesTab = QApplication::focusWidget() == form().txtFieldContent;
      key(Qt::Key_Tab, takesTab ? Qt::ControlModifier : Qt::NoModifier);
    }
    ASSERT_EQ(QApplication::focusWidget(), wanted) << name;
  }
  void fill(const char* name, const QString& text) {
    goTo(name);
    key(Qt::Key_A, Qt::ControlModifier);
    key(Qt::Key_Delete);
    typeText(text);
  }
  void chooseItem(const QString& name) {
    goTo("fldList");
    key(Qt::Key_Home);
    for (int row = 0; row < 30 && !text("fldList").startsWith(name + u":"); ++row) key(Qt::Key_Down);
    ASSERT_TRUE(text("fldList").startsWith(name + u":")) << name.toStdString();
  }
  void add(const QString& name, int type, const QString& content) {
    fill("txtFieldName", name);
    fill("cmbFieldType", typeSentence(type));
    fill("txtFieldContent", content);
    access(Qt::Key_A);
  }
  void overwriteByKey(const QString& name, const QString& content) {
    chooseItem(name);
    fill("txtFieldContent", content);
    access(Qt::Key_O);
  }
};

TEST_F(Keyboard, CapturesAddsOverwritesReplacesReadsAgainAndDeletes) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"a pump"_s));
  showActive(note);
  readAgain();
  EXPECT_TRUE(rows("fldList").join(u'|').contains(u"Subject:"_s));

  add(u"Text"_s, 1280, u"Bern\nGenf"_s);
  add(u"Number"_s, 768, u"12"_s);
  add(u"Date"_s, 1024, u"11.03.2024"_s);
  add(u"Names"_s, 1074, u"CN=A"_s);
  add(u"Readers"_s, 1075, u"CN=B"_s);
  add(u"Authors"_s, 1076, u"CN=C"_s);
  add(u"Rich"_s, 1, u""_s);
  ASSERT_EQ(boxes(), QStringList());
  EXPECT_EQ(values(u"Text"_s), QStringList({u"Bern"_s, u"Genf"_s}));
  EXPECT_EQ(values(u"Number"_s), QStringList(u"12"_s));
  EXPECT_EQ(values(u"Date"_s), QStringList(u"11.03.2024"_s));
  EXPECT_EQ(values(u"Names"_s), QStringList(u"CN=A"_s));
  EXPECT_EQ(objectModelType(*stored().find(u"Readers")), 1075);
  EXPECT_EQ(values(u"Authors"_s), QStringList(u"CN=C"_s));
  EXPECT_EQ(bodyText(stored(), u"Rich"_s), QString());

  overwriteByKey(u"Text"_s, u"Basel\nChur"_s);
  overwriteByKey(u"Number"_s, u"13"_s);
  overwriteByKey(u"Date"_s, u"12.03.2024"_s);
  for (const QString& name : {u"Names"_s, u"Readers"_s, u"Authors"_s}) overwriteByKey(name, u"CN=D"_s);
  ASSERT_EQ(boxes(), QStringList());
  EXPECT_EQ(values(u"Text"_s), QStringList({u"Basel"_s, u"Chur"_s}));
  EXPECT_EQ(values(u"Number"_s), QStringList(u"13"_s));
  EXPECT_EQ(values(u"Date"_s), QStringList(u"12.03.2024"_s));
  for (const QString& name : {u"Names"_s, u"Readers"_s, u"Authors"_s})
    EXPECT_EQ(values(name), QStringList(u"CN=D"_s));

  // Rich text is overwritten by search and replace.
  chooseItem(u"Body"_s);
  fill("txtSearch", u"pump"_s);
  fill("txtReplace", u"valve"_s);
  access(Qt::Key_O);
  EXPECT_EQ(bodyText(stored()), u"a valve"_s);

  // Enter finds the next item; in the box only the text is replaced, in the document every item.
  fill("txtSearch", u"Basel"_s);
  key(Qt::Key_Return);
  EXPECT_TRUE(text("fldList").startsWith(u"Text:"_s));
  fill("txtReplace", u"Thun"_s);
  access(Qt::Key_R);
  EXPECT_TRUE(text("txtFieldContent").startsWith(u"Thun"_s));
  EXPECT_EQ(values(u"Text"_s).first(), u"Basel"_s);
  readAgain();
  chooseItem(u"Text"_s);
  EXPECT_TRUE(text("txtFieldContent").startsWith(u"Basel"_s));
  fill("txtSearch", u"Basel"_s);
  fill("txtReplace", u"Thun"_s);
  goTo("cmdSearchReplaceAll");
  key(Qt::Key_Space);
  EXPECT_EQ(values(u"Text"_s).first(), u"Thun"_s);

  chooseItem(u"Text"_s);
  access(Qt::Key_L);
  EXPECT_FALSE(stored().has(u"Text"));
  EXPECT_FALSE(rows("fldList").join(u'|').contains(u"Text:"_s));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(Keyboard, AnAccessKeyOfTwoButtonsMovesTheFocusFromOneToTheOther) {
  showActive(memo());
  goTo("txtFieldName");
  QSet<QWidget*> reached;
  for (int i = 0; i < 2; ++i) {
    key(Qt::Key_D, Qt::AltModifier);
    reached += QApplication::focusWidget();
  }
  EXPECT_EQ(reached, QSet<QWidget*>({form().cmdGetDoc, form().cmdDump}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(Keyboard, ReadingAgainUndoesWhatWasNotSaved) {
  showActive(memo());
  notes().failing.insert(u"SAVE"_s, RuntimeError(70));
  overwriteByKey(u"Subject"_s, u"unsaved"_s);
  ASSERT_EQ(host.boxes.size(), 1);
  notes().failing.clear();
  readAgain();
  chooseItem(u"Subject"_s);
  EXPECT_EQ(text("txtFieldContent"), "Pumps");
}

TEST_F(Keyboard, TabReachesEveryControlThatDoesSomethingInTheOrderInWhichTheyAreRead) {
  showActive(memo());
  setText("txtFieldContent", u"one"_s);
  setText("txtFieldContent", u"two"_s);  // both picture buttons are shown
  const QWidget* const first = &control<QWidget>("cmdGetDoc");
  control<QWidget>("cmdGetDoc").setFocus();
  QSet<const QWidget*> reached;
  QVector<int> order;
  do {
    reached.insert(QApplication::focusWidget());
    order += QApplication::focusWidget()->property("tabIndex").toInt();
    const bool takesTab = QApplication::focusWidget() == form().txtFieldContent;
    key(Qt::Key_Tab, takesTab ? Qt::ControlModifier : Qt::NoModifier);
  } while (QApplication::focusWidget() != first && reached.size() < 200);
  EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
  for (QWidget* widget : form().findChildren<QWidget*>()) {
    const bool acts = qobject_cast<CommandButton*>(widget) || qobject_cast<TextBox*>(widget) ||
                      qobject_cast<ListBox*>(widget) || qobject_cast<ComboBox*>(widget) ||
                      qobject_cast<CheckBox*>(widget) || qobject_cast<RichTextBox*>(widget);
    if (!acts || widget->window() != &form() || widget->isHidden() || !widget->isEnabled()) continue;
    EXPECT_TRUE(reached.contains(widget)) << widget->objectName().toStdString();
  }
}

TEST_F(Keyboard, ControlAndTabLeaveTheContentBoxBothWays) {
  showActive(memo());
  control<QWidget>("txtFieldContent").setFocus();
  key(Qt::Key_Tab, Qt::ControlModifier);
  EXPECT_EQ(QApplication::focusWidget(), form().cmdAddField);
  control<QWidget>("txtFieldContent").setFocus();
  key(Qt::Key_Tab, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_NE(QApplication::focusWidget(), form().txtFieldContent);
  EXPECT_NE(QApplication::focusWidget(), form().cmdAddField);
}

TEST_F(Keyboard, ControlAndFGoToTheSearchBoxFromAnywhere) {
  showActive(memo());
  setText("txtSearch", u"pump"_s);
  for (const char* from : {"txtFieldContent", "idList", "cmdGetDoc"}) {
    control<QWidget>(from).setFocus();
    key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), form().txtSearch) << from;
    EXPECT_EQ(form().txtSearch->selectedText(), u"pump"_s);
    EXPECT_NE(text("txtFieldContent"), u"pump"_s);
  }
}

TEST_F(Keyboard, TheMenuKeyShowsTheProperties) {
  showActive(memo());
  QFile file(directory.filePath(u"a.txt"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  control<DirList>("Dir1").setPath(directory.path());
  for (const char* list : {"Dir1", "File1"}) {
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
    QApplication::sendEvent(&control<QWidget>(list), &event);
  }
  EXPECT_EQ(host.propertiesShown, QStringList({directory.path(), file.fileName()}));
}

TEST_F(Keyboard, PictureButtonsShowAPictureAndSayWhatTheyAre) {
  showActive(memo());
  for (const char* name : {"cmdScroll", "cmdDelRT"}) {
    const CommandButton& button = control<CommandButton>(name);
    EXPECT_FALSE(button.icon().isNull()) << name;
    EXPECT_EQ(button.text(), QString()) << name;
    EXPECT_FALSE(button.accessibleName().isEmpty()) << name;
    const QImage picture = button.icon().pixmap(16, 16).toImage();
    int drawn = 0;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x) drawn += picture.pixelColor(x, y).alpha() > 128;
    EXPECT_GT(drawn, 20) << name;
  }
  EXPECT_NE(control<CommandButton>("cmdScroll").icon().pixmap(16, 16).toImage(),
            control<CommandButton>("cmdDelRT").icon().pixmap(16, 16).toImage());
}

}  // namespace
}  // namespace lens
