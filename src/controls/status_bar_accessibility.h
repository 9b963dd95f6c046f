// What a status bar tells screen readers: its panels with their texts, each of which can be pressed.
#pragma once

namespace lens {

// From here on, in the whole program.
void makeStatusBarsAccessible();

}  // namespace lens
