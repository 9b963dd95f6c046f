#include <sqlite3.h>

#include <QBuffer>

#include "embedded/dxl/entity_growth.h"
#include "import_fixture.h"

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

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

// What a few hundred bytes can become.
class DxlGrowth : public DxlImport {
 protected:
  static QByteArray item(const QByteArray& text) { return "<item name='A'><text>" + text + "</text></item>"; }
  static QByteArray wide(const QByteArray& xml) {
    QByteArray bytes("\xFF\xFE", 2);
    for (const QChar c : QString::fromUtf8(xml)) bytes.append(char(c.cell())).append(char(c.row()));
    return bytes;
  }
  // The reason for which it is refused, in a narrow and in a wide encoding.
  QString reasonOf(const QByteArray& xml) {
    const int before = notes();
    const QString narrow = run(xml).failed.join(u' '), twoBytes = run(wide(xml)).failed.join(u' ');
    const auto reason = [](const QString& told) { return told.mid(told.lastIndexOf(u':')).toStdString(); };
    EXPECT_EQ(reason(narrow), reason(twoBytes)) << narrow.toStdString() << twoBytes.toStdString();
    EXPECT_EQ(notes(), narrow.isEmpty() ? before + 2 : before);
    return narrow;
  }
  static QByteArray entity(qsizetype length) {
    return "<!DOCTYPE document [<!ENTITY a '" + QByteArray(length, 'x') + "'>]>";
  }
};

TEST_F(DxlGrowth, EntitiesAreBoundedInTheirSum) {
  const QByteArray many = QByteArray("&a;").repeated(20000), bound = "entities expand to more than 64 MB";
  const auto refused = [&](const QByteArray& xml) {
    return reasonOf(xml).contains(QString::fromLatin1(bound));
  };
  EXPECT_TRUE(refused(entity(4000) + "<document>" + item(many) + "</document>"));
  EXPECT_TRUE(refused(entity(4000) + "<document form='" + many + "'/>"));
  EXPECT_TRUE(refused("<!DOCTYPE document [<!ENTITY b '&c;&c;'><!ENTITY c '" + QByteArray(2000, 'x') +
                      "'>]><document>" + item(QByteArray("&b;").repeated(20000)) + "</document>"));
  EXPECT_TRUE(refused("<!DOCTYPE document [<!ENTITY \xC3\xA4 '" + QByteArray(4000, 'x') + "'>]><document>" +
                      item(QByteArray("&\xC3\xA4;").repeated(20000)) + "</document>"));
  if (!qEnvironmentVariableIsSet("LENS_SOAK")) return;
  EXPECT_TRUE(refused(entity(4000) + "<document>" + item("&a;").repeated(20000) + "</document>"));
  EXPECT_TRUE(
      refused(entity(4000) + "<document>" + item("<![CDATA[&]]>&a;").repeated(20000) + "</document>"));
  EXPECT_TRUE(refused(entity(4000) + "<document><unknown>" + many + "</unknown></document>"));
}

TEST_F(DxlGrowth, EntitiesOfUsualSizeAreRead) {
  EXPECT_EQ(reasonOf(entity(1000) + "<document>" + item(QByteArray("&a;").repeated(500)) + "</document>"),
            "");
  EXPECT_EQ(
      reasonOf(entity(4000) + "<document>" + item(QByteArray("&lt;&#65;").repeated(30000)) + "</document>"),
      "");
}

TEST_F(DxlGrowth, DefaultAttributesAreBounded) {
  const QByteArray one = "<!DOCTYPE document [<!ATTLIST item other CDATA '" + QByteArray(4000, 'x') + "'>]>";
  EXPECT_TRUE(reasonOf(one + "<document>" + item("").repeated(20000) + "</document>")
                  .contains(u"default attributes expand to more than"));
  QByteArray many = "<!DOCTYPE document [<!ATTLIST item ";
  for (int i = 0; i < 300; ++i) many += "a" + QByteArray::number(i) + " CDATA 'x' ";
  EXPECT_TRUE(
      reasonOf(many + ">]><document>" + item("") + "</document>").contains(u"more than 256 attributes"));
}

TEST_F(DxlGrowth, AttributesAreBoundedInNumberAndSize) {
  const auto attributes = [](int count, const QByteArray& value) {
    QByteArray all;
    for (int i = 0; i < count; ++i) all += " a" + QByteArray::number(i) + "=" + value;
    return all;
  };
  const auto document = [&](const QByteArray& all) { return "<document><unknown" + all + "/></document>"; };
  EXPECT_TRUE(reasonOf(document(attributes(100000, "'x'"))).contains(u"more than 256 attributes"));
  EXPECT_TRUE(reasonOf(document(attributes(100000, "\"'>'\""))).contains(u"more than 256 attributes"));
  EXPECT_TRUE(reasonOf(document(attributes(257, "'x'"))).contains(u"more than 256 attributes"));
  EXPECT_EQ(reasonOf(document(attributes(256, "'>'"))), "");
  const QByteArray megabyte(1024 * 1024, 'x');
  EXPECT_EQ(reasonOf(document(" a='" + megabyte + "'")), "");
  EXPECT_TRUE(reasonOf(document(" a='" + megabyte.repeated(5) + "'"))
                  .contains(u"attributes of an element are longer"));
}

TEST_F(DxlGrowth, DocumentTypesAreBoundedInTheirLength) {
  EXPECT_TRUE(reasonOf("<!DOCTYPE document [<!-- ' -->" + QByteArray("<!ENTITY % p 'x'>%p;").repeated(5000) +
                       "]><document/>")
                  .contains(u"document type is longer than 64 KB"));
  EXPECT_TRUE(reasonOf("<!DOCTYPE document [").size() > 0);
  EXPECT_EQ(
      reasonOf(
          "<!DOCTYPE document SYSTEM 'a>b' [<!-- don't <a ] > --><?x it's ]>?><!ENTITY a '<b c=\"]>\">'>]>"
          "<document>" +
          item("x") + "</document>"),
      "");
}

// Quotes that open nothing must not hide what follows.
TEST_F(DxlGrowth, QuotesOutsideOfTagsAreText) {
  const QByteArray quotes = "<?x don't ?><!-- it's --><document>" + item("I can't say \"") +
                            "<unknown><![CDATA[<a b=' \"]]></unknown><?y \"?></document>";
  EXPECT_EQ(reasonOf(quotes), "");
  QByteArray many;
  for (int i = 0; i < 300; ++i) many += " a" + QByteArray::number(i) + "=''";
  EXPECT_TRUE(reasonOf(QByteArray(quotes).replace("</document>", "<u" + many + "/></document>"))
                  .contains(u"more than 256 attributes"));
}

TEST_F(DxlImport, EncodingsThatHideTagsAreNotRead) {
  for (const QByteArray encoding : {"UTF-7", "IBM037", "SCSU", "UTF-16", "UTF-32LE"}) {
    const ImportReport report = run("<?xml version='1.0' encoding='" + encoding + "'?><document/>");
    EXPECT_EQ(report.failed.size(), 1) << encoding.data();
  }
  EXPECT_EQ(notes(), 0);
  for (const QByteArray encoding : {"utf-8", "US-ASCII", "ISO-8859-1", "windows-1252", "UTF-8"})
    EXPECT_EQ(
        run("<?xml version='1.0' encoding='" + encoding + "'?><document/>").failed.join(u' ').toStdString(),
        "");
}

TEST_F(DxlImport, BrokenCharactersOfAWideFileAreAFault) {
  QByteArray bytes("\xFF\xFE", 2);
  for (const char c : QByteArray("<document><item name='A'><text>")) bytes.append(c).append('\0');
  bytes.append("\x00\xD8", 2);
  for (const char c : QByteArray("x</text></item></document>")) bytes.append(c).append('\0');
  EXPECT_EQ(run(bytes).failed.size(), 1);
  EXPECT_EQ(notes(), 0);
}

#ifdef Q_OS_UNIX
TEST_F(DxlImport, OnlyFilesAreRead) {
  const QString pipe = folder_.filePath(QStringLiteral("pipe.dxl")),
                link = folder_.filePath(QStringLiteral("link.dxl"));
  ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
  ASSERT_TRUE(QFile::link(pipe, link));
  write("<document/>", QStringLiteral("good.dxl"));
  ImportReport report;
  DxlImporter(*database_).importFiles({pipe, link, QStringLiteral("/dev/zero"), folder_.path()}, report);
  EXPECT_EQ(report.notes, 1);
  for (const QString& path : {pipe, link, QStringLiteral("/dev/zero")})
    EXPECT_TRUE(report.failed.contains(path + QStringLiteral(": it cannot be read (it is no file)")))
        << report.failed.join(u'\n').toStdString();
}
#endif

// References count the same wherever the file is cut into pieces.
TEST(EntityGrowth, AddsUpWhatTheReaderExpands) {
  const QByteArray type = "<!DOCTYPE d [<!ENTITY a 'xyz'><!ENTITY b '&a;&a;-'><!ENTITY long 'x&b;&b;y'>]>";
  const QByteArray content = "&a; &lt;&b;<e f='&a;&long;'/>&amp;&long;&#65;<![CDATA[ & && ]]>&a;";
  QXmlStreamReader xml(type + "<d>" + content + "</d>");
  while (xml.readNext() != QXmlStreamReader::DTD) {
  }
  const QXmlStreamEntityDeclarations entities = xml.entityDeclarations();
  for (qsizetype cut = 0; cut <= content.size(); ++cut) {
    EntityGrowth growth;
    growth.declare(entities);
    growth.count(QByteArrayView(content).first(cut));
    growth.count(QByteArrayView(content).sliced(cut));
    // At least what comes out, at most what the texts of the entities hold.
    const qint64 a = 3, b = 1 + 2 * (a + 3), lengthy = 2 + 2 * (b + 3);
    EXPECT_EQ(growth.characters(), 3 * a + b + 2 * lengthy) << cut;
  }
}

TEST(EntityGrowth, CirclesAndLongChainsAreEndless) {
  QByteArray type = "<!DOCTYPE d [<!ENTITY a '&b;'><!ENTITY b '&a;'><!ENTITY c0 'x'>";
  for (int i = 1; i < 1000; ++i)
    type += "<!ENTITY c" + QByteArray::number(i) + " '&c" + QByteArray::number(i - 1) + ";'>";
  QXmlStreamReader xml(type + "]><d/>");
  while (xml.readNext() != QXmlStreamReader::DTD) {
  }
  for (const char* reference : {"&a;", "&b;", "&c999;"}) {
    EntityGrowth growth;
    growth.declare(xml.entityDeclarations());
    growth.count(reference);
    EXPECT_GT(growth.characters(), qint64(1) << 32) << reference;
  }
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

TEST_F(DxlImport, CancellationIsNoticedAtEveryElement) {
  write("<database>" + QByteArray("<document/>").repeated(1000) + "</database>");
  for (const int calls : {1, 10, 500, 999}) {
    ImportReport report;
    CancelAt progress(calls);
    DxlImporter(*database_).importFile(folder_.filePath(QStringLiteral("in.dxl")), report, &progress);
    EXPECT_TRUE(report.cancelled) << calls;
    EXPECT_EQ(progress.seen, calls + 1);
    EXPECT_EQ(notes(), 0);
  }
}

// Files of a folder by what is in them; every file has as many notes.
class DxlFolder : public DxlImport {
 protected:
  static constexpr int kNotes = 4;
  DxlFolder() {
    for (int i = 0; i < 40; ++i) {
      const QByteArray number = QByteArray::number(i);
      QByteArray xml = "<database>";
      for (int note = 0; note < kNotes; ++note)
        xml += "<document><item name='File'><text>" + number + "</text></item><item name='Fill'><text>" +
               QByteArray(3000, 'x') + "</text></item></document>";
      // Each seventh is broken at its end.
      write(xml + (isBroken(i) ? "</databas>" : "</database>"),
            QStringLiteral("d/%1.dxl").arg(i, 2, 10, QLatin1Char('0')));
    }
  }
  static bool isBroken(int file) { return file % 7 == 3; }
  QMap<int, int> notesOfFiles() {
    QMap<int, int> count;
    database_->notes().scan(noteclass::Document, [&](const Note& note) {
      ++count[note.text(u"File").toInt()];
      return true;
    });
    return count;
  }
  ImportReport runFolder(ImportProgress* progress = nullptr) {
    ImportReport report;
    DxlImporter(*database_).importFiles({folder_.filePath(QStringLiteral("d"))}, report, progress);
    return report;
  }
};

TEST_F(DxlFolder, SmallFilesShareWhatTheDiskTakes) {
  int commits = 0;
  const auto count = [](void* counter) {
    ++*static_cast<int*>(counter);
    return 0;
  };
  sqlite3_commit_hook(database_->handle(), count, &commits);
  const ImportReport report = runFolder();
  EXPECT_LE(commits, 20);
  EXPECT_EQ(report.failed.size(), 6);
  EXPECT_EQ(notesOfFiles().size(), 34);
  for (const int notes : notesOfFiles()) EXPECT_EQ(notes, kNotes);
}

// Whenever the disk is full or the user has enough: each file is whole or absent, and told as it is.
TEST_F(DxlFolder, EachFileIsWholeOrAbsentWhereverTheRunEnds) {
  const auto check = [this](const ImportReport& report) {
    const QMap<int, int> there = notesOfFiles();
    for (const int notes : there) EXPECT_EQ(notes, kNotes);
    for (int file = 0; file < 40; ++file) {
      const QString name = QStringLiteral("/%1.dxl").arg(file, 2, 10, QLatin1Char('0'));
      const bool failed = !report.failed.filter(name).isEmpty();
      EXPECT_FALSE(failed && there.contains(file)) << file;
      EXPECT_TRUE(failed || there.contains(file) || report.cancelled) << file;
      if (isBroken(file)) {
        EXPECT_FALSE(there.contains(file));
      }
    }
    EXPECT_EQ(report.notes, int(there.size()) * kNotes);
    return int(there.size());
  };
  const auto sql = [this](const QByteArray& text) {
    EXPECT_EQ(sqlite3_exec(database_->handle(), text.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  };
  QSet<int> sizes;
  for (int pages = 16; pages < 100; pages += 9) {
    SCOPED_TRACE(pages);
    sql("PRAGMA max_page_count = " + QByteArray::number(pages));
    sizes.insert(check(runFolder()));
    sql("PRAGMA max_page_count = 1000000; DELETE FROM note; VACUUM");
  }
  EXPECT_GT(sizes.size(), 4);
  for (int calls = 1; calls < 500; calls += 83) {
    SCOPED_TRACE(calls);
    CancelAt progress(calls);
    check(runFolder(&progress));
    sql("DELETE FROM note");
  }
}

TEST_F(DxlFolder, AnotherWhoHoldsTheDatabaseIsToldForEachFile) {
  sqlite3_busy_timeout(database_->handle(), 0);
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open(database_->path().toUtf8().constData(), &other), SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
  EXPECT_EQ(runFolder().failed.size(), 40);
  sqlite3_close(other);
  EXPECT_EQ(runFolder().failed.size(), 6);
}

TEST_F(DxlImport, ListThatNoValueCanHoldIsAFaultWithAPlace) {
  const QString reason =
      refusal("<item name='A'><textlist>" + QByteArray("<text/>").repeated(65536) + "</textlist></item>");
  EXPECT_TRUE(reason.contains(u"line 1") && reason.contains(u"65535")) << reason.toStdString();
}

}  // namespace
}  // namespace lens
