#include "shell/form1.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <utility>

#include "controls/look.h"
#include "controls/pictures.h"
#include "controls/status_bar_accessibility.h"
#include "notes/literals.h"
#include "shell/control_fonts.h"

namespace lens {
namespace {

// Panels of the status bar; MainText and FontInfo belong to the content box, Source tells which side
// of the two doors is in use.
void addPanels(StatusBar& bar) {
  bar.addPanel(u"MainText"_s, 0, 360);
  bar.addPanel(u"FontInfo"_s, 360, 384);
  bar.addPanel(u"Overwrite"_s, 744, 280);
  bar.addPanel(u"Source"_s, 1024, 256);
  bar.setPanelText(u"Overwrite"_s, u"OVR"_s);
  bar.setPanelEnabled(u"Overwrite"_s, false);
}

}  // namespace

Form1::Form1() {
  makeStatusBarsAccessible();
  setupUi(this);
  setWindowIcon(pictures::program());
  setMinimumSize(480, 320);
  useControlFonts(*this);

  followColours(*this, [this] { giveColours(); });
  Picture1->setPixmap(pictures::program().pixmap(16, 16));
  cmdScroll->setAccessibleName(u"Previous content"_s);
  cmdDelRT->setIcon(pictures::clearHistory());
  cmdDelRT->setAccessibleName(u"Drop saved contents"_s);
  addPanels(*sbrMain);

  Timer2 = new Timer(this);
  Timer2->setObjectName(u"Timer2"_s);
  Timer2->setInterval(1000);

  mnuBar = new PopupMenu(this);
  mnuBar->setObjectName(u"mnuBar"_s);
  mnuBar->setTitle(u"Options"_s);
  mnuBarShow = &mnuBar->addEntry(u"mnuBarShow"_s, u"Show"_s);
  mnuBarHide = &mnuBar->addEntry(u"mnuBarHide"_s, u"Hide"_s);
  mnuBarExit = &mnuBar->addEntry(u"mnuBarExit"_s, u"Exit"_s);

  fldList->setFocus();
}

void Form1::giveColours() {
  const QPalette all = QApplication::palette();
  QPalette grey;
  grey.setColor(QPalette::WindowText, QColor(isDark(all) ? 0xA9AEB3 : 0x5F5F5F));
  Label2->setPalette(grey);
  cmdScroll->setIcon(pictures::history());
}

void Form1::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (isVisible()) resized.fire();
}

void Form1::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  // Coming back from the tray is no resize: marks and caret stay.
  if (std::exchange(shown_, true)) return;
  resized.fire();
}

void Form1::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  // Minimising is a resize step too, though the platform keeps the size.
  if (event->type() == QEvent::WindowStateChange) resized.fire();
}

void Form1::mouseReleaseEvent(QMouseEvent* event) {
  QWidget::mouseReleaseEvent(event);
  // Labels hand their mouse events up; the menu is for the bare form.
  if (childAt(event->position().toPoint())) return;
  mouseUp.fire(event->button() == Qt::RightButton ? 2 : event->button() == Qt::LeftButton ? 1 : 4);
}

void Form1::closeEvent(QCloseEvent* event) {
  unload.fire();
  terminate.fire();
  event->accept();
}

}  // namespace lens
