#include "command/command_main.h"

#include <QCoreApplication>
#include <QFile>
#include <csignal>
#include <cstdio>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif
#ifdef Q_OS_WIN
#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <QScopeGuard>
// Behind the types that it needs.
#include <shellapi.h>
#endif

#include "command/command_text.h"
#include "command/run_command.h"
#include "embedded/workspace/chosen_workspace.h"
#include "host/shipped_files.h"
#include "notes/literals.h"

namespace lens {
namespace {

volatile std::sig_atomic_t interruptions = 0;

void noteInterruption(int) {
  interruptions = 1;
}

// The first Ctrl+C lets the command end in order, the second one ends it at once. A closed pipe is an error
// like any other, which the command tells.
void watchSignals() {
#ifdef Q_OS_UNIX
  struct sigaction action = {};
  action.sa_handler = noteInterruption;
  action.sa_flags = int(SA_RESETHAND);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
  std::signal(SIGPIPE, SIG_IGN);
#else
  std::signal(SIGINT, noteInterruption);
#endif
}

#ifdef Q_OS_WIN
bool isOpen(std::FILE* end) {
  return _fileno(end) >= 0 && _get_osfhandle(_fileno(end)) != -1;
}

// What a command says is UTF-8, with a mark that erases a line: a console is told to take both, and left as
// it was.
class ConsoleModes {
 public:
  ConsoleModes() : page_(GetConsoleOutputCP()) {
    if (page_ == 0) return;  // there is no console
    SetConsoleOutputCP(CP_UTF8);
    screen_ = CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                          nullptr, OPEN_EXISTING, 0, nullptr);
    known_ = GetConsoleMode(screen_, &mode_);
    if (known_) SetConsoleMode(screen_, mode_ | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
  }
  ~ConsoleModes() {
    if (page_ == 0) return;
    if (known_) SetConsoleMode(screen_, mode_);
    CloseHandle(screen_);
    SetConsoleOutputCP(page_);
  }
  ConsoleModes(const ConsoleModes&) = delete;
  ConsoleModes& operator=(const ConsoleModes&) = delete;

 private:
  UINT page_;
  HANDLE screen_ = INVALID_HANDLE_VALUE;
  DWORD mode_ = 0;
  bool known_ = false;
};
#endif

// Where standard output was closed, the next file that is opened would get its number and all that is
// written.
bool secureStandardFiles() {
#ifdef Q_OS_UNIX
  const bool isOutputOpen = ::fcntl(STDOUT_FILENO, F_GETFD) >= 0;
  int file = 0;
  while (file >= 0 && file <= STDERR_FILENO) file = ::open("/dev/null", O_RDWR);
  if (file > STDERR_FILENO) ::close(file);
  return isOutputOpen;
#else
  // A program with windows is given no console: what was not redirected goes to the one that it was started
  // from.
  if (isOpen(stdout) && isOpen(stderr)) return true;
  if (!AttachConsole(ATTACH_PARENT_PROCESS)) return isOpen(stdout);
  if (!isOpen(stdin)) std::freopen("CONIN$", "r", stdin);
  if (!isOpen(stderr)) std::freopen("CONOUT$", "w", stderr);
  return isOpen(stdout) || std::freopen("CONOUT$", "w", stdout) != nullptr;
#endif
}

bool isTerminal(std::FILE* file) {
#ifdef Q_OS_WIN
  // Others are terminals to the C library that are none to a user, such as NUL.
  DWORD mode = 0;
  return isOpen(file) && GetConsoleMode(HANDLE(_get_osfhandle(_fileno(file))), &mode);
#else
  return ::isatty(::fileno(file)) != 0;
#endif
}

void openEnd(QFile& file, std::FILE* end, QIODevice::OpenMode mode) {
#ifdef Q_OS_WIN
  _setmode(_fileno(end), _O_BINARY);
  file.open(_fileno(end), mode);
#else
  file.open(::fileno(end), mode);
#endif
}

// What the libraries remark (a locale that is not UTF-8, say) is nothing to whoever reads the errors of a
// command.
void onlyGraveMessages(QtMsgType type, const QMessageLogContext&, const QString& text) {
  if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", qPrintable(text));
}

int runProcess(int argc, char** argv) {
  const bool isOutputOpen = secureStandardFiles();
#ifdef Q_OS_WIN
  const ConsoleModes modes;
#endif
  watchSignals();
  qInstallMessageHandler(onlyGraveMessages);
  QCoreApplication application(argc, argv);
  speakLanguageOf(QLocale::system());
  QFile in, out, error;
  openEnd(in, stdin, QIODevice::ReadOnly);
  openEnd(out, stdout, QIODevice::WriteOnly | QIODevice::Unbuffered);
  openEnd(error, stderr, QIODevice::WriteOnly | QIODevice::Unbuffered);
  if (!isOutputOpen) {
    error.write(CommandText::tr("TessalyAndDocContent: standard output is closed\n").toUtf8());
    return exitcode::Failed;
  }
  const auto interrupted = [] { return interruptions != 0; };
  const Console::Ends ends{
      &out, &error, isTerminal(stdin) ? &in : nullptr, isTerminal(stdout), isTerminal(stderr), interrupted};
  return runCommand(QCoreApplication::arguments().sliced(1), ends, [&](const QString& workspace) {
    return openDoors(workspace.isEmpty() ? chosenWorkspace() : workspace, Regional(QLocale::system()),
                     interrupted);
  });
}

// What stands behind the program's name.
#ifdef Q_OS_WIN
// Those of main() have lost all letters that the code page lacks.
QStringList argumentsOfProcess(int, char**) {
  int count = 0;
  wchar_t** const given = CommandLineToArgvW(GetCommandLineW(), &count);
  const auto freed = qScopeGuard([given] { LocalFree(given); });
  QStringList arguments;
  for (int place = 1; given && place < count; ++place) arguments += QString::fromWCharArray(given[place]);
  return arguments;
}
#else
QStringList argumentsOfProcess(int argc, char** argv) {
  QStringList arguments;
  for (int place = 1; place < argc; ++place) arguments += QString::fromLocal8Bit(argv[place]);
  return arguments;
}
#endif

}  // namespace

std::optional<int> runAsCommand(int argc, char** argv) {
  const QStringList arguments = argumentsOfProcess(argc, argv);
  if (isForCommandLine(arguments)) return runProcess(argc, argv);
  const QString workspace = workspaceOfWindows(arguments);
  if (!workspace.isEmpty()) nameWorkspace(workspace);
  return std::nullopt;
}

}  // namespace lens
