// The windows that copy a design note and pick a database: names, kinds, captions and places of what the user
// sees, and how they are worked by keyboard.
#include <QApplication>
#include <QTest>

#include "controls/fonts.h"
#include "design/form2.h"
#include "design/form3.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

struct SmallRow {
  const char* name;
  const char* kind;
  const char* caption;
  QRect place;
};

// In the order of their tab indexes.
const SmallRow kForm2Rows[] = {
    {"Label1", "lens::Label", "Source Sever!!Database:", {16, 8, 400, 16}},
    {"txtSourceDB", "lens::TextBox", "", {16, 24, 432, 26}},
    {"lblDocID", "lens::Label", "Doc ID:", {456, 8, 120, 16}},
    {"txtDocID", "lens::TextBox", "", {456, 24, 120, 26}},
    {"Label3", "lens::Label", "Target Server:", {16, 64, 272, 16}},
    {"lstDesignServer", "lens::ComboBox", "", {16, 80, 272, 26}},
    {"cmdExpand2", "lens::Button", "?", {296, 80, 32, 26}},
    {"Label7", "lens::Label", "Click to expand", {336, 85, 120, 16}},
    {"lblDB2", "lens::Label", "Select target DB", {16, 120, 560, 16}},
    {"lstDBNamesDest", "lens::ListBox", "", {16, 136, 560, 232}},
    {"cmdCopy", "lens::Button", "&Copy (Copy document into target DB)", {16, 376, 272, 26}},
    {"cmdMoveDocs", "lens::Button", "&Move (Move document into target db)", {304, 376, 272, 26}},
};
const SmallRow kForm3Rows[] = {
    {"lblServer", "lens::Label", "Server:", {16, 8, 216, 16}},
    {"lstDesignServer", "lens::ComboBox", "", {16, 24, 216, 26}},
    {"cmdExpand2", "lens::Button", "?", {240, 24, 32, 26}},
    {"Label7", "lens::Label", "Click to expand", {280, 29, 112, 16}},
    {"lblDbl", "lens::Label", "DblClick to choose DB", {16, 64, 368, 16}},
    {"lstDBNamesDest", "lens::ListBox", "", {16, 80, 368, 328}},
};

QWidget& controlOf(const QWidget& window, const char* name) {
  auto* found = window.findChild<QWidget*>(QString::fromLatin1(name));
  if (!found) throw std::runtime_error(name);
  return *found;
}

template <class Rows>
void expectRows(const QWidget& window, const Rows& rows) {
  int tabIndex = 0;
  for (const SmallRow& row : rows) {
    const QWidget& control = controlOf(window, row.name);
    EXPECT_STREQ(control.metaObject()->className(), row.kind) << row.name;
    EXPECT_EQ(control.property("text").toString(), QString::fromLatin1(row.caption)) << row.name;
    EXPECT_EQ(control.geometry(), row.place) << row.name;
    EXPECT_EQ(control.toolTip(), QString()) << row.name;
    EXPECT_EQ(control.property("tabIndex").toInt(), tabIndex++) << row.name;
    const bool speaks = qobject_cast<const Label*>(&control);
    EXPECT_EQ(control.font().families() == QStringList(monospaceFamily()), !speaks) << row.name;
  }
  int recorded = 0;
  for (const QWidget* child : window.findChildren<QWidget*>())
    if (child->property("tabIndex").isValid()) ++recorded;
  EXPECT_EQ(recorded, tabIndex);
}

// From the control that has the focus first once round the window.
QStringList tabOrder(QWidget& window) {
  window.show();
  window.activateWindow();
  QCoreApplication::processEvents();
  QStringList order;
  while (window.focusWidget() && !order.contains(window.focusWidget()->objectName())) {
    order += window.focusWidget()->objectName();
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
  }
  return order;
}

template <class Window, class Rows>
void expectTabOrder(const Rows& rows) {
  Window window;
  QStringList expected;
  for (const SmallRow& row : rows)
    if (controlOf(window, row.name).focusPolicy() & Qt::TabFocus) expected += QString::fromLatin1(row.name);
  EXPECT_EQ(tabOrder(window), expected);
}

void expectCaptionsWhole(const QWidget& window) {
  for (const CommandButton* button : window.findChildren<CommandButton*>())
    EXPECT_LE(button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width(), button->width() - 4)
        << button->objectName().toStdString();
  for (const Label* label : window.findChildren<Label*>()) {
    EXPECT_LE(label->sizeHint().width(), label->width()) << label->objectName().toStdString();
    EXPECT_LE(label->sizeHint().height(), label->height() + 2) << label->objectName().toStdString();
  }
}

template <class Window>
class SmallWindow : public testing::Test {
 protected:
  Window window;
};
using SmallWindows = testing::Types<Form2, Form3>;
TYPED_TEST_SUITE(SmallWindow, SmallWindows);

TEST(SmallWindowControls, HaveTheirNamesKindsCaptionsAndPlaces) {
  const Form2 form2;
  EXPECT_EQ(form2.windowTitle(), "Copy/Move design doc");
  EXPECT_EQ(form2.size(), QSize(592, 416));
  expectRows(form2, kForm2Rows);
  const Form3 form3;
  EXPECT_EQ(form3.windowTitle(), "DB picker");
  EXPECT_EQ(form3.size(), QSize(400, 416));
  expectRows(form3, kForm3Rows);
}

TEST(SmallWindowControls, AreReachedByTabInTheOrderInWhichTheyAreRead) {
  expectTabOrder<Form2>(kForm2Rows);
  expectTabOrder<Form3>(kForm3Rows);
}

TEST(SmallWindowControls, HaveTheirAccessKeys) {
  Form2 window;
  window.show();
  window.activateWindow();
  QCoreApplication::processEvents();
  QStringList pressed;
  window.cmdCopy->click = [&] { pressed += u"copy"_s; };
  window.cmdMoveDocs->click = [&] { pressed += u"move"_s; };
  QTest::keyClick(&window, Qt::Key_C, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return pressed.size() == 1; }));
  QTest::keyClick(&window, Qt::Key_M, Qt::AltModifier);
  EXPECT_TRUE(QTest::qWaitFor([&] { return pressed.size() == 2; }));
  EXPECT_EQ(pressed, QStringList({u"copy"_s, u"move"_s}));
}

TYPED_TEST(SmallWindow, ShowsItsCaptionsWhole) {
  expectCaptionsWhole(this->window);
}

// Enter belongs to the list of servers alone, Space presses.
TYPED_TEST(SmallWindow, HasNoDefaultButton) {
  TypeParam& window = this->window;
  window.show();
  int presses = 0;
  for (CommandButton* button : window.template findChildren<CommandButton*>()) {
    EXPECT_FALSE(button->isDefault() || button->autoDefault()) << button->objectName().toStdString();
    button->click = [&] { ++presses; };
  }
  for (QWidget* control : window.template findChildren<QWidget*>()) {
    if (!(control->focusPolicy() & Qt::TabFocus)) continue;
    control->setFocus();
    QTest::keyClick(control, Qt::Key_Return);
    QTest::keyClick(control, Qt::Key_Enter);
  }
  EXPECT_EQ(presses, 0);
  window.cmdExpand2->setFocus();
  QTest::keyClick(window.cmdExpand2, Qt::Key_Space);
  EXPECT_EQ(presses, 1);
}

TYPED_TEST(SmallWindow, StaysOpenOnEscFromAnyControl) {
  this->window.show();
  for (QWidget* control : this->window.template findChildren<QWidget*>()) {
    if (!control->property("tabIndex").isValid()) continue;
    control->setFocus();
    QTest::keyClick(control, Qt::Key_Escape);
    EXPECT_TRUE(this->window.isVisible()) << control->objectName().toStdString();
  }
}

TYPED_TEST(SmallWindow, HasAFixedSize) {
  const QSize designed = this->window.size();
  this->window.show();
  this->window.resize(900, 900);
  EXPECT_EQ(this->window.size(), designed);
}

}  // namespace
}  // namespace lens
