// The questions of the operations on a real screen: what Enter, Esc and closing answer.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

#include "host/desktop_host.h"
#include "notes/literals.h"

namespace lens {
namespace {

int answerBy(const std::function<void(QMessageBox&)>& act) {
  DesktopHost host;
  QTimer::singleShot(0, qApp, [&] {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (auto* shown = qobject_cast<QMessageBox*>(window); shown && shown->isVisible()) act(*shown);
  });
  return host.messageBox(u"Are you sure to run the Agent: Clean ?"_s, box::OkCancel, u"Run agent"_s);
}

TEST(QuestionBox, TakesEnterForOkAndEscAndClosingForCancel) {
  EXPECT_EQ(answerBy([](QMessageBox& shown) {
              EXPECT_EQ(shown.icon(), QMessageBox::NoIcon);
              EXPECT_EQ(shown.standardButtons(), QMessageBox::Ok | QMessageBox::Cancel);
              QTest::keyClick(&shown, Qt::Key_Return);
            }),
            answer::Ok);
  EXPECT_EQ(answerBy([](QMessageBox& shown) { QTest::keyClick(&shown, Qt::Key_Escape); }), answer::Cancel);
  EXPECT_EQ(answerBy([](QMessageBox& shown) { shown.close(); }), answer::Cancel);
}

}  // namespace
}  // namespace lens
