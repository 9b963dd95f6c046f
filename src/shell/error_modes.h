// The four error modes, as tools: a procedure says with them what a failure means to it.
//
//   trapped    any failure ends the statements and shows the error box; the procedure goes on behind
//   Continue   a failing statement is passed over and the next one runs
//   Told       a failing statement shows the error box and the next one runs
//   (none)     plain code: the failure goes to the caller
//
// The end of the process (ProcessEnded in tests) is no failure and passes through all of them.
#pragma once

#include <QString>
#include <optional>
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
template <class Statements>
bool trapped(Host& host, const Procedure& procedure, Statements&& statements) {
  try {
    statements();
    return true;
  } catch (const RuntimeError& error) {
    host.messageBox(errorText(error, procedure));
    return false;
  }
}

// The mode in which a failing statement is passed over. The last failure is kept until it is
// cleared; later success does not clear it.
class Continue {
 public:
  // Runs one statement. False when it failed.
  template <class Statement>
  bool operator()(Statement&& statement) {
    try {
      statement();
      return true;
    } catch (const RuntimeError& error) {
      last_ = error;
      return false;
    }
  }

  // A condition of an "if": one that cannot be told counts as false.
  template <class Condition>
  bool holds(Condition&& condition) {
    bool result = false;
    (*this)([&] { result = condition(); });
    return result;
  }

  // Number of the last failure, 0 when there was none.
  int number() const { return last_ ? last_->number() : 0; }
  const std::optional<RuntimeError>& last() const { return last_; }
  void clear() { last_.reset(); }

 private:
  std::optional<RuntimeError> last_;
};

// The mode in which a failing statement shows the error box, whatever its number, and the next one runs.
class Told {
 public:
  Told(Host& host, Procedure procedure) : host_(host), procedure_(std::move(procedure)) {}

  // Runs one statement. False when it failed.
  template <class Statement>
  bool operator()(Statement&& statement) {
    return trapped(host_, procedure_, statement);
  }

  // A condition of an "if": one that cannot be told counts as false.
  template <class Condition>
  bool holds(Condition&& condition) {
    bool result = false;
    (*this)([&] { result = condition(); });
    return result;
  }

 private:
  Host& host_;
  Procedure procedure_;
};

}  // namespace lens
