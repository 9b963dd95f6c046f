#include "shell/control_fonts.h"

#include "controls/fonts.h"
#include "controls/frame.h"
#include "controls/label.h"
#include "controls/status_bar.h"

namespace lens {

void useControlFonts(QWidget& window) {
  const QFont plain = window.font();
  QFont monospace = plain;
  monospace.setFamilies({monospaceFamily()});
  for (QWidget* control : window.findChildren<QWidget*>()) {
    if (!control->property("tabIndex").isValid()) continue;
    const bool speaks =
        qobject_cast<Label*>(control) || qobject_cast<Frame*>(control) || qobject_cast<StatusBar*>(control);
    QFont font = speaks ? plain : monospace;
    font.setUnderline(control->font().underline());  // a link keeps its line
    control->setFont(font);
  }
}

}  // namespace lens
