#include "editing/flag_boxes.h"

namespace lens {

void writeFlags(Statements& step, const Form1& form, const Object& item) {
  const auto write = [&](const char16_t* member, const CheckBox& box) {
    step([&] { item.set(QString::fromUtf16(member), box.value() != 0); });
  };
  write(u"ISSUMMARY", *form.chkSummary);
  write(u"ISENCRYPTED", *form.chkEncrypted);
  write(u"ISSIGNED", *form.chkSigned);
  write(u"ISPROTECTED", *form.chkProtected);
}

}  // namespace lens
