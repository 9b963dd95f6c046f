// The settings file of the bulk tool, which carries its lists over from one showing to the next.
//
// Nothing here traps a failure: a file that cannot be read or written goes to the caller, for the general
// report.
#pragma once

#include "bulk/replic_desk.h"

namespace lens {

class SettingsFile {
 public:
  explicit SettingsFile(ReplicDesk& desk) : desk_(desk) {}

  // Puts the path of the file into gIniPath: in the program's directory, or where no file can be made there
  // in the user's.
  void findSettings();
  // Makes a missing file with the present texts, so that it can be read and changes nothing.
  void provideSettings();
  // Into the controls: the keys first, then each list that the file has; where one is missing, it and those
  // behind it stay as they are.
  void readSettings();
  // Ends the session and writes the file. The old one or the new one is there whole, whenever the program
  // ends; one that may not be changed raises 75 and stays.
  void writeSettings();

 private:
  void readKeys(QByteArrayView file);
  bool readList(QByteArrayView file, QByteArrayView header, ListBox& list);

  ReplicDesk& desk_;
};

}  // namespace lens
