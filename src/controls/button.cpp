#include "controls/button.h"

#include <QStyleOptionButton>

#include "controls/look.h"

namespace lens {
namespace {

// The style draws borders as a darker shade of the window colour; this one turns them reddish.
constexpr QRgb kReddishWindow = 0xFFFFE3E1;

}  // namespace

CommandButton::CommandButton(QWidget* parent) : QPushButton(parent) {
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, [this] { click.fire(); });
}

void Button::setDestructive(bool destructive) {
  if (destructive_ == destructive) return;
  destructive_ = destructive;
  QPalette own;
  if (destructive_) {
    own.setColor(QPalette::Button, palette().color(QPalette::Window));
    own.setColor(QPalette::ButtonText, QColor(colour::DestructiveText));
    own.setColor(QPalette::Disabled, QPalette::ButtonText,
                 palette().color(QPalette::Disabled, QPalette::ButtonText));
  }
  setPalette(own);
}

// The fill is always the present colour of the window around.
void Button::initStyleOption(QStyleOptionButton* option) const {
  CommandButton::initStyleOption(option);
  if (!destructive_) return;
  option->palette.setColor(QPalette::Button, palette().color(QPalette::Window));
  option->palette.setColor(QPalette::Window, QColor(kReddishWindow));
  option->palette.setColor(QPalette::WindowText, QColor(colour::DestructiveText));
}

PictureButton::PictureButton(QWidget* parent) : CommandButton(parent) {
  setIconSize(QSize(16, 16));
}

}  // namespace lens
