// The error modes, as tools: a procedure says with them what a failure means to it.
//
//   trapped    any failure ends the statements and shows the error box; the procedure goes on behind
//   Continue   a failing statement is passed over and the next one runs
//   Told       a failing statement shows the error box and the next one runs
//   Statements plain code at first, Continue from a date on
//   (none)     plain code: the failure goes to the caller
//
// The end of the process (ProcessEnded in tests) is no failure and passes through all of them.
#pragma once

#include <QString>
#include <utility>

#include "host/host.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

// Where an error box says that a failure happened.
struct Procedure {
  QString name;
  QString place = u"Formular Form1"_s;
};

// "Error 91 (...) in procedure cmdEnd_Click of Formular Form1"
inline QString errorText(const RuntimeError& error, const Procedure& procedure) {
  return u"Error %1 ("_s.arg(error.number()) + error.description() + u") in procedure " + procedure.name +
         u" of " + procedure.place;
}

// Runs the statements; a failure ends them and shows the error box. True when all of them ran.
template <class Body>
bool trapped(Host& host, const Procedure& procedure, Body&& statements) {
  try {
    statements();
    return true;
  } catch (const RuntimeError& error) {
    host.messageBox(errorText(error, procedure));
    return false;
  }
}

// The modes that run a procedure statement by statement: each has an operator() that runs one statement and
// is false when it failed and the next one shall run.
template <class Mode>
class StatementMode {
 public:
  // A condition of an "if": one that cannot be told counts as false.
  template <class Condition>
  bool holds(Condition&& condition) {
    bool result = false;
    static_cast<Mode&> (*this)([&] { result = condition(); });
    return result;
  }
};

// The mode in which a failing statement is passed over. The number of the last failure is kept
// until it is cleared; later success does not clear it.
class Continue : public StatementMode<Continue> {
 public:
  // Runs one statement. False when it failed.
  template <class Statement>
  bool operator()(Statement&& statement) {
    try {
      statement();
      return true;
    } catch (const RuntimeError& error) {
      number_ = error.number();
      description_ = error.description();
      return false;
    }
  }

  // Number of the last failure, 0 when there was none.
  int number() const { return number_; }
  QString description() const { return description_; }
  void clear() {
    number_ = 0;
    description_.clear();
  }

 private:
  int number_ = 0;
  QString description_;
};

// The mode in which a failing statement shows the error box, whatever its number, and the next one runs.
class Told : public StatementMode<Told> {
 public:
  Told(Host& host, Procedure procedure) : host_(host), procedure_(std::move(procedure)) {}

  // Runs one statement. False when it failed.
  template <class Statement>
  bool operator()(Statement&& statement) {
    return trapped(host_, procedure_, statement);
  }

 private:
  Host& host_;
  Procedure procedure_;
};

// The mode of a procedure whose trap is switched off on the way. Until then a failure goes to the procedure's
// trap; afterwards it is passed over like in Continue. A date item switches it off
// for the rest of the command.
class Statements : public StatementMode<Statements> {
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
