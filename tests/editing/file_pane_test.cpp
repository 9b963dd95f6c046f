#include <QTest>

#include "editing/editing_fixture.h"
#include "host/file_identity.h"
#include "host/paths.h"

namespace lens {
namespace {

const QString kRichType = QStringLiteral("RICHTEXT (1) means rich text");

class FilePaneTest : public EditingTest {
 protected:
  FilePaneTest() : files(directory.filePath(u"files"_s)) { QDir().mkpath(files); }
  QString makeFile(const QString& name, const QByteArray& content = "content") {
    const QString path = files + u'/' + name;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return path;
  }
  static QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
  }
  // Files of these names; each holds its number.
  Note withFiles(const QStringList& names) {
    Note note = memo();
    RichText body;
    for (qsizetype i = 0; i < names.size(); ++i) {
      attach(note, names[i], QByteArray::number(i));
      body.appendAttachment(names[i], names[i]);
    }
    note.add(u"Body"_s, 0, rawValue(itemtype::RichText, body.toBytes()));
    return note;
  }
  void openDirectory() { control<DirList>("Dir1").setPath(files); }
  FileList& fileList() { return control<FileList>("File1"); }
  void pickFile(const QString& name) {
    const int row = fileList().find(name);
    ASSERT_GE(row, 0) << name.toStdString();
    fileList().setSelected(row, true);
  }

  QString files;
};

TEST_F(FilePaneTest, ShowsFromTheStartWhereTheProgramWasStarted) {
  const QString before = QDir::currentPath();
  makeFile(u"a.txt"_s);
  ASSERT_TRUE(QDir::setCurrent(files));
  start();
  ASSERT_TRUE(QDir::setCurrent(before));
  EXPECT_EQ(control<DirList>("Dir1").path(), QFileInfo(files).canonicalFilePath());
  EXPECT_EQ(rows("File1"), QStringList(u"a.txt"_s));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FilePaneTest, FollowsTheDirectoryAndSelectsTheFirstFile) {
  makeFile(u"a.txt"_s);
  makeFile(u"b.txt"_s);
  show(memo());
  openDirectory();
  EXPECT_EQ(fileList().path(), files);
  EXPECT_EQ(rows("File1"), QStringList({u"a.txt"_s, u"b.txt"_s}));
  EXPECT_TRUE(fileList().selected(0));
}

TEST_F(FilePaneTest, ADriveThatIsNotReadyIsToldAndTheDirectoryStays) {
  makeFile(u"a.txt"_s);
  show(memo());
  openDirectory();
  control<DriveList>("Drive1").addItem(u"/no/such/drive"_s);
  control<DriveList>("Drive1").setDrive(u"/no/such/drive"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Error 76 ("_s + standardErrorText(76) +
                                                u") in procedure Drive1_Change of Formular Form1",
                                            box::Plain,
                                            {}}}));
  EXPECT_EQ(control<DirList>("Dir1").path(), files);
  EXPECT_EQ(rows("File1"), QStringList(u"a.txt"_s));
}

TEST_F(FilePaneTest, ADriveOpensItsDirectory) {
  makeFile(u"a.txt"_s);
  show(memo());
  control<DriveList>("Drive1").addItem(files);
  control<DriveList>("Drive1").setDrive(files);
  EXPECT_EQ(control<DirList>("Dir1").path(), files);
  EXPECT_TRUE(fileList().selected(0));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FilePaneTest, ADirectoryThatHasGoneIsTold) {
  show(memo());
  openDirectory();
  QDir(files).removeRecursively();
  app->filePane.Dir1_Change();
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Error 76 ("_s + standardErrorText(76) +
                                                u") in procedure Dir1_Change of Formular Form1",
                                            box::Plain,
                                            {}}}));
}

TEST_F(FilePaneTest, InAnEmptyDirectoryNoButtonDoesAnything) {
  show(memo());
  openDirectory();
  click("cmdLoadAtt");
  click("cmdRemoveFile");
  EXPECT_EQ(fileList().selCount(), 0);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(saves(), 0);
}

TEST_F(FilePaneTest, BehindARootTheLoadedPathHasTwoSeparators) {
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"Text"_s));
  show(note);
  fileList().setPath(u"/"_s);
  fileList().clear();
  fileList().addItem(u"no such file"_s);
  fileList().setSelected(0, true);
  setText("txtFieldName", u"Body"_s);
  setText("cmbFieldType", kRichType);
  click("cmdLoadAtt");
  ASSERT_EQ(host.boxes.size(), 2);
  EXPECT_TRUE(host.boxes[1].text.contains(u"//no such file"_s)) << host.boxes[1].text.toStdString();
}

TEST_F(FilePaneTest, ExtractsTheAttachmentsOfRichTextItems) {
  show(withAttachment(u"report.pdf"_s, "the bytes"));
  openDirectory();
  makeFile(u"report.pdf"_s, "old");
  click("cmdExtractAtt");
  EXPECT_EQ(contentOf(files + u"/report.pdf"_s), QByteArray("the bytes"));
  EXPECT_EQ(rows("File1"), QStringList(u"report.pdf"_s));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FilePaneTest, AttachmentsOfNoRichTextItemAreNotReached) {
  Note note = memo();
  attach(note, u"report.pdf"_s, "x");
  show(note);
  openDirectory();
  click("cmdExtractAtt");
  EXPECT_EQ(rows("File1"), QStringList());
}

TEST_F(FilePaneTest, ANameWithSeparatorsStaysInTheDirectoryAndIsTold) {
  show(withAttachment(u"../../outside.txt"_s, "x"));
  openDirectory();
  click("cmdExtractAtt");
  EXPECT_EQ(rows("File1"), QStringList(u"outside.txt"_s));
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.endsWith(u"\"../../outside.txt\": \"outside.txt\""_s));
  EXPECT_EQ(host.boxes[0].title, u"Extract attachments"_s);
  EXPECT_EQ(host.boxes[0].style, box::Information);
}

TEST_F(FilePaneTest, ANameOfADeviceIsRefusedAndTheFilesBehindItComeOut) {
  show(withFiles({u"first.txt"_s, u"NUL.txt"_s, u"last.txt"_s}));
  openDirectory();
  press("cmdExtractAtt");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '75':"_s));
  EXPECT_EQ(rows("File1"), QStringList({u"first.txt"_s, u"last.txt"_s}));
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

// Names that a disk cannot take, in any order among others: each file comes out, and no other is written
// over.
TEST_F(FilePaneTest, EveryFileComesOutWhateverTheNames) {
  const QStringList names{u"tab\there.txt"_s,   u"plan.txt"_s,        u"PLAN.txt"_s, u"line\nfeed"_s,
                          u"folder/plan.txt"_s, u"other\\plan.txt"_s, u".."_s,       u"plan.txt"_s,
                          QString(300, u'x'),   u"ok.txt"_s};
  show(withFiles(names));
  openDirectory();
  click("cmdExtractAtt");
  QByteArrayList contents;
  for (const QString& file : QDir(files).entryList(QDir::Files | QDir::Hidden))
    contents += contentOf(files + u'/' + file);
  std::sort(contents.begin(), contents.end());
  EXPECT_EQ(contents, QByteArrayList({"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"}));
  EXPECT_EQ(contentOf(files + u"/plan.txt"_s), QByteArray("1"));
  EXPECT_EQ(contentOf(files + u"/ok.txt"_s), QByteArray("9"));
  ASSERT_EQ(host.boxes.size(), 1) << "told once, at the end";
  EXPECT_EQ(host.boxes[0].text.count(u'\n'), 2 + 7);
}

TEST_F(FilePaneTest, ManyChangedNamesAreToldInABoxThatFitsTheScreen) {
  show(withFiles(QStringList(50, u"a.txt"_s)));
  openDirectory();
  click("cmdExtractAtt");
  EXPECT_EQ(rows("File1").size(), 50);
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.endsWith(u"\nand 29 more"_s)) << host.boxes[0].text.toStdString();
}

TEST_F(FilePaneTest, AFileThatCannotBeWrittenDoesNotKeepTheOthers) {
  show(withFiles({u"a.txt"_s, u"b.txt"_s, u"c.txt"_s, u"d.txt"_s}));
  openDirectory();
  for (const QString& name : {u"b.txt"_s, u"c.txt"_s}) QDir(files).mkdir(name);
  press("cmdExtractAtt");
  EXPECT_EQ(contentOf(files + u"/a.txt"_s), QByteArray("0"));
  EXPECT_EQ(contentOf(files + u"/d.txt"_s), QByteArray("3"));
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.contains(u"b.txt"_s) && host.boxes[0].text.contains(u"1 more"_s))
      << host.boxes[0].text.toStdString();
}

TEST_F(FilePaneTest, LoadsTheSelectedFileIntoARichTextItem) {
  makeFile(u"plan.txt"_s, "the plan");
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"Text"_s));
  show(note);
  openDirectory();
  pickFile(u"plan.txt"_s);
  setText("txtFieldName", u"Body"_s);
  setText("cmbFieldType", kRichType);
  click("cmdLoadAtt");
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Load attachment: plan.txt into field Body"_s, box::YesNo,
                                            u"Load attachment"_s}}));
  EXPECT_TRUE(rows("fldList").join(u'|').contains(u"plan.txt"_s));
  QDir(files).remove(u"plan.txt"_s);
  click("cmdExtractAtt");
  EXPECT_EQ(contentOf(files + u"/plan.txt"_s), QByteArray("the plan"));
}

TEST_F(FilePaneTest, NoLoadsNothing) {
  makeFile(u"plan.txt"_s);
  Note note = memo();
  note.add(u"Body"_s, 0, rich(u"Text"_s));
  show(note);
  openDirectory();
  setText("txtFieldName", u"Body"_s);
  setText("cmbFieldType", kRichType);
  host.answers.enqueue(answer::No);
  click("cmdLoadAtt");
  EXPECT_EQ(saves(), 0);
}

TEST_F(FilePaneTest, AnotherTypeIsRefusedBehindTheQuestion) {
  makeFile(u"plan.txt"_s);
  show(memo());
  openDirectory();
  setText("txtFieldName", u"Subject"_s);
  setText("cmbFieldType", kTextType);
  click("cmdLoadAtt");
  ASSERT_EQ(host.boxes.size(), 2);
  EXPECT_EQ(host.boxes[1],
            (ShownBox{u"Field is not a rich text!! can't load."_s, box::Critical, u"Load attachment"_s}));
}

TEST_F(FilePaneTest, APlainItemOfTheNameEndsInSilence) {
  makeFile(u"plan.txt"_s);
  show(memo());
  openDirectory();
  setText("txtFieldName", u"Subject"_s);
  setText("cmbFieldType", kRichType);
  click("cmdLoadAtt");
  EXPECT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(saves(), 0);
}

TEST_F(FilePaneTest, AnEmptyNameFails) {
  makeFile(u"plan.txt"_s);
  show(memo());
  openDirectory();
  setText("txtFieldName", QString());
  setText("cmbFieldType", kRichType);
  click("cmdLoadAtt");
  ASSERT_EQ(host.boxes.size(), 2);
  EXPECT_EQ(host.boxes[0].text, u"Load attachment: plan.txt into field "_s);
  EXPECT_TRUE(host.boxes[1].text.endsWith(u") in procedure cmdLoadAtt_Click of Formular Form1"_s));
}

TEST_F(FilePaneTest, ADeletedFileGivesItsPlaceToTheNext) {
  for (const QString& name : {u"a.txt"_s, u"b.txt"_s, u"c.txt"_s}) makeFile(name);
  show(memo());
  openDirectory();
  pickFile(u"b.txt"_s);
  click("cmdRemoveFile");
  EXPECT_EQ(rows("File1"), QStringList({u"a.txt"_s, u"c.txt"_s}));
  EXPECT_EQ(text("File1"), "c.txt");
  click("cmdRemoveFile");
  EXPECT_EQ(rows("File1"), QStringList(u"a.txt"_s));
  EXPECT_EQ(fileList().selCount(), 0);
  click("cmdRemoveFile");
  EXPECT_EQ(rows("File1"), QStringList(u"a.txt"_s));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FilePaneTest, AFileThatCannotBeDeletedIsTold) {
  makeFile(u"a.txt"_s);
  show(memo());
  openDirectory();
  QDir(files).remove(u"a.txt"_s);
  click("cmdRemoveFile");
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Error 53 ("_s)) << host.boxes[0].text.toStdString();
  EXPECT_TRUE(host.boxes[0].text.endsWith(u") in procedure cmdRemoveFile_Click of Formular Form1"_s));
}

// On other systems than Windows an open file can be deleted and replaced.
TEST_F(FilePaneTest, TheOpenDatabaseIsNeitherDeletedNorOverwritten) {
  const QString mail = workspace->absolutePath({QString(), u"mail.nsf"_s});
  const QStringList its = {u"mail.nsf"_s, u"mail.nsf-wal"_s, u"mail.nsf-shm"_s, u"mail.nsf-journal"_s};
  for (const QString& name : its) {
    Note note = withAttachment(name, "the bytes");
    show(note);
    control<DirList>("Dir1").setPath(QFileInfo(mail).path());
    const FileIdentity before = FileIdentity::of(mail);
    host.boxes.clear();
    press("cmdExtractAtt");
    ASSERT_EQ(host.boxes.size(), 1) << name.toStdString();
    EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '70':"_s)) << host.boxes[0].text.toStdString();
    if (fileList().find(name) >= 0) {
      host.boxes.clear();
      pickFile(name);
      click("cmdRemoveFile");
      ASSERT_EQ(host.boxes.size(), 1) << name.toStdString();
      EXPECT_TRUE(host.boxes[0].text.startsWith(u"Error 70 ("_s)) << host.boxes[0].text.toStdString();
    }
    EXPECT_EQ(FileIdentity::of(mail), before);
    EXPECT_TRUE(stored().has(u"Subject"));
  }
}

TEST_F(FilePaneTest, ADoubleClickOpensTheFile) {
  const QString path = makeFile(u"a.txt"_s);
  show(memo());
  openDirectory();
  fileList().raiseDblClick();
  EXPECT_EQ(host.opened, QStringList(path));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FilePaneTest, AFileIsOpenedWhoseNameDiffersInCase) {
  const QString path = makeFile(u"notes.ini"_s);
  show(memo());
  EXPECT_EQ(app->filePane.ShellOpenFile(files + u"/Notes.INI"), u"-1"_s);
  EXPECT_EQ(app->filePane.ShellOpenFile(files + u"/missing.ini"), u"-1"_s);
  EXPECT_EQ(host.opened, QStringList({path, files + u"/missing.ini"}));
}

TEST_F(FilePaneTest, WhatCannotBeOpenedIsToldInGeneralWords) {
  show(memo());
  for (const auto& [code, status] : {std::pair(0, u"0 , Error: Out of Memory/Resources. Couldn't Execute!"_s),
                                     {2, u"2 , Error: File not found.  Couldn't Execute!"_s},
                                     {3, u"3 , Error: Path not found. Couldn't Execute!"_s},
                                     {11, u"11 , Error:  Bad File Format. Couldn't Execute!"_s}}) {
    host.boxes.clear();
    host.shellCode = code;
    EXPECT_EQ(app->filePane.ShellOpenFile(u"x"_s), status);
    EXPECT_EQ(host.boxes,
              QVector<ShownBox>({{u"Can't execute the file !!"_s, box::Exclamation, u"Execute it"_s}}));
  }
}

TEST_F(FilePaneTest, OtherCodesAreOnlyStatuses) {
  show(memo());
  for (const int code : {5, 32}) {
    host.shellCode = code;
    EXPECT_EQ(app->filePane.ShellOpenFile(u"x"_s), QString::number(code));
  }
  host.shellCode = 42;
  EXPECT_EQ(app->filePane.ShellOpenFile(u"x"_s), u"-1"_s);
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FilePaneTest, AFileWithoutAProgramAsksForOne) {
  show(memo());
  host.shellCode = 31;
  EXPECT_EQ(app->filePane.ShellOpenFile(u"x"_s), u"0"_s);
  host.chosenProgram = 4711;
  EXPECT_EQ(app->filePane.ShellOpenFile(u"x"_s), u"-1"_s);
  EXPECT_EQ(host.openedWith, QStringList({u"x"_s, u"x"_s}));
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(FilePaneTest, AnotherMouseButtonShowsProperties) {
  const QString path = makeFile(u"a.txt"_s);
  show(memo());
  openDirectory();
  app->filePane.File1_MouseDown(1);
  app->filePane.Dir1_MouseDown(1);
  EXPECT_EQ(host.propertiesShown, QStringList());
  app->filePane.File1_MouseDown(2);
  app->filePane.Dir1_MouseDown(2);
  EXPECT_EQ(host.propertiesShown, QStringList({path, files}));
}

TEST_F(FilePaneTest, WithoutAFileNothingHasProperties) {
  show(memo());
  openDirectory();
  app->filePane.File1_MouseDown(2);
  EXPECT_EQ(host.propertiesShown, QStringList());
}

}  // namespace
}  // namespace lens
