// Notes of a design as their own elements: "form", "view", "agent" and the others.
#pragma once

#include "embedded/dxl/export/export_context.h"

namespace lens {

// Writes a note that came as such an element: it keeps elements, or has formulas as source text in its
// records, which only "formula" tells to other readers. Items that no part of the element stands for are its
// "item" elements. False, and nothing written, when it is none or an import would not give it back.
bool writeDesign(ExportContext& context, const Note& note);

}  // namespace lens
