// Events of controls: what a procedure connects to and what a control raises.
//
// Code raises an event when it runs another procedure ("run the click of cmdGetDoc") or sets a property. A
// failure goes to that code, after the property has been set. An event that a user fires has nobody behind
// it: a failure there ends in the application's general report and the program goes on. Nothing is ever
// thrown through the toolkit's own signals.
#pragma once

#include <functional>
#include <utility>

#include "notes/runtime_error.h"

namespace lens {

// What happens to a failure that no procedure handled. Installed once by the application (and by
// tests); without it such a failure is dropped.
using UntrappedReport = std::function<void(const RuntimeError&)>;
void setUntrappedReport(UntrappedReport report);
void reportUntrapped(const RuntimeError& error);

template <class... Arguments>
class Event {
 public:
  using Handler = std::function<void(Arguments...)>;

  // One procedure per event, as a control knows its one click procedure. The last one set holds.
  void operator=(Handler handler) { handler_ = std::move(handler); }
  bool isConnected() const { return bool(handler_); }

  // Runs the procedure; its failure goes to the caller.
  void raise(Arguments... arguments) const {
    if (Handler handler = handler_) handler(arguments...);
  }
  // Runs the procedure as an event of its own; a failure ends in the general report.
  void fire(Arguments... arguments) const {
    try {
      raise(arguments...);
    } catch (const RuntimeError& error) {
      reportUntrapped(error);
    }
  }

 private:
  Handler handler_;
};

}  // namespace lens
