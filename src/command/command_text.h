// What the command line says to people, in their language. What programs read (JSON, lines of lists) is the
// same in all of them.
#pragma once

#include <QCoreApplication>

namespace lens {

class CommandText {
  Q_DECLARE_TR_FUNCTIONS(lens::CommandText)
};

}  // namespace lens
