#include "controls/check_box.h"

namespace lens {
namespace {

constexpr int kNoSuchCheckState = 380;

}  // namespace

CheckBox::CheckBox(QWidget* parent) : QCheckBox(parent) {
  connect(this, &QCheckBox::clicked, this, [this] { click.fire(); });
}

int CheckBox::value() const {
  switch (checkState()) {
    case Qt::Unchecked:
      return 0;
    case Qt::Checked:
      return 1;
    case Qt::PartiallyChecked:
      return 2;
  }
  return 0;
}

void CheckBox::setValue(int value) {
  switch (value) {
    case 0:
      return setCheckState(Qt::Unchecked);
    case 1:
      return setCheckState(Qt::Checked);
    case 2:
      return setCheckState(Qt::PartiallyChecked);
    default:
      throw RuntimeError(kNoSuchCheckState);
  }
}

void CheckBox::nextCheckState() {
  setCheckState(checkState() == Qt::Unchecked ? Qt::Checked : Qt::Unchecked);
}

}  // namespace lens
