#pragma once

namespace lens::bench {

// When the program was started as a child that shows a first screen and ends ("--first-screen=lens"
// or "--first-screen=bare"), does that and gives true.
bool ranFirstScreen(int argc, char** argv);

}  // namespace lens::bench
