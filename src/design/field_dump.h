// Writes the field list to a text file: the button, and the procedures of the window that asks where to.
#pragma once

#include <functional>

#include "design/dump_to_file.h"
#include "shell/desk.h"

namespace lens {

class FieldDump {
 public:
  explicit FieldDump(Desk& desk);

  // Opens the written file with the program that it belongs to.
  std::function<void(const QString&)> openFile;

  // Every click makes a window of its own; what it writes is the field list at the moment of OK.
  void cmdDump_Click();
  void Form_Load(DumpToFile& window);
  void cmdOpenFile_Click(DumpToFile& window);
  void cmdOK_Click(DumpToFile& window);
  void cmdCancel_Click(DumpToFile& window);

 private:
  QStringList lines(int width, bool content);

  Desk& desk_;
};

}  // namespace lens
