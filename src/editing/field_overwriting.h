// "Overwrite doc" and "Delete field": the item on display gets the content box as its new value, or goes.
#pragma once

#include "shell/desk.h"
#include "shell/error_modes.h"
#include "shell/low_level_reading.h"

namespace lens {

class FieldOverwriting {
 public:
  FieldOverwriting(Desk& desk, LowLevelReading& lowLevel);

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

  Desk& desk_;
  LowLevelReading& lowLevel_;
};

}  // namespace lens
