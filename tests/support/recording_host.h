// A host for tests: answers come from a queue, every box is kept with text, title and style, and the
// clock, the region and the directories are what the test says.
#pragma once

#include <QDir>
#include <QQueue>
#include <QStringList>
#include <QTemporaryDir>
#include <QVector>

#include "host/host.h"
#include "host/paths.h"

namespace lens {

struct ShownBox {
  QString text;
  int style = 0;
  QString title;
  bool operator==(const ShownBox&) const = default;
};

// How a failing test prints a box.
inline void PrintTo(const ShownBox& box, std::ostream* out) {
  *out << "box(\"" << box.text.toStdString() << "\", style " << box.style << ", title \""
       << box.title.toStdString() << "\")";
}

class RecordingHost : public Host {
 public:
  explicit RecordingHost(const QLocale& locale = QLocale(QLocale::German, QLocale::Germany))
      : regional_(locale) {}

  QVector<ShownBox> boxes;
  QQueue<int> answers;  // for boxes to come; an empty queue answers OK or Yes
  std::function<void(const ShownBox&)> whileBoxIsShown;
  int pointerCode = pointer::Default;
  QVector<int> pointers;  // all that were set, in order
  QStringList sounds;
  std::function<void()> whileSoundPlays;
  int yields = 0;
  std::function<void()> whileYielding;  // the events that wait, when the program takes them
  int escapesAsked = 0;
  std::function<bool()> whenEscapeIsAsked;  // whether Esc was pressed; never without it
  QDateTime clock = QDateTime(QDate(2024, 3, 11), QTime(14, 5, 9));
  // Inside one directory of its own, so that no test writes anywhere else. None of them is there at first.
  QTemporaryDir directory;
  QString programDir = directory.filePath(QStringLiteral("program")),
          userDir = directory.filePath(QStringLiteral("user")),
          tempDir = directory.filePath(QStringLiteral("temp"));
  bool hasTray = true;
  std::function<void(int)> trayCallback;  // set while the icon is shown
  QString trayTip;
  QVector<qint64> waitedFor;
  int processEnds = 0;
  QVector<QStringList> endedProcesses;  // the names of each call
  std::function<void(const QStringList&)> whileEnding;
  bool isOwnProgram = false;                      // among the names of the last call
  std::function<RemoteCommand()> consoleLibrary;  // none without it
  int shellCode = 33;                             // what opening a file gives
  qint64 chosenProgram = 0;
  QStringList opened, openedWith, propertiesShown, deletedFiles;

  void setRegion(const QLocale& locale) { regional_ = Regional(locale); }
  QStringList boxTexts() const {
    QStringList texts;
    for (const ShownBox& box : boxes) texts += box.text;
    return texts;
  }

  int messageBox(const QString& text, int style, const QString& title) override {
    boxes.push_back({text, style, title});
    if (whileBoxIsShown) whileBoxIsShown(boxes.back());
    if (!answers.isEmpty()) return answers.dequeue();
    return (style & 0x0F) == box::YesNo ? answer::Yes : answer::Ok;
  }
  void yield() override {
    ++yields;
    if (whileYielding) whileYielding();
  }
  bool escapePressed() override {
    ++escapesAsked;
    return whenEscapeIsAsked && whenEscapeIsAsked();
  }
  void setPointer(int code) override {
    pointerCode = code;
    pointers += code;
  }
  void playSound(const QString& path) override {
    sounds += path;
    if (whileSoundPlays) whileSoundPlays();
  }
  QDateTime now() override { return clock; }
  const Regional& regional() override { return regional_; }
  QString programDirectory() override { return programDir; }
  QString userDirectory() override {
    return !userDir.isEmpty() && QDir().mkpath(userDir) ? userDir : QString();
  }
  QString tempDirectory() override { return tempDir; }
  QString findFile(const QString& path) override { return findPath(path); }
  QString joinPath(const QString& directory, const QString& name) override {
    return joinedPath(directory, name);
  }
  void deleteFile(const QString& path) override {
    deletedFiles += path;
    removeFile(path);
  }
  int shellOpen(const QString& path) override {
    opened += path;
    return shellCode;
  }
  qint64 openWith(const QString& path) override {
    openedWith += path;
    return chosenProgram;
  }
  void showProperties(const QString& path) override { propertiesShown += path; }
  void addLibraryDirectory(const QString&) override {}
  bool addTrayIcon(const QString& tip, std::function<void(int)> callback) override {
    if (!hasTray) return false;
    trayTip = tip;
    trayCallback = std::move(callback);
    return true;
  }
  void removeTrayIcon() override { trayCallback = nullptr; }
  void waitForProcess(qint64 processId) override { waitedFor += processId; }
  bool endProcesses(const QStringList& programs) override {
    endedProcesses += programs;
    if (whileEnding) whileEnding(programs);
    return isOwnProgram && programs.contains(u"TessalyAndDocContent"_s);
  }
  RemoteCommand remoteCommand() override { return consoleLibrary ? consoleLibrary() : RemoteCommand(); }
  [[noreturn]] void endProcess() override {
    ++processEnds;
    throw ProcessEnded{};
  }

 private:
  Regional regional_;
};

}  // namespace lens
