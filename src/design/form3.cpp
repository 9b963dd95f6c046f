#include "design/form3.h"

#include "shell/control_fonts.h"

namespace lens {

Form3::Form3(QWidget* owner) : OwnedWindow(owner) {
  setupUi(this);
  setFixedSize(size());
  useControlFonts(*this);
}

}  // namespace lens
