#include "shell/form1.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <utility>

#include "controls/pictures.h"
#include "shell/control_fonts.h"

namespace lens {
namespace {

// Panels of the status bar; MainText and FontInfo belong to the content box, Source tells which side
// of the two doors is in use.
void addPanels(StatusBar& bar) {
  bar.addPanel(QStringLiteral("MainText"), 0, 360);
  bar.addPanel(QStringLiteral("FontInfo"), 360, 384);
  bar.addPanel(QStringLiteral("Overwrite"), 744, 280);
  bar.addPanel(QStringLiteral("Source"), 1024, 256);
  bar.setPanelText(QStringLiteral("Overwrite"), QStringLiteral("OVR"));
  bar.setPanelEnabled(QStringLiteral("Overwrite"), false);
}

}  // namespace

Form1::Form1() {
  setupUi(this);
  setWindowIcon(pictures::program());
  setMinimumSize(480, 320);
  useControlFonts(*this);

  QPalette grey = Label2->palette();
  grey.setColor(QPalette::WindowText, QColor(0x5F, 0x5F, 0x5F));
  Label2->setPalette(grey);
  Picture1->setPixmap(pictures::program().pixmap(16, 16));
  cmdScroll->setIcon(pictures::history());
  cmdScroll->setAccessibleName(QStringLiteral("Previous content"));
  cmdDelRT->setIcon(pictures::clearHistory());
  cmdDelRT->setAccessibleName(QStringLiteral("Drop saved contents"));
  addPanels(*sbrMain);

  Timer2 = new Timer(this);
  Timer2->setObjectName(QStringLiteral("Timer2"));
  Timer2->setInterval(1000);

  mnuBar = new PopupMenu(this);
  mnuBar->setObjectName(QStringLiteral("mnuBar"));
  mnuBar->setTitle(QStringLiteral("Options"));
  mnuBarShow = &mnuBar->addEntry(QStringLiteral("mnuBarShow"), QStringLiteral("Show"));
  mnuBarHide = &mnuBar->addEntry(QStringLiteral("mnuBarHide"), QStringLiteral("Hide"));
  mnuBarExit = &mnuBar->addEntry(QStringLiteral("mnuBarExit"), QStringLiteral("Exit"));

  fldList->setFocus();
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
