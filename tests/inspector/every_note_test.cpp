// Every note that an import brings in can be found by its ID and read item by item: the samples, and a
// folder of exports that LENS_DXL_DIR names.

#include <QDir>
#include <cstdio>

#include "app/sample_workspace.h"
#include "embedded/dxl/dxl_importer.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

class EveryNoteTest : public LensFixture {
 protected:
  static constexpr quint16 kAllClasses = 0x7FFF;

  // Views each note of a database by note ID and clicks each of its items.
  int viewAll(const DatabasePlace& place) {
    workspace->client().showDatabase(place);
    const auto store = workspace->database(place.server, place.path);
    int viewed = 0;
    for (const NoteSummary& summary : store->list(kAllClasses)) {
      Note note;
      EXPECT_TRUE(store->read(summary.id, note));
      form().NotesID->setText(QString::number(summary.id));
      form().viewNotesID->raiseClick();
      EXPECT_EQ(rows("fldList").size(), note.items.size()) << place.path.toStdString() << " " << summary.id;
      EXPECT_EQ(text("NotesUID"), note.header.unid.text());
      for (int row = 0; row < note.items.size(); ++row) {
        select("fldList", row);
        EXPECT_TRUE(rows("fldList")[row].startsWith(note.items[row].name + u": "));
        // An attachment's size is known only where capture collected it.
        if (note.items[row].type() != itemtype::Object) {
          EXPECT_EQ(boxes(), QStringList()) << note.items[row].name.toStdString();
        }
        host.boxes.clear();
      }
      ++viewed;
    }
    return viewed;
  }
};

TEST_F(EveryNoteTest, OfTheSamplesCanBeRead) {
  fillFirstTime(*workspace);
  openSampleMail(*workspace);
  start();
  EXPECT_TRUE(text("fldList").startsWith(u"Body:"));
  EXPECT_TRUE(text("txtFieldContent").startsWith(u"Dear Mr Okafor"));
  EXPECT_EQ(rows("lstServerList").size(), 4);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_GT(viewAll({u"CN=ACME-HUB01/O=Acme"_s, u"names.nsf"_s}), 15);
  EXPECT_GT(viewAll({QString(), u"mail/kmeier.nsf"_s}), 5);
  EXPECT_GT(viewAll({QString(), u"disc/ideas.nsf"_s}), 20);
  EXPECT_GT(viewAll({QString(), u"help/designer.nsf"_s}), 250);
}

TEST_F(EveryNoteTest, ASecondStartLeavesAFilledWorkspaceAlone) {
  fillFirstTime(*workspace);
  const qint64 before = workspace->database(QString(), u"mail/kmeier.nsf"_s)->changeSequence();
  fillFirstTime(*workspace);
  EXPECT_EQ(workspace->database(QString(), u"mail/kmeier.nsf"_s)->changeSequence(), before);
}

TEST_F(EveryNoteTest, OfAFolderOfExportsCanBeRead) {
  const QString folder = qEnvironmentVariable("LENS_DXL_DIR");
  if (folder.isEmpty()) GTEST_SKIP() << "LENS_DXL_DIR names no folder of exports";
  start();
  int viewed = 0;
  for (const QFileInfo& application : QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    const QString path = application.fileName() + u".nsf"_s;
    openDatabase(path);
    ImportReport report;
    DxlImporter(*database).importFiles({application.filePath()}, report);
    host.boxes.clear();
    viewed += viewAll({QString(), path});
  }
  EXPECT_GT(viewed, 0);
  std::printf("%d notes viewed\n", viewed);
}

}  // namespace
}  // namespace lens
