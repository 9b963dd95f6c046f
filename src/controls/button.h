// Push buttons, with a caption or with a picture.
#pragma once

#include <QPushButton>

#include "controls/event.h"

namespace lens {

// What both kinds of button share. Enter presses none of them unless a window makes one its default. A
// caption that does not fit is drawn narrower.
class CommandButton : public QPushButton {
  Q_OBJECT

 public:
  explicit CommandButton(QWidget* parent = nullptr);

  Event<> click;
  // UTF-16 code of a typed character, 8 for the back key, 13 for Enter, 27 for Esc; 0 means it was used up,
  // so that Space presses nothing.
  Event<int&> keyPress;
  // Button (1 left, 2 right, 4 middle) and shift state, before the click of the same press.
  Event<int, int> mouseDown;
  // Runs the procedure directly, also for a hidden or disabled button; its failure is the caller's.
  void raiseClick() const { click.raise(); }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
};

class Button : public CommandButton {
  Q_OBJECT
  Q_PROPERTY(bool destructive READ isDestructive WRITE setDestructive)

 public:
  explicit Button(QWidget* parent = nullptr) : CommandButton(parent) {}

  // Shows that the button takes something away for good: dark red on the window's own colour.
  bool isDestructive() const { return destructive_; }
  void setDestructive(bool destructive);

 protected:
  bool event(QEvent* event) override;
  void initStyleOption(QStyleOptionButton* option) const override;

 private:
  void giveColours();

  bool destructive_ = false;
};

// Carries an icon and no caption; the accessible name has to be given.
class PictureButton : public CommandButton {
  Q_OBJECT

 public:
  explicit PictureButton(QWidget* parent = nullptr);
};

}  // namespace lens
