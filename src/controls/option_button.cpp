#include "controls/option_button.h"

namespace lens {

OptionButton::OptionButton(QWidget* parent) : QRadioButton(parent) {
  connect(this, &QRadioButton::clicked, this, [this] { click.fire(); });
}

void OptionButton::setValue(bool value) {
  const bool exclusive = autoExclusive();
  if (!value) setAutoExclusive(false);
  setChecked(value);
  setAutoExclusive(exclusive);
}

}  // namespace lens
