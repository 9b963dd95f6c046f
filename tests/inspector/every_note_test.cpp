// Every note that an import brings in can be found by its ID and read item by item, and is listed by the
// class of its kind: the samples, and a folder of exports that LENS_DXL_DIR names.

#include <QDir>
#include <cstdio>

#include "app/sample_workspace.h"
#include "embedded/dxl/dxl_importer.h"
#include "shell/text_routines.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

const char16_t* const kClasses[] = {
    u"SELECTACL",
    u"SELECTACTIONS",
    u"SELECTAGENTS",
    u"SELECTDATABASESCRIPT",
    u"SELECTDATACONNECTIONS",
    u"SELECTDOCUMENTS",
    u"SELECTFOLDERS",
    u"SELECTFORMS",
    u"SELECTFRAMESETS",
    u"SELECTHELPABOUT",
    u"SELECTHELPINDEX",
    u"SELECTHELPUSING",
    u"SELECTICON",
    u"SELECTIMAGERESOURCES",
    u"SELECTJAVARESOURCES",
    u"SELECTMISCCODEELEMENTS",
    u"SELECTMISCFORMATELEMENTS",
    u"SELECTMISCINDEXELEMENTS",
    u"SELECTNAVIGATORS",
    u"SELECTOUTLINES",
    u"SELECTPAGES",
    u"SELECTPROFILES",
    u"SELECTREPLICATIONFORMULAS",
    u"SELECTSCRIPTLIBRARIES",
    u"SELECTSHAREDFIELDS",
    u"SELECTSTYLESHEETRESOURCES",
    u"SELECTSUBFORMS",
    u"SELECTVIEWS",
};

class EveryNoteTest : public LensFixture {
 protected:
  static constexpr quint16 kAllClasses = 0x7FFF;

  // The note IDs of a class, as the object model collects them.
  QStringList listed(const Object& source, const QString& noteClass) {
    const Object notes = source.call(u"CREATENOTECOLLECTION"_s, false).object();
    notes.call(u"SELECTALLNOTES"_s, false);
    notes.set(noteClass, true);
    notes.call(u"BUILDCOLLECTION"_s);
    QStringList ids;
    QString id = notes.call(u"GETFIRSTNOTEID"_s).text();
    for (int i = 0; i < notes.get(u"count"_s).number(); ++i) {
      ids += id;
      id = notes.call(u"GETNEXTNOTEID"_s, id).text();
    }
    return ids;
  }

  // Views each note of each class by a row with its title; an agent's record too. Every note that is
  // stored belongs to one class.
  void viewClasses(const DatabasePlace& place) {
    workspace->client().showDatabase(place);
    const auto store = workspace->database(place.server, place.path);
    const Object source = notes().create(u"Notes.NotesSession"_s).get(u"CURRENTDATABASE"_s).object();
    state().gDb = source;
    QStringList all;
    for (const char16_t* const noteClass : kClasses) {
      const QStringList ids = listed(source, QString::fromUtf16(noteClass));
      for (const QString& id : ids) viewRow(*store, id);
      if (!ids.isEmpty())
        std::printf("%s: %d of %s\n", place.path.toUtf8().constData(), int(ids.size()),
                    QString::fromUtf16(noteClass).toUtf8().constData());
      all += ids;
    }
    EXPECT_EQ(all.removeDuplicates(), 0);
    EXPECT_EQ(all.size(), store->list(kAllClasses).size()) << place.path.toStdString();
  }
  void viewRow(const Database& store, const QString& id) {
    Note note;
    ASSERT_TRUE(store.read(id.toUInt(nullptr, 16), note));
    ListBox& list = control<ListBox>("idList");
    list.clear();
    list.addItem(note.text(u"$TITLE") + u"  # " + eightDigits(id));
    list.setSelected(0, true);
    click("cmdidList");
    EXPECT_EQ(rows("fldList").size(), note.items.size()) << id.toStdString();
    if (note.has(u"$AssistInfo")) {
      selectRow("fldList", u"$AssistInfo:"_s);
      EXPECT_EQ(text("txtFieldContent").count(u'\n'), 9) << id.toStdString();
    }
    EXPECT_EQ(boxes(), QStringList()) << id.toStdString();
    host.boxes.clear();
  }
  // Imports each folder within the folder of exports into a database of its own.
  QVector<DatabasePlace> importExports(const QString& folder) {
    QVector<DatabasePlace> places;
    for (const QFileInfo& application : QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot)) {
      const QString path = application.fileName() + u".nsf"_s;
      openDatabase(path);
      ImportReport report;
      DxlImporter(*database).importFiles({application.filePath()}, report);
      places.push_back({QString(), path});
    }
    host.boxes.clear();
    return places;
  }

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
      // An agent's record is looked up by the title in the row.
      if (note.has(u"$AssistInfo"))
        control<ListBox>("idList").setList(0, note.text(u"$TITLE") + u"  # " + text("idList"));
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

TEST_F(EveryNoteTest, OfTheSamplesIsListedByItsClass) {
  fillFirstTime(*workspace);
  start();
  host.boxes.clear();
  for (const QString& path : {u"mail/kmeier.nsf"_s, u"disc/ideas.nsf"_s}) viewClasses({QString(), path});
}

TEST_F(EveryNoteTest, OfAFolderOfExportsIsListedByItsClass) {
  const QString folder = qEnvironmentVariable("LENS_DXL_DIR");
  if (folder.isEmpty()) GTEST_SKIP() << "LENS_DXL_DIR names no folder of exports";
  start();
  for (const DatabasePlace& place : importExports(folder)) viewClasses(place);
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
  for (const DatabasePlace& place : importExports(folder)) viewed += viewAll(place);
  EXPECT_GT(viewed, 0);
  std::printf("%d notes viewed\n", viewed);
}

}  // namespace
}  // namespace lens
