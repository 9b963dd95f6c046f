// What the tests of the controls share.
#pragma once

#include <gtest/gtest.h>

#include <QString>
#include <QTest>

#include "controls/event.h"

namespace lens {

// Counts how often an event's procedure ran.
class Counter {
 public:
  explicit Counter(Event<>& event) {
    event = [this] { ++count_; };
  }
  // The count since it was last asked.
  int take() { return std::exchange(count_, 0); }

 private:
  int count_ = 0;
};

// Keeps the numbers of failures that no procedure handled.
class Untrapped {
 public:
  Untrapped() {
    setUntrappedReport([this](const RuntimeError& error) { numbers.append(error.number()); });
  }
  ~Untrapped() { setUntrappedReport({}); }
  QVector<int> numbers;
};

template <class Action>
int errorOf(Action action) {
  try {
    action();
  } catch (const RuntimeError& error) {
    return error.number();
  }
  return 0;
}

inline void showWithFocus(QWidget& widget) {
  widget.show();
  widget.activateWindow();
  widget.setFocus();
  QCoreApplication::processEvents();
}

}  // namespace lens

// Lets failures print texts instead of bytes.
inline void PrintTo(const QString& text, std::ostream* out) {
  *out << '"' << text.toStdString() << '"';
}
