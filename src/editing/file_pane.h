// The small file browser of the window and what it is for: taking attachments out of the document on display
// and putting files into one of its rich text items.
#pragma once

#include "shell/desk.h"

namespace lens {

class FilePane {
 public:
  explicit FilePane(Desk& desk);

  void cmdExtractAtt_Click();
  void cmdLoadAtt_Click();
  void cmdRemoveFile_Click();
  void Dir1_Change();
  void Drive1_Change();
  void Dir1_MouseDown(int button);
  void File1_DblClick();
  void File1_MouseDown(int button);

  // Opens a file through the shell. The status as text, -1 for success, and behind it " , " and a message
  // where there is one. The user sees a general box only. Where names are case-sensitive, a file whose name
  // differs in the case of its letters is opened too.
  QString ShellOpenFile(const QString& path);

 private:
  void showStartDirectory();
  QString openDirectory() const;
  int selectedFile() const;
  QString filePath(int row) const;
  void tellChangedNames(const QStringList& changes);
  void showFirstFile();

  Desk& desk_;
};

}  // namespace lens
