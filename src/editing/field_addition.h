// "Add new field": one new item in the document on display.
#pragma once

#include "host/host.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/low_level_reading.h"
#include "shell/statements.h"

namespace lens {

class FieldAddition {
 public:
  FieldAddition(Form1& form, Globals& state, Host& host, LowLevelReading& lowLevel);

  void cmdAddField_Click();

 private:
  void addValue(Statements& step, const QString& name);
  void readAnew(Statements& step);

  Form1& form_;
  Globals& state_;
  Host& host_;
  LowLevelReading& lowLevel_;
};

}  // namespace lens
