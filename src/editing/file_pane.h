// The small file browser of the window and what it is for: taking attachments out of the document on display
// and putting files into one of its rich text items.
#pragma once

#include "host/host.h"
#include "shell/form1.h"
#include "shell/globals.h"

namespace lens {

class FilePane {
 public:
  FilePane(Form1& form, Globals& state, Host& host);

  void cmdExtractAtt_Click();
  void cmdLoadAtt_Click();
  void cmdRemoveFile_Click();
  void Dir1_Change();
  void Drive1_Change();
  void Dir1_MouseDown(int button);
  void File1_DblClick();
  void File1_MouseDown(int button);

  // Opens a file through the shell. The status as text, -1 for success, and behind it " , " and a message
  // where there is one. The user sees a general box only.
  QString ShellOpenFile(const QString& path);

 private:
  QString openDirectory() const;
  int selectedFile() const;
  QString filePath(int row) const;
  void extractFrom(const NotesRichTextItem& item, const QString& directory);
  void showFirstFile();

  Form1& form_;
  Globals& state_;
  Host& host_;
};

}  // namespace lens
