#include "bulk/frm_replic.h"

#include <QShowEvent>
#include <utility>

#include "controls/fonts.h"
#include "controls/pictures.h"
#include "notes/literals.h"
#include "shell/window_layout.h"

namespace lens {
namespace {

constexpr QRgb kWindow = 0xFFDCE7ED, kBox = 0xFFE0E0E0, kBorder = 0xFF9FABB2, kSelection = 0xFFB4CFE1,
               kWarning = 0xFFC00000;

constexpr int kDesignRowHeight = 16;

QPalette replicPalette(QPalette palette) {
  palette.setColor(QPalette::Window, QColor(kWindow));
  palette.setColor(QPalette::Base, QColor(kBox));
  palette.setColor(QPalette::Mid, QColor(kBorder));
  palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(kSelection));
  return palette;
}

void colourText(QWidget& label, QRgb colour) {
  QPalette own = label.palette();
  own.setColor(QPalette::WindowText, QColor(colour));
  label.setPalette(own);
}

// On the window's colour the grey of the boxes hardly shows.
void whitenMark(QWidget& button) {
  QPalette own = button.palette();
  own.setColor(QPalette::Base, Qt::white);
  button.setPalette(own);
}

void givePicture(PictureButton& button, const QIcon& picture, const QString& name) {
  button.setIcon(picture);
  button.setAccessibleName(name);
}

}  // namespace

FrmReplic::FrmReplic(QWidget* owner) : OwnedWindow(owner) {
  setupUi(this);
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  setMinimumSize(480, 320);
  setPalette(replicPalette(palette()));
  QFont monospace = font();
  monospace.setFamilies({monospaceFamily()});
  setFont(monospace);
  colourText(*lblRunAgent, kWarning);
  givePicture(*cmdClearMe, pictures::cross(), u"Clear"_s);
  givePicture(*cmdClearFldList, pictures::cross(), u"clear list"_s);
  givePicture(*Command2, pictures::check(), u"select all"_s);
  lstServer->setText(u"Local"_s);
  lstDesignServer->setText(u"Local"_s);
  Opt[0] = Opt0;
  Opt[1] = Opt1;
  Opt[2] = Opt2;
  whitenMark(*chkFields);
  for (OptionButton* option : Opt) whitenMark(*option);
  rememberDesign();
}

void FrmReplic::rememberDesign() {
  designSize_ = size();
  for (QWidget* control : layoutControls(*this)) {
    auto* combo = qobject_cast<ComboBox*>(control);
    design_.push_back({control, control->geometry(), control->font(),
                       combo ? combo->text() : control->property("text").toString(), !control->isHidden(),
                       control->isEnabledTo(control->parentWidget())});
  }
}

void FrmReplic::restoreDesign() {
  setWindowState(Qt::WindowNoState);
  resize(designSize_);
  for (const Designed& designed : std::as_const(design_)) restore(designed);
  Opt[0]->setValue(true);
  lstServer->setFocus();
}

void FrmReplic::restore(const Designed& designed) {
  QWidget* control = designed.control;
  control->setGeometry(designed.place);
  control->setFont(designed.font);
  control->setVisible(designed.isShown);
  control->setEnabled(designed.isEnabled);
  if (auto* label = qobject_cast<Label*>(control)) label->setText(designed.text);
  if (auto* box = qobject_cast<TextBox*>(control)) box->setText(designed.text);
  if (auto* box = qobject_cast<CheckBox*>(control)) box->setValue(0);
  if (auto* list = qobject_cast<ListBox*>(control)) {
    list->clear();
    list->setRowHeight(kDesignRowHeight);
  }
  if (auto* box = qobject_cast<ComboBox*>(control)) {
    box->clearRows();
    box->setText(designed.text);
  }
}

void FrmReplic::showEvent(QShowEvent* event) {
  OwnedWindow::showEvent(event);
  if (!event->spontaneous()) resized.fire();
}

void FrmReplic::resizeEvent(QResizeEvent* event) {
  OwnedWindow::resizeEvent(event);
  if (isVisible()) resized.fire();
}

void FrmReplic::changeEvent(QEvent* event) {
  OwnedWindow::changeEvent(event);
  // Minimising is a resize step too, though the platform keeps the size.
  if (event->type() == QEvent::WindowStateChange) resized.fire();
}

}  // namespace lens
