// Writes the rows of one of three lists to a text file and opens it.
#pragma once

#include <functional>

#include "bulk/replic_desk.h"

namespace lens {

class DumpList {
 public:
  explicit DumpList(ReplicDesk& desk);

  // Opens the written file with the program that it belongs to.
  std::function<void(const QString&)> openFile;

  // All rows of the chosen list, marked or not. A path without an extension gets one.
  void cmdPrint_Click();

 private:
  QString completedPath();
  QStringList chosenRows() const;

  ReplicDesk& desk_;
};

}  // namespace lens
