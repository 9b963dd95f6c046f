// Files that come into the client window from elsewhere: dropped on it, or named when the program was
// started.
#pragma once

#include <QObject>
#include <QStringList>

namespace lens {

class DatabaseController;
class ImportController;
struct ClientControls;

class FileOpening : public QObject {
  Q_OBJECT

 public:
  // Takes what is dropped on the window.
  FileOpening(ClientControls& controls, DatabaseController& databases, ImportController& import);

  // Opens databases, the last one on top, and imports everything else as DXL, files and folders together.
  // What cannot be opened is told in the window.
  void open(const QStringList& paths);

 private:
  bool eventFilter(QObject* window, QEvent* event) override;

  ClientControls& controls_;
  DatabaseController& databases_;
  ImportController& import_;
};

}  // namespace lens
