// A check box with the values 0 (off), 1 (on) and 2 (grey).
#pragma once

#include <QCheckBox>

#include "controls/event.h"

namespace lens {

class CheckBox : public QCheckBox {
  Q_OBJECT

 public:
  explicit CheckBox(QWidget* parent = nullptr);

  Event<> click;
  void raiseClick() const { click.raise(); }

  int value() const;
  // Raises 380 for anything but 0, 1 and 2.
  void setValue(int value);

 protected:
  // A user switches between off and on; a grey box goes off.
  void nextCheckState() override;
};

}  // namespace lens
