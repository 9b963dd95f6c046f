#include "editing/flag_boxes.h"

namespace lens {

void writeFlags(Statements& step, const Form1& form, const NotesItem& item) {
  const auto write = [&](void (NotesItem::*set)(bool) const, const CheckBox& box) {
    step([&] { (item.*set)(box.value() != 0); });
  };
  write(&NotesItem::setSummary, *form.chkSummary);
  write(&NotesItem::setEncrypted, *form.chkEncrypted);
  write(&NotesItem::setSigned, *form.chkSigned);
  write(&NotesItem::setProtected, *form.chkProtected);
}

}  // namespace lens
