// One of several choices; at most one of those with the same parent is on.
#pragma once

#include <QRadioButton>

#include "controls/event.h"

namespace lens {

class OptionButton : public QRadioButton {
  Q_OBJECT

 public:
  explicit OptionButton(QWidget* parent = nullptr);

  Event<> click;
  void raiseClick() const { click.raise(); }

  bool value() const { return isChecked(); }
  // Code may also switch the last one off.
  void setValue(bool value);
};

}  // namespace lens
