#include "client/help_controller.h"

#include "client/about_dialog.h"
#include "client/client_controls.h"
#include "client/guide_window.h"
#include "notes/literals.h"

namespace lens {

HelpController::HelpController(ClientControls& controls) : controls_(controls) {
  QMenu* menu = controls.menuBar->addMenu(tr("&Help"));
  menu->setObjectName(u"helpMenu"_s);
  addPage(*menu, u"guideAction"_s, tr("&Guide"), u"docs/guide.md"_s);
  menu->actions().constLast()->setShortcut(QKeySequence::HelpContents);
  addPage(*menu, u"tourAction"_s, tr("&Tour of five minutes"), u"README.md"_s);
  addPage(*menu, u"formulaHelpAction"_s, tr("&Formula language"), u"docs/formula.md"_s);
  addPage(*menu, u"commandHelpAction"_s, tr("&Command line"), u"docs/command.md"_s);
  addPage(*menu, u"nsfHelpAction"_s, tr("&Real databases"), u"docs/nsf.md"_s);
  addPage(*menu, u"changesAction"_s, tr("What is &new"), u"CHANGELOG.md"_s);
  menu->addSeparator();
  QAction* about = menu->addAction(tr("&About Tessaly Lens"));
  about->setObjectName(u"aboutAction"_s);
  connect(about, &QAction::triggered, this, &HelpController::showAbout);
}

void HelpController::addPage(QMenu& menu, const QString& name, const QString& text, const QString& document) {
  QAction* action = menu.addAction(text);
  action->setObjectName(name);
  connect(action, &QAction::triggered, this, [this, document] { showDocument(document); });
}

void HelpController::showDocument(const QString& name) {
  if (!guide_) guide_ = new GuideWindow(&controls_.window);
  guide_->open(name);
  guide_->show();
  guide_->raise();
  guide_->activateWindow();
}

void HelpController::showAbout() {
  if (!about_) {
    about_ = new AboutDialog(&controls_.window);
    connect(about_, &AboutDialog::documentAsked, this, &HelpController::showDocument);
  }
  about_->show();
  about_->raise();
  about_->activateWindow();
}

}  // namespace lens
