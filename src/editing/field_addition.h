// "Add new field": one new item in the document on display.
#pragma once

#include "shell/desk.h"
#include "shell/error_modes.h"
#include "shell/low_level_reading.h"

namespace lens {

class FieldAddition {
 public:
  FieldAddition(Desk& desk, LowLevelReading& lowLevel);

  void cmdAddField_Click();

 private:
  void addValue(Statements& step, const QString& name);
  void readAnew(Statements& step);

  Desk& desk_;
  LowLevelReading& lowLevel_;
};

}  // namespace lens
