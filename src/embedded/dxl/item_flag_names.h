// Item flags as DXL names them.
#pragma once

#include <array>

#include "embedded/dxl/dxl_reader.h"
#include "embedded/format/item_value.h"

namespace lens {

struct FlagName {
  const char16_t* name;
  quint16 flag;
  quint16 implied;  // set along with it
};
inline constexpr std::array<FlagName, 9> kFlagNames = {{{u"summary", itemflag::Summary, 0},
                                                        {u"sign", itemflag::Sign, 0},
                                                        {u"seal", itemflag::Seal, 0},
                                                        {u"authors", itemflag::Authors, itemflag::Names},
                                                        {u"readers", itemflag::Readers, itemflag::Names},
                                                        {u"names", itemflag::Names, 0},
                                                        {u"placeholder", itemflag::Placeholder, 0},
                                                        {u"protected", itemflag::Protected, 0},
                                                        {u"unchanged", itemflag::Unchanged, 0}}};

// The flags that attributes of the start tag at hand set.
quint16 itemFlags(const DxlReader& in);

// Text, numbers and times are summary items unless the file says otherwise; nothing else is.
bool isSummaryByDefault(quint16 type);

}  // namespace lens
