// The one door to the operating system and the desktop. The desktop host does the real thing; tests
// stand a recording host in its place, with queued answers and every box kept.
//
// Paths use the host's own separator. All calls belong to the user-interface thread.
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>

#include "host/regional.h"

namespace lens {

// Style codes of a message box.
namespace box {
inline constexpr int Plain = 0;
inline constexpr int OkCancel = 1;
inline constexpr int YesNo = 4;
inline constexpr int Critical = 16;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;
}  // namespace box

// Answers of a message box.
namespace answer {
inline constexpr int Ok = 1;
inline constexpr int Cancel = 2;
inline constexpr int Yes = 6;
inline constexpr int No = 7;
}  // namespace answer

// Pointer codes.
namespace pointer {
inline constexpr int Default = 0;
inline constexpr int Hourglass = 11;
inline constexpr int ArrowHourglass = 13;  // work goes on, and buttons can be pressed meanwhile
}  // namespace pointer

// Sends a command to the console of a server and fills the reply buffer; a result above 0 means that it holds
// a reply, NUL-ended. Server and command are NUL-ended texts in the system's code page.
using RemoteCommand = std::function<qint16(QByteArray server, QByteArray command, QByteArray& reply)>;

class Host {
 public:
  virtual ~Host() = default;

  // Shows a box and waits for it; events go on meanwhile. An empty title means the program's own.
  // The text is plain text, whatever marks it holds.
  virtual int messageBox(const QString& text, int style = box::Plain, const QString& title = {}) = 0;
  // Takes the events that wait, then returns.
  virtual void yield() = 0;
  // Whether the user pressed Esc since long work began, which nobody has seen yet. Other input waits, nothing
  // else runs. It may be asked very often.
  virtual bool escapePressed() = 0;
  // Sets the one screen pointer; it replaces what was set before, nothing is stacked.
  virtual void setPointer(int code) = 0;
  // Plays a sound file to its end without taking events; silence on any trouble. It returns a second behind
  // the end of the sound at the latest.
  virtual void playSound(const QString& path) = 0;

  virtual QDateTime now() = 0;
  virtual const Regional& regional() = 0;

  // Directory of the executable, without a separator at the end.
  virtual QString programDirectory() = 0;
  // A directory of the user's own for what the program keeps, made when it is missing; "" when it cannot be.
  // An installed program cannot write into its directory.
  virtual QString userDirectory() = 0;
  // "" when the system names none.
  virtual QString tempDirectory() = 0;
  // The existing file that a path means, "" when there is none. Where names are case-sensitive a
  // look-up that fails is repeated without regard to case.
  virtual QString findFile(const QString& path) = 0;
  // Directory and name as one path: a separator between them, save where the directory ends in one.
  virtual QString joinPath(const QString& directory, const QString& name) = 0;
  // Deletes a file for good; raises 53 when there is none and 70 or 75 when it cannot be deleted.
  virtual void deleteFile(const QString& path) = 0;
  // Opens a file with the program that it belongs to, without waiting for it. Above 32 it was started;
  // otherwise 2 no such file, 3 no such directory, 31 no program belongs to it.
  virtual int shellOpen(const QString& path) = 0;
  // Lets the user choose a program for a file and starts it; its process ID, 0 when none was started.
  virtual qint64 openWith(const QString& path) = 0;
  // Shows what the system knows of a file or directory.
  virtual void showProperties(const QString& path) = 0;
  // Lets the dynamic linker look in a directory too; nothing where the platform has no such call.
  virtual void addLibraryDirectory(const QString& directory) = 0;

  // Puts an icon into the desktop's tray; its callback gets mouse messages (513 left button down, 517
  // right button up). False when the desktop has no tray: nothing is shown then.
  virtual bool addTrayIcon(const QString& tip, std::function<void(int)> callback) = 0;
  virtual void removeTrayIcon() = 0;

  // Waits without limit for a process to end; returns at once when it cannot be opened.
  virtual void waitForProcess(qint64 processId) = 0;
  // Ends all other processes of this user whose program file has one of these names, capitals or not; true
  // when this process is one of them.
  virtual bool endProcesses(const QStringList& programs) = 0;
  // The console library beside the program, empty when there is none; raises 453 when it lacks the function.
  virtual RemoteCommand remoteCommand() = 0;
  // Ends the process at once: no unwinding, no destructors. A test double throws ProcessEnded.
  [[noreturn]] virtual void endProcess() = 0;
};

// What a test host throws where the real one ends the process. No error mode catches it.
struct ProcessEnded {};

}  // namespace lens
