// "Overwrite doc" and "Delete field": the item on display gets the content box as its new value, or goes.
#pragma once

#include "host/host.h"
#include "shell/form1.h"
#include "shell/globals.h"
#include "shell/low_level_reading.h"
#include "shell/statements.h"

namespace lens {

class FieldOverwriting {
 public:
  FieldOverwriting(Form1& form, Globals& state, Host& host, LowLevelReading& lowLevel);

  void cmdOverwrite_Click();
  void cmdDelField_Click();

 private:
  void overwriteItem(Statements& step, const QString& name);
  bool writeValue(Statements& step, const QString& name, const NotesItem& item, int type);
  void writeText(Statements& step, const QString& name);
  void writeNumbers(Statements& step, const QString& name);
  bool replaceText(Statements& step, const NotesItem& item);
  void readAnew(Statements& step);
  int selectedItem(QString& name) const;
  void clearItemControls();

  Form1& form_;
  Globals& state_;
  Host& host_;
  LowLevelReading& lowLevel_;
};

}  // namespace lens
