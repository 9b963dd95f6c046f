#include "controls/button.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <utility>

#include "controls/keys.h"
#include "controls/look.h"

namespace lens {
namespace {

// The style draws borders as a darker shade of the window colour; these turn them reddish.
constexpr QRgb kReddishWindow = 0xFFFFE3E1, kReddishDarkWindow = 0xFFB06460;

}  // namespace

CommandButton::CommandButton(QWidget* parent) : QPushButton(parent) {
  setAutoDefault(false);
  connect(this, &QPushButton::clicked, this, [this] { click.fire(); });
}

void CommandButton::keyPressEvent(QKeyEvent* event) {
  const int code = keyCode(*event);
  const QString text = typedText(*event);
  int typed = code == key::Enter || code == key::Escape || code == key::Backspace ? code : 0;
  if (!text.isEmpty()) typed = text.at(0).unicode();
  const bool isTyped = typed != 0;
  if (isTyped) keyPress.fire(typed);
  if (isTyped && typed == 0) return event->accept();
  QPushButton::keyPressEvent(event);
}

void CommandButton::mousePressEvent(QMouseEvent* event) {
  mouseDown.fire(buttonNumber(event->button()), shiftState(event->modifiers()));
  QPushButton::mousePressEvent(event);
}

void CommandButton::paintEvent(QPaintEvent* event) {
  constexpr int kEdge = 2;
  const QRect place = rect().adjusted(kEdge, 0, -kEdge, 0);
  const int wanted = fontMetrics().size(Qt::TextShowMnemonic, text()).width();
  if (wanted <= place.width()) return QPushButton::paintEvent(event);
  QStyleOptionButton option;
  initStyleOption(&option);
  const QString caption = std::exchange(option.text, QString());
  QStylePainter painter(this);
  painter.drawControl(QStyle::CE_PushButton, option);
  paintNarrowed(painter, *this, place, wanted, Qt::AlignCenter, caption);
}

void Button::setDestructive(bool destructive) {
  if (destructive_ == destructive) return;
  destructive_ = destructive;
  giveColours();
}

void Button::giveColours() {
  QPalette own;
  if (destructive_) {
    const QPalette all = QApplication::palette();
    own.setColor(QPalette::Button, all.color(QPalette::Active, QPalette::Window));
    own.setColor(QPalette::ButtonText, colour::destructiveText(all));
    own.setColor(QPalette::Disabled, QPalette::ButtonText,
                 all.color(QPalette::Disabled, QPalette::ButtonText));
  }
  setPalette(own);
}

bool Button::event(QEvent* event) {
  if (destructive_ && tellsOfColours(*event)) giveColours();
  return CommandButton::event(event);
}

// The fill is always the present colour of the window around.
void Button::initStyleOption(QStyleOptionButton* option) const {
  CommandButton::initStyleOption(option);
  if (!destructive_) return;
  option->palette.setColor(QPalette::Button, palette().color(QPalette::Window));
  option->palette.setColor(QPalette::Window, QColor(isDark(palette()) ? kReddishDarkWindow : kReddishWindow));
  option->palette.setColor(QPalette::WindowText, colour::destructiveText(palette()));
}

PictureButton::PictureButton(QWidget* parent) : CommandButton(parent) {
  setIconSize(QSize(16, 16));
}

}  // namespace lens
