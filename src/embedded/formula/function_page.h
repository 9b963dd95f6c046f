// The page on formulas for users, in Markdown: what the language is, and all functions by family. It is
// made from the table of functions, so that it cannot say what the program does not do.
#pragma once

#include <QString>

namespace lens::formula {

// Ends with a line feed.
QString functionPage();

}  // namespace lens::formula
