#include "bulk/frm_replic.h"

#include <QCloseEvent>

#include "controls/fonts.h"
#include "controls/pictures.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr QRgb kWindow = 0xFFDCE7ED, kBox = 0xFFE0E0E0, kBorder = 0xFF9FABB2, kSelection = 0xFFB4CFE1,
               kWarning = 0xFFC00000;

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

void givePicture(PictureButton& button, const QIcon& picture, const QString& name) {
  button.setIcon(picture);
  button.setAccessibleName(name);
}

}  // namespace

FrmReplic::FrmReplic(QWidget* owner) : QDialog(owner) {
  setupUi(this);
  setWindowIcon(pictures::program());
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  setWindowModality(Qt::WindowModal);
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
}

void FrmReplic::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  if (isVisible()) resized.fire();
}

void FrmReplic::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  // Minimising is a resize step too, though the platform keeps the size.
  if (event->type() == QEvent::WindowStateChange) resized.fire();
}

void FrmReplic::closeEvent(QCloseEvent* event) {
  unload.fire();
  terminate.fire();
  event->accept();
}

}  // namespace lens
