// The command line itself: which words are a command, help, version, options before and behind the command;
// and that the manual page and the shell's completion know all of it.
#include <QProcess>

#include "command/command_fixture.h"
#include "notes/version.h"

namespace lens {
namespace {

class CommandLine : public CommandTest {
 protected:
  static QString shipped(const QString& path) {
    return QString::fromUtf8(contentOf(QStringLiteral(LENS_SOURCE_DIR "/") + path));
  }
  static QStringList optionsOf(const CommandRow& command) {
    QStringList names;
    for (const OptionRow& option : command.options) names += QString::fromLatin1(option.name);
    if (command.choosesDocuments)
      for (const OptionRow& option : choosingOptions()) names += QString::fromLatin1(option.name);
    return names;
  }
};

TEST_F(CommandLine, WithoutACommandTheWindowsOpen) {
  for (const QStringList& arguments : {QStringList(),
                                       {u"--workspace"_s, u"/some/where"_s},
                                       {u"-style"_s, u"fusion"_s},
                                       {u"-platform"_s, u"offscreen"_s},
                                       {u"--style=fusion"_s},
                                       {u"-style"_s, u"show"_s},
                                       {directory.path()},
                                       {dxlFile(u"a.dxl"_s, 1)}})
    EXPECT_FALSE(isForCommandLine(arguments)) << arguments.join(u' ').toStdString();
}

TEST_F(CommandLine, ACommandHelpVersionAndAMistypedWordAreForTheCommandLine) {
  for (const QStringList& arguments : {QStringList{u"databases"_s},
                                       {u"--json"_s, u"databases"_s},
                                       {u"--workspace"_s, u"/x"_s, u"show"_s},
                                       {u"--help"_s},
                                       {u"--version"_s},
                                       {u"docments"_s, u"mail.nsf"_s},
                                       {u"show"_s, u"--bogus"_s}})
    EXPECT_TRUE(isForCommandLine(arguments)) << arguments.join(u' ').toStdString();
}

TEST_F(CommandLine, AWorkspaceWithoutACommandIsThatOfTheWindows) {
  EXPECT_EQ(workspaceOfWindows({u"--workspace"_s, u"/some/where"_s}), u"/some/where"_s);
  EXPECT_EQ(workspaceOfWindows({u"--workspace=/some/where"_s}), u"/some/where"_s);
  EXPECT_EQ(workspaceOfWindows({}), QString());
  EXPECT_EQ(workspaceOfWindows({u"--workspace"_s, u"/x"_s, u"databases"_s}), QString());
}

TEST_F(CommandLine, FilesWithoutACommandAreOpenedByTheWindows) {
  const QString dxl = dxlFile(u"a.dxl"_s, 1);
  EXPECT_EQ(filesOfWindows({dxl}), QStringList(dxl));
  EXPECT_EQ(
      filesOfWindows({dxl, u"--workspace"_s, directory.path(), file(u"missing.dxl"_s), directory.path()}),
      QStringList({dxl, directory.path()}));
  const QString before = QDir::currentPath();
  QDir::setCurrent(directory.path());
  EXPECT_EQ(filesOfWindows({u"a.dxl"_s}), QStringList(dxl));
  QDir::setCurrent(before);
  EXPECT_EQ(filesOfWindows({u"import"_s, dxl, u"--into"_s, u"mail.nsf"_s}), QStringList());
  EXPECT_EQ(filesOfWindows({}), QStringList());
}

TEST_F(CommandLine, HelpNamesEveryCommandAndOption) {
  const CommandResult result = run({u"--help"_s});
  EXPECT_EQ(result.code, exitcode::Done);
  for (const CommandRow& command : commandTable()) {
    EXPECT_TRUE(result.out.contains(u"\n  "_s + QString::fromLatin1(command.name))) << command.name;
    const QString own = run({QString::fromLatin1(command.name), u"--help"_s}).out;
    EXPECT_TRUE(own.startsWith(u"Usage: TessalyAndDocContent "_s + QString::fromLatin1(command.name)))
        << command.name;
    for (const QString& option : optionsOf(command))
      EXPECT_TRUE(own.contains(u"\n  --"_s + option)) << command.name;
  }
  for (const OptionRow& option : commonOptions())
    EXPECT_TRUE(result.out.contains(u"\n  --"_s + QString::fromLatin1(option.name))) << option.name;
  for (const QString& line : result.lines()) EXPECT_LE(line.size(), 120) << line.toStdString();
}

TEST_F(CommandLine, HelpNeedsNoWorkspaceAndNoArguments) {
  EXPECT_EQ(run({u"set"_s, u"--help"_s}).code, exitcode::Done);
  EXPECT_EQ(openedAt, QString());
}

TEST_F(CommandLine, VersionIsThatOfTheProgram) {
  EXPECT_EQ(run({u"--version"_s}).out, u"TessalyAndDocContent "_s + programVersion() + u'\n');
}

TEST_F(CommandLine, OptionsStandBeforeOrBehindTheCommand) {
  save(memo(u"x"_s));
  const QString json = run({u"documents"_s, u"mail.nsf"_s, u"--json"_s}).out;
  EXPECT_EQ(run({u"--json"_s, u"documents"_s, u"mail.nsf"_s}).out, json);
  EXPECT_EQ(run({u"documents"_s, u"--json"_s, u"mail.nsf"_s}).out, json);
  run({u"--workspace"_s, place(), u"documents"_s, u"mail.nsf"_s});
  EXPECT_EQ(openedAt, place());
  run({u"documents"_s, u"mail.nsf"_s, u"--workspace"_s, file(u"other"_s)});
  EXPECT_EQ(openedAt, file(u"other"_s));
}

TEST_F(CommandLine, WhatBeginsWithADashStandsBehindTwoOfThem) {
  save(memo(u"x"_s));
  const CommandResult result = run({u"evaluate"_s, u"mail.nsf"_s, u"8FA"_s, u"--"_s, u"-1"_s});
  EXPECT_EQ(result.out, u"-1\n"_s) << result.error.toStdString();
}

TEST_F(CommandLine, TheManualPageKnowsAllOfIt) {
  const QString page = shipped(u"packaging/TessalyAndDocContent.1"_s);
  const auto knows = [&](const QString& option) {
    return page.contains(u"\\-\\-"_s + QString(option).replace(u'-', u"\\-"_s));
  };
  for (const CommandRow& command : commandTable()) {
    EXPECT_TRUE(page.contains(u".B "_s + QString::fromLatin1(command.name) + u'\n') ||
                page.contains(u".B "_s + QString::fromLatin1(command.name) + u' '))
        << command.name;
    for (const QString& option : optionsOf(command)) EXPECT_TRUE(knows(option)) << option.toStdString();
  }
  for (const OptionRow& option : commonOptions())
    EXPECT_TRUE(knows(QString::fromLatin1(option.name))) << option.name;
}

#ifdef Q_OS_UNIX
// What bash offers behind these words, the last of which is being typed.
QStringList completions(const QStringList& words) {
  QString script = u"source '"_s + QStringLiteral(LENS_SOURCE_DIR "/packaging/TessalyAndDocContent.bash") +
                   u"'; COMP_WORDS=(TessalyAndDocContent"_s;
  for (const QString& word : words) script += u" '"_s + word + u'\'';
  script +=
      u"); COMP_CWORD=%1; _TessalyAndDocContent; printf '%s\\n' \"${COMPREPLY[@]}\""_s.arg(words.size());
  QProcess bash;
  bash.start(u"bash"_s, {u"-c"_s, script});
  EXPECT_TRUE(bash.waitForFinished());
  EXPECT_EQ(bash.readAllStandardError(), QByteArray());
  return QString::fromUtf8(bash.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
}

TEST_F(CommandLine, TheShellCompletesCommandsAndTheirOptions) {
  QStringList commands;
  for (const CommandRow& command : commandTable()) {
    commands += QString::fromLatin1(command.name);
    QStringList options;
    for (const QString& option : optionsOf(command)) options += u"--"_s + option;
    for (const OptionRow& option : commonOptions()) options += u"--"_s + QString::fromLatin1(option.name);
    QStringList offered = completions({QString::fromLatin1(command.name), u"--"_s});
    options.sort();
    offered.sort();
    EXPECT_EQ(offered, options) << command.name;
  }
  QStringList offered = completions({u""_s});
  offered.removeIf([](const QString& word) { return word.startsWith(u'-'); });
  EXPECT_EQ(offered, commands);
  EXPECT_EQ(completions({u"--workspace"_s, u"/x"_s, u"integ"_s}), QStringList{u"integrity"_s});
  EXPECT_EQ(completions({u"set"_s, u"a"_s, u"--type"_s, u"d"_s}), QStringList{u"date"_s});
}
#endif

TEST_F(CommandLine, TheDocumentKnowsAllOfIt) {
  const QString text = shipped(u"docs/command.md"_s);
  for (const CommandRow& command : commandTable()) {
    EXPECT_TRUE(text.contains(u'`' + QString::fromLatin1(command.name)) ||
                text.contains(u"TessalyAndDocContent "_s + QString::fromLatin1(command.name)))
        << command.name;
    for (const QString& option : optionsOf(command))
      EXPECT_TRUE(text.contains(u"--"_s + option)) << option.toStdString();
  }
}

}  // namespace
}  // namespace lens
