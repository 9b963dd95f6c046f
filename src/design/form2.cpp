#include "design/form2.h"

#include "shell/control_fonts.h"

namespace lens {

Form2::Form2(QWidget* owner) : OwnedWindow(owner) {
  setupUi(this);
  setFixedSize(size());
  useControlFonts(*this);
}

}  // namespace lens
