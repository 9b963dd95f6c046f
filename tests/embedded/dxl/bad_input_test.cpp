#include <QBuffer>

#include "import_fixture.h"

namespace lens {
namespace {

const QByteArray kTwoDocuments =
    "<?xml version='1.0' encoding='utf-8'?>\n<database xmlns='http://www.lotus.com/dxl' title='New'>\n"
    "<document><item name='A'><text>1</text></item></document>\n"
    "<document><item name='A'><text>2</text></item>"
    "<item name='$FILE'><object><file "
    "name='a.txt'><filedata>aGVsbG8=</filedata></file></object></item></document>\n"
    "</database>\n";

// Everything that an import could have left behind.
qint64 traces(Database& database) {
  return database.versions().changeSequence() + database.notes().highestIssuedId().value();
}

TEST_F(DxlImport, FileThatIsCutAnywhereLeavesNothing) {
  const qint64 before = traces(*database_);
  for (qsizetype length = 0; length < kTwoDocuments.size() - 12; ++length) {
    const ImportReport report = run(kTwoDocuments.first(length));
    ASSERT_EQ(report.failed.size(), 1) << length;
    ASSERT_TRUE(report.failed[0].contains(u"in.dxl, line ")) << length;
    ASSERT_EQ(report.notes, 0) << length;
    ASSERT_EQ(traces(*database_), before) << length;
    ASSERT_EQ(database_->info().title.toStdString(), "") << length;
  }
}

TEST_F(DxlImport, FaultNamesFileLineColumnAndReason) {
  const ImportReport report = run("<document>\n<item name='A'>\n  <number>x</number></item></document>");
  ASSERT_EQ(report.failed.size(), 1);
  EXPECT_EQ(report.failed[0].section(u'/', -1).toStdString(),
            "in.dxl, line 3, column 20: item \"A\": \"x\" is no number");
}

TEST_F(DxlImport, OtherFilesAreImportedAfterAFault) {
  write("<document/>", QStringLiteral("d/1.dxl"));
  write("<document><oops></document>", QStringLiteral("d/2.dxl"));
  write("<document/>", QStringLiteral("d/sub/3.dxl"));
  write("Licence text", QStringLiteral("d/LICENSE"));
  ImportReport report;
  DxlImporter(*database_).importFiles({folder_.filePath(QStringLiteral("d"))}, report);
  EXPECT_EQ(report.notes, 2);
  ASSERT_EQ(report.failed.size(), 1);
  EXPECT_TRUE(report.failed[0].contains(u"2.dxl, line 1"));
  EXPECT_TRUE(report.text().contains(u"2 notes imported"));
  EXPECT_TRUE(report.text().contains(u"1 file that is no DXL (others 1)"));
}

TEST_F(DxlImport, PicturesAndSourcesOfAFolderAreCountedInOneLine) {
  for (const char* name : {"a.gif", "b.GIF", "sub/c.gif"}) write("GIF89a", QStringLiteral("d/%1").arg(name));
  write("Dim x", QStringLiteral("d/x.lss"));
  write("<xp:view xmlns:xp='http://example.org/x'/>", QStringLiteral("d/home.xsp"));
  write("", QStringLiteral("d/empty.js"));
  write("terms", QStringLiteral("d/LICENSE"));
  write("<?xml version='1.0'?><docum", QStringLiteral("d/cut.dxl"));
  write("<document/>", QStringLiteral("d/good.dxl"));
  ImportReport report;
  const QString folder = folder_.filePath(QStringLiteral("d"));
  DxlImporter(*database_).importFiles({folder, folder + QStringLiteral("/a.gif")}, report);
  EXPECT_EQ(report.notes, 1);
  EXPECT_EQ(report.ignored.join(u'\n').toStdString(),
            folder.toStdString() + ": 7 files that are no DXL (.gif 3, .js 1, .lss 1, .xsp 1, others 1)");
  ASSERT_EQ(report.failed.size(), 2) << report.failed.join(u'\n').toStdString();
  EXPECT_TRUE(report.failed[0].contains(u"cut.dxl"));
  EXPECT_TRUE(report.failed[1].contains(u"a.gif"));  // named by itself
}

TEST_F(DxlImport, FilesThatAreNoDxlAreToldApart) {
  for (const QByteArray& bytes :
       {QByteArray(), QByteArray("\x89PNG\r\n\x1A\n\0\0\0", 11), QByteArray("<html/>"),
        QByteArray("<document xmlns='http://example.org/other'/>"), QByteArray(500, '\0')}) {
    const ImportReport report = run(bytes);
    ASSERT_EQ(report.failed.size(), 1);
    EXPECT_TRUE(report.failed[0].contains(u"this is no DXL file")) << report.failed[0].toStdString();
  }
}

TEST_F(DxlImport, MissingFileIsReported) {
  ImportReport report;
  DxlImporter(*database_).importFiles({folder_.filePath(QStringLiteral("none.dxl"))}, report);
  ASSERT_EQ(report.failed.size(), 1);
  EXPECT_TRUE(report.failed[0].contains(u"none.dxl: it cannot be read"));
}

TEST_F(DxlImport, DoctypeIsAcceptedAndNeverFetched) {
  write("<!ENTITY fetched 'secret'>", QStringLiteral("evil.dtd"));
  const ImportReport report =
      run("<!DOCTYPE document SYSTEM 'evil.dtd'>\n<document><item name='A'><text>x</text></item></document>");
  EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
  EXPECT_EQ(notes(), 1);
}

TEST_F(DxlImport, UndeclaredEntityIsAFault) {
  EXPECT_FALSE(refusal("<item name='A'><text>&nope;</text></item>").isEmpty());
  const ImportReport report =
      run("<!DOCTYPE document SYSTEM 'evil.dtd'>\n<document><item "
          "name='A'><text>&nope;</text></item></document>");
  ASSERT_EQ(report.failed.size(), 1);
  EXPECT_TRUE(report.failed[0].contains(u"nope"));
}

TEST_F(DxlImport, ExternalEntityIsNotRead) {
  write("secret", QStringLiteral("secret.txt"));
  const ImportReport report =
      run("<!DOCTYPE document [<!ENTITY x SYSTEM 'secret.txt'>]>\n<document><item "
          "name='A'><text>&x;</text></item></document>");
  EXPECT_EQ(report.failed.size(), 1);
  EXPECT_EQ(notes(), 0);
}

TEST_F(DxlImport, EntityBombIsStopped) {
  QByteArray doctype = "<!DOCTYPE document [<!ENTITY a0 'aaaaaaaaaa'>";
  for (int i = 1; i < 12; ++i) {
    const QByteArray before = "&a" + QByteArray::number(i - 1) + ";";
    doctype += "<!ENTITY a" + QByteArray::number(i) + " '" + before.repeated(10) + "'>";
  }
  const ImportReport report =
      run(doctype + "]><document><item name='A'><text>&a11;</text></item></document>");
  EXPECT_EQ(report.failed.size(), 1);
  EXPECT_EQ(notes(), 0);
}

TEST_F(DxlImport, DeepNestingIsStopped) {
  for (const QByteArray tag : {"x", "table", "section", "run", "par", "tablerow", "tablecell"}) {
    const QByteArray open = "<" + tag + ">", close = "</" + tag + ">";
    const QByteArray deep = open.repeated(5000) + close.repeated(5000);
    EXPECT_TRUE(refusal("<item name='B'><richtext>" + deep + "</richtext></item>")
                    .contains(u"nested deeper than 256"))
        << tag.toStdString();
    EXPECT_TRUE(refusal(deep).contains(u"nested deeper than 256")) << tag.toStdString();
  }
}

TEST_F(DxlImport, TextBetweenElementsIsAFault) {
  EXPECT_TRUE(refusal("stray<item name='A'><text>x</text></item>").contains(u"only elements may stand"));
}

TEST_F(DxlImport, MalformedIdsAreRefused) {
  EXPECT_TRUE(refusal("<noteinfo unid='12'/>").contains(u"is no UNID"));
  EXPECT_TRUE(run("<document parent='xyz'/>").failed.join(u' ').contains(u"no UNID of a parent"));
  EXPECT_TRUE(run("<note class='nonsense'/>").failed.join(u' ').contains(u"no class of notes"));
  for (const char* replica : {"xyz", "0x12345678901234", "+123456789012345", " C2257B260034454"})
    EXPECT_TRUE(run(QByteArray("<database replicaid='") + replica + "'/>")
                    .failed.join(u' ')
                    .contains(u"no replica ID"))
        << replica;
  EXPECT_EQ(notes(), 0);
}

TEST_F(DxlImport, WideEncodingsAreRead) {
  const QString xml = QStringLiteral(
      "<?xml version='1.0' encoding='UTF-16'?><document><item name='A'><text>Größe Ж</text>"
      "</item></document>");
  QByteArray bytes("\xFF\xFE", 2);
  for (const QChar c : xml) bytes.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
  EXPECT_EQ(valuesText(onlyNote(run(bytes), noteclass::Document), u"A"),
            "Gr\xC3\xB6\xC3\x9F"
            "e \xD0\x96");
}

TEST_F(DxlImport, DeclaredNarrowEncodingIsRead) {
  const QByteArray bytes =
      "<?xml version='1.0' encoding='ISO-8859-1'?><document><item "
      "name='A'><text>\xFC</text></item></document>";
  EXPECT_EQ(valuesText(onlyNote(run(bytes), noteclass::Document), u"A"), "\xC3\xBC");
}

class CancelAt : public ImportProgress {
 public:
  explicit CancelAt(int calls) : left_(calls) {}
  bool go(const QString&, qint64 done, qint64 total) override {
    EXPECT_LE(done, total);
    ++seen;
    return left_-- > 0;
  }
  int seen = 0;

 private:
  int left_;
};

TEST_F(DxlImport, CancellationUndoesTheFileAndEndsTheRun) {
  QByteArray big = "<database>";
  for (int i = 0; i < 4000; ++i)
    big += "<document><item name='A'><text>some text of a document</text></item></document>";
  big += "</database>";
  write("<document/>", QStringLiteral("d/1.dxl"));
  write(big, QStringLiteral("d/2.dxl"));
  write("<document/>", QStringLiteral("d/3.dxl"));
  ImportReport report;
  CancelAt progress(4);
  DxlImporter(*database_).importFiles({folder_.filePath(QStringLiteral("d"))}, report, &progress);
  EXPECT_TRUE(report.cancelled);
  EXPECT_EQ(notes(), 1);
  EXPECT_EQ(report.notes, 1);
  EXPECT_TRUE(report.failed.isEmpty());
  EXPECT_TRUE(report.text().contains(u"Cancelled"));
}

TEST_F(DxlImport, ListThatNoValueCanHoldIsAFaultWithAPlace) {
  const QString reason =
      refusal("<item name='A'><textlist>" + QByteArray("<text/>").repeated(65536) + "</textlist></item>");
  EXPECT_TRUE(reason.contains(u"line 1") && reason.contains(u"65535")) << reason.toStdString();
}

}  // namespace
}  // namespace lens
