#include "bulk/frm_replic.h"

#include <QShowEvent>
#include <utility>

#include "controls/fonts.h"
#include "controls/look.h"
#include "controls/pictures.h"
#include "notes/literals.h"
#include "shell/window_layout.h"

namespace lens {
namespace {

struct WindowColours {
  QRgb window, box, border, selection, warning, mark;
};
// On the window's colour the grey of the boxes hardly shows, so marks have a ground of their own.
constexpr WindowColours kOnLight = {0xFFDCE7ED, 0xFFE0E0E0, 0xFF9FABB2, 0xFFB4CFE1, 0xFFC00000, 0xFFFFFFFF};
constexpr WindowColours kOnDark = {0xFF263138, 0xFF1B2226, 0xFF62717A, 0xFF34495A, 0xFFFF9C94, 0xFF0E1215};

constexpr int kDesignRowHeight = 16;

QPalette replicPalette(QPalette palette, const WindowColours& colours) {
  palette.setColor(QPalette::Window, QColor(colours.window));
  palette.setColor(QPalette::Base, QColor(colours.box));
  palette.setColor(QPalette::Mid, QColor(colours.border));
  palette.setColor(QPalette::Inactive, QPalette::Highlight, QColor(colours.selection));
  return palette;
}

void giveColour(QWidget& widget, QPalette::ColorRole role, QRgb colour) {
  QPalette own;
  own.setColor(role, QColor(colour));
  widget.setPalette(own);
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
  QFont monospace = font();
  monospace.setFamilies({monospaceFamily()});
  setFont(monospace);
  cmdClearMe->setAccessibleName(u"Clear"_s);
  cmdClearFldList->setAccessibleName(u"clear list"_s);
  givePicture(*Command2, pictures::check(), u"select all"_s);
  lstServer->setText(u"Local"_s);
  lstDesignServer->setText(u"Local"_s);
  Opt[0] = Opt0;
  Opt[1] = Opt1;
  Opt[2] = Opt2;
  followColours(*this, [this] { giveColours(); });
  rememberDesign();
}

void FrmReplic::giveColours() {
  const QPalette all = QApplication::palette();
  const WindowColours& colours = isDark(all) ? kOnDark : kOnLight;
  setPalette(replicPalette(all, colours));
  giveColour(*lblRunAgent, QPalette::WindowText, colours.warning);
  giveColour(*chkFields, QPalette::Base, colours.mark);
  for (OptionButton* option : Opt) giveColour(*option, QPalette::Base, colours.mark);
  cmdClearMe->setIcon(pictures::cross());
  cmdClearFldList->setIcon(pictures::cross());
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
