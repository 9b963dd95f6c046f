// Statement by statement in a procedure whose trap is switched off on the way.
//
// Until then a failure goes to the procedure's trap; afterwards it is passed over like in Continue, and
// the last one is kept. A date item switches it off for the rest of the command.
#pragma once

#include "shell/error_modes.h"

namespace lens {

class Statements {
 public:
  // A failure of this number is passed over even while the trap is on; 0 means none.
  explicit Statements(int passedOver = 0) : passedOver_(passedOver) {}

  // Runs one statement. False when it failed and was passed over; any other failure goes on.
  template <class Statement>
  bool operator()(Statement&& statement) {
    if (off_) return continued_(statement);
    try {
      statement();
      return true;
    } catch (const RuntimeError& error) {
      if (passedOver_ == 0 || error.number() != passedOver_) throw;
      return false;
    }
  }
  // A condition of an "if": one that cannot be told and is passed over counts as false.
  template <class Condition>
  bool holds(Condition&& condition) {
    bool result = false;
    (*this)([&] { result = condition(); });
    return result;
  }

  // The mode from now on, for the date lines that switch to it.
  Continue& switchTrapOff() {
    off_ = true;
    return continued_;
  }

 private:
  int passedOver_;
  bool off_ = false;
  Continue continued_;
};

}  // namespace lens
