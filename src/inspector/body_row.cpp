#include "inspector/body_row.h"

namespace lens {

int firstBodyRow(const ListBox& fldList) {
  for (int row = 0; row < fldList.listCount(); ++row)
    if (fldList.list(row).startsWith(u"Body:")) return row;
  return -1;
}

}  // namespace lens
