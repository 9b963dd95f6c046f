// What works on the machine itself: ending a hung client with its helpers and this program, the client's
// settings file, and the data and temporary directories in the file pane.
#pragma once

#include <functional>

#include "shell/desk.h"

namespace lens {

class HostTools {
 public:
  explicit HostTools(Desk& desk);

  // Opens a file with the program that belongs to it and tells when it cannot; the file pane knows how.
  std::function<void(const QString& path)> openFile;

  // Ends the client, then this program. Nothing is asked, nothing is told.
  void cmdKillNotes_Click();
  void cmdIni_Click();
  void cmdDataDir_Click();
  void cmdTempDir_Click();

 private:
  void showDirectory(const std::function<QString()>& directory);

  Desk& desk_;
};

}  // namespace lens
