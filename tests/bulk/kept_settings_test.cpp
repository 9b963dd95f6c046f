// What the bulk tool's window keeps from one showing to the next, with its real settings file.
#include "bulk/settings_text.h"
#include "bulk/shown_replic.h"

namespace lens {
namespace {

class KeptSettings : public ShownReplic {
 protected:
  QString path() const { return host.programDir + u"/TessalyAndDocContent.ini"; }
  QByteArray bytes() const {
    QFile file(path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
  }
  void put(const QByteArray& content) {
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
  }
  void openInProgramsDirectory() {
    QDir().mkpath(host.programDir);
    make(u"other.nsf"_s);
    openTool();
  }
  void fill(ListBox& list, const QStringList& rows) {
    list.clear();
    for (const QString& row : rows) list.addItem(row);
  }
  void end() { window().cmdEnd->click.fire(); }
};

TEST_F(KeptSettings, TheFirstOpeningMakesTheFileAndKeepsTheLists) {
  openInProgramsDirectory();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(sources(), QStringList({u"mail.nsf"_s, u"other.nsf"_s}));
  EXPECT_EQ(fields() + targets(), QStringList());
  EXPECT_EQ(window().lstServer->text(), u"Local"_s);
  EXPECT_EQ(window().lstDesignServer->text(), u"Local"_s);
  EXPECT_EQ(bytes(),
            "[TessalyAndDocContent]\r\nSource=Local\r\nDestination=Local\r\ntxtFind=\r\ntxtReplace=\r\n");
  window().resize(1000, 700);
  EXPECT_EQ(host.boxes, Boxes());
}

// The file says what stands in the lists, whatever the directory of databases has by now.
TEST_F(KeptSettings, EndSavesAndTheNextOpeningBringsItBackUnmarked) {
  openInProgramsDirectory();
  fill(*window().lstDBNames, {u"kept.nsf"_s});
  fill(*window().lstDBNamesDest, {u"t1.nsf"_s, u"t2.nsf"_s});
  fill(*window().fldList, {u"Subject: x"_s, u"Form: y"_s, u"Zip: z"_s});
  window().fldList->setSelected(0, true);
  window().lstDBNames->setSelected(0, true);
  window().txtFind->setText(u"old"_s);
  window().txtReplace->setText(u"new"_s);
  end();
  EXPECT_FALSE(window().isVisible());
  EXPECT_TRUE(state().gSession.isNothing());
  showTool();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(sources(), QStringList(u"kept.nsf"_s));
  EXPECT_EQ(targets(), QStringList({u"t1.nsf"_s, u"t2.nsf"_s}));
  EXPECT_EQ(fields(), QStringList({u"Form: y"_s, u"Subject: x"_s})) << "as many as there are targets";
  EXPECT_EQ(window().fldList->selCount() + window().lstDBNames->selCount(), 0);
  EXPECT_EQ(window().txtFind->text() + window().txtReplace->text(), u"oldnew"_s);
  EXPECT_FALSE(state().gSession.isNothing());
}

TEST_F(KeptSettings, ClosingTheWindowLosesTheChanges) {
  openInProgramsDirectory();
  const QByteArray before = bytes();
  fill(*window().lstDBNames, {u"kept.nsf"_s});
  window().close();
  EXPECT_EQ(bytes(), before);
  showTool();
  EXPECT_EQ(sources(), QStringList({u"mail.nsf"_s, u"other.nsf"_s}));
}

TEST_F(KeptSettings, AFileOfNoBytesIsOneReportAndTheWindowComesUp) {
  QDir().mkpath(host.programDir);
  put({});
  openTool();
  EXPECT_EQ(host.boxes, Boxes({report(err::InputPastEnd)}));
  EXPECT_TRUE(window().isVisible());
  window().resize(1000, 700);
  EXPECT_EQ(host.boxes.size(), 1);
}

TEST_F(KeptSettings, AFileThatCannotBeWrittenLeavesTheWindowOpen) {
  openInProgramsDirectory();
  QFile::remove(path());
  QDir(host.programDir).mkdir(u"TessalyAndDocContent.ini"_s);
  host.boxes.clear();
  end();
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '75':\n\n"_s))
      << host.boxes[0].text.toStdString();
  EXPECT_TRUE(window().isVisible());
  EXPECT_TRUE(state().gSession.isNothing());
}

TEST_F(KeptSettings, LoadLastSettingsReadsTheFileAgainWithoutListing) {
  openInProgramsDirectory();
  put("[TessalyAndDocContent]\r\nSource=Hub/Acme\r\n[SourceDB]\r\nb.nsf\r\na.nsf\r\n[DestDB]\r\n");
  notes().log.clear();
  QTest::mouseClick(window().cmdLoadLast, Qt::LeftButton);
  EXPECT_EQ(sources(), QStringList({u"a.nsf"_s, u"b.nsf"_s}));
  EXPECT_EQ(window().lstServer->text(), u"Hub/Acme"_s);
  EXPECT_EQ(window().lstDesignServer->text(), QString()) << "a missing key empties its box";
  EXPECT_EQ(notes().log, QStringList());
  EXPECT_EQ(host.boxes, Boxes());
}

}  // namespace
}  // namespace lens
