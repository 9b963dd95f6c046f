// Fills the shared type table and its pick list, once, at the start.
#pragma once

#include "controls/combo_box.h"
#include "host/host.h"
#include "shell/globals.h"

namespace lens {

// A second run would find its keys taken and say so in the error box.
void addDocTypes(Globals& state, ComboBox& cmbFieldType, Host& host);

}  // namespace lens
