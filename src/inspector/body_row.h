#pragma once

#include "controls/list_box.h"

namespace lens {

// The first row of fldList that begins "Body:", in these letters; -1 when there is none.
int firstBodyRow(const ListBox& fldList);

}  // namespace lens
