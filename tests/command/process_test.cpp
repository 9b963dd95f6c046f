// The program itself, as a process without a display: what no call within the tests can show.
#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>

#include "app/sample_workspace.h"
#include "command/command_fixture.h"

#ifdef Q_OS_LINUX
#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace lens {
namespace {

#ifdef Q_OS_LINUX

class Process : public CommandTest {
 protected:
  Process() {
    environment.remove(u"DISPLAY"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    // Whoever asked for a platform would end with an error.
    environment.insert(u"QT_QPA_PLATFORM"_s, u"there-is-none"_s);
    environment.insert(u"TESSALY_WORKSPACE"_s, place());
    environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
    environment.remove(u"LANGUAGE"_s);
  }
  void prepare(QProcess& process, const QStringList& arguments) {
    process.setProgram(QStringLiteral(LENS_PROGRAM));
    process.setArguments(arguments);
    process.setProcessEnvironment(environment);
  }
  static CommandResult resultOf(QProcess& process) {
    EXPECT_TRUE(process.waitForFinished()) << "it did not end";
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    CommandResult result{process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()), {}};
    if (process.processChannelMode() != QProcess::MergedChannels)
      result.error = QString::fromUtf8(process.readAllStandardError());
    return result;
  }
  CommandResult start(const QStringList& arguments, const std::function<void(QProcess&)>& also = {}) {
    QProcess process;
    prepare(process, arguments);
    if (also) also(process);
    process.start();
    process.closeWriteChannel();
    return resultOf(process);
  }

  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(Process, RunsWithoutADisplay) {
  save(memo(u"Gr\u00FC\u00DFe"_s));
  const CommandResult result = start({u"documents"_s, u"mail.nsf"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  EXPECT_EQ(result.error, QString());
  EXPECT_EQ(result.out, u"000008FA  Memo                  Gr\u00FC\u00DFe\n"_s);
}

TEST_F(Process, SaysNothingBesidesItsErrorInALocaleThatIsNotUtf8) {
  environment.insert(u"LC_ALL"_s, u"C"_s);
  const CommandResult result = start({u"documents"_s, u"none.nsf"_s});
  EXPECT_EQ(result.code, exitcode::Failed);
  EXPECT_EQ(result.errorLines().size(), 1) << result.error.toStdString();
}

TEST_F(Process, AFullDeviceIsToldByTheExitCode) {
  const CommandResult result =
      start({u"databases"_s}, [](QProcess& process) { process.setStandardOutputFile(u"/dev/full"_s); });
  EXPECT_EQ(result.code, exitcode::Failed);
  EXPECT_EQ(result.error, u"databases: standard output: No space left on device\n"_s);
}

TEST_F(Process, AClosedPipeIsAnErrorAndNoSignal) {
  save(memo(u"A"_s));
  const QString mail = u"mail.nsf"_s, note = u"8FA"_s;
  for (const QStringList& command : {QStringList{u"databases"_s},
                                     {u"documents"_s, mail},
                                     {u"show"_s, mail, note},
                                     {u"items"_s, mail},
                                     {u"export"_s, mail},
                                     {u"export"_s, mail, u"--json"_s},
                                     {u"export"_s, mail, u"--csv"_s},
                                     {u"set"_s, mail, note, u"Subject"_s, u"B"_s, u"--yes"_s},
                                     {u"evaluate"_s, mail, note, u"1"_s},
                                     {u"check"_s, u"1"_s},
                                     {u"compare"_s, mail, mail},
                                     {u"integrity"_s, mail}}) {
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ::close(ends[0]);
    const CommandResult result = start(command, [&](QProcess& process) {
      process.setChildProcessModifier([writer = ends[1]] { ::dup2(writer, STDOUT_FILENO); });
    });
    ::close(ends[1]);
    EXPECT_EQ(result.code, exitcode::Failed);
    EXPECT_EQ(result.error, command[0] + u": standard output: Broken pipe\n"_s);
  }
}

#ifdef LENS_TRANSLATED
TEST_F(Process, SpeaksTheLanguageOfItsUserAndWritesTheSameForPrograms) {
  environment.insert(u"LC_ALL"_s, u"de_DE.UTF-8"_s);
  environment.insert(u"LANGUAGE"_s, u"de"_s);
  EXPECT_TRUE(start({u"--help"_s}).out.startsWith(u"Aufruf: TessalyAndDocContent"_s));
  EXPECT_TRUE(start({u"documents"_s, u"mail.nsf"_s, u"--view"_s, u"None"_s})
                  .error.contains(u"es gibt keine Ansicht \u201ENone\u201C"_s));
  EXPECT_TRUE(
      start({u"nsf"_s, u"info"_s, u"none.nsf"_s}).error.contains(u"die Datei kann nicht gelesen werden"_s));
  save(memo(u"A"_s));
  const QString german = start({u"documents"_s, u"mail.nsf"_s, u"--json"_s}).out;
  environment.insert(u"LANGUAGE"_s, u"en"_s);
  environment.insert(u"LC_ALL"_s, u"C.UTF-8"_s);
  EXPECT_EQ(start({u"documents"_s, u"mail.nsf"_s, u"--json"_s}).out, german);
  EXPECT_TRUE(start({u"--help"_s}).out.startsWith(u"Usage: "_s));
}
#endif

// Another file would get its number, and all that is written.
TEST_F(Process, AClosedStandardOutputIsTold) {
  const CommandResult result = start({u"databases"_s}, [](QProcess& process) {
    process.setChildProcessModifier([] { ::close(STDOUT_FILENO); });
  });
  EXPECT_EQ(result.code, exitcode::Failed);
  EXPECT_EQ(result.error, u"TessalyAndDocContent: standard output is closed\n"_s);
}

TEST_F(Process, AsksNobodyWhereStandardInputIsNoTerminal) {
  save(memo(u"Old"_s));
  const CommandResult result = start({u"set"_s, u"mail.nsf"_s, u"8FA"_s, u"Subject"_s, u"New"_s});
  EXPECT_EQ(result.code, exitcode::Failed);
  EXPECT_TRUE(result.error.contains(u"--yes"_s)) << result.error.toStdString();
  EXPECT_EQ(start({u"set"_s, u"mail.nsf"_s, u"8FA"_s, u"Subject"_s, u"New"_s, u"--yes"_s}).code,
            exitcode::Done);
  EXPECT_EQ(read(NoteId(0x8FA)).text(u"Subject"), u"New"_s);
}

// Its output is a pipe that nobody empties, so it is at work, and waits, when the signal comes.
TEST_F(Process, AnInterruptionEndsItInOrder) {
  {
    Database::Transaction transaction(*mail);
    for (int i = 0; i < 3000; ++i) save(memo(u"Memo %1"_s.arg(i)));
    transaction.commit();
  }
  int ends[2];
  ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
  QProcess process;
  prepare(process, {u"export"_s, u"mail.nsf"_s, u"--json"_s});
  process.setChildProcessModifier([writer = ends[1]] { ::dup2(writer, STDOUT_FILENO); });
  process.start();
  ASSERT_TRUE(process.waitForStarted());
  ::close(ends[1]);
  const int most = ::fcntl(ends[0], F_GETPIPE_SZ);
  QElapsedTimer waited;
  int inside = 0;
  for (waited.start(); inside < most && waited.elapsed() < 20'000; ::usleep(1000))
    ::ioctl(ends[0], FIONREAD, &inside);
  ASSERT_EQ(inside, most);
  ::kill(pid_t(process.processId()), SIGINT);
  QByteArray piece(1 << 16, 0), all;
  for (ssize_t size; (size = ::read(ends[0], piece.data(), size_t(piece.size()))) > 0;)
    all.append(piece.first(size));
  ::close(ends[0]);
  const CommandResult result = resultOf(process);
  EXPECT_EQ(result.code, exitcode::Interrupted);
  EXPECT_EQ(result.error, u"export: interrupted\n"_s);
  EXPECT_LT(all.count('\n'), 3000);
}

// Takes the examples out of the document: "$ " begins a command, the lines behind it are what it writes.
TEST_F(Process, TheExamplesOfTheDocumentRunAsWritten) {
  fillFirstTime(*Workspace::open(file(u"samples"_s), Regional(QLocale::c())));
  environment.insert(u"TESSALY_WORKSPACE"_s, file(u"samples"_s));
  environment.insert(u"TZ"_s, u"Europe/Berlin"_s);
  environment.insert(u"PATH"_s,
                     QFileInfo(QStringLiteral(LENS_PROGRAM)).path() + u':' + environment.value(u"PATH"_s));
  QDir().mkpath(file(u"desk"_s));
  const QString text = QString::fromUtf8(contentOf(QStringLiteral(LENS_SOURCE_DIR "/docs/command.md")));
  static const QRegularExpression block(u"```console\n(.*?)```"_s,
                                        QRegularExpression::DotMatchesEverythingOption);
  int examples = 0;
  for (const QRegularExpressionMatch& match : block.globalMatch(text)) {
    for (const QString& example :
         match.captured(1).split(QRegularExpression(u"(^|\n)\\$ "_s), Qt::SkipEmptyParts)) {
      const QString line = example.section(u'\n', 0, 0), expected = example.section(u'\n', 1);
      QProcess bash;
      bash.setProgram(u"bash"_s);
      bash.setArguments({u"-c"_s, line});
      bash.setProcessEnvironment(environment);
      bash.setWorkingDirectory(file(u"desk"_s));
      bash.setProcessChannelMode(QProcess::MergedChannels);
      bash.start();
      bash.closeWriteChannel();
      CommandResult result = resultOf(bash);
      result.out.remove(u'\r');
      EXPECT_EQ(result.out.trimmed(), expected.trimmed()) << line.toStdString();
      ++examples;
    }
  }
  EXPECT_GT(examples, 12);
}

#endif

}  // namespace
}  // namespace lens
