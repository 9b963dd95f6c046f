#include "embedded/dxl/import_preview.h"

#include <QSet>

#include "embedded/dxl/import_fixture.h"

namespace lens {
namespace {

using namespace Qt::StringLiterals;

const QByteArray kHead = "<database xmlns='http://www.lotus.com/dxl' title='Other'>";

QByteArray memoXml(int number) {
  return "<document form='Memo'><noteinfo unid='" + QByteArray::number(number).rightJustified(32, '0') +
         "'/><item name='Subject'><text>x</text></item></document>";
}

class ImportPreviewTest : public DxlImport {
 protected:
  ImportPreviewTest() {
    run(kHead + memoXml(1) + memoXml(2) + memoXml(3) +
        "<acl/><note class='icon'><item name='$TITLE'><text>t</text></item></note>"
        "<helpaboutdocument/><form name='F'><noteinfo unid='" +
        QByteArray(32, 'A') + "'/></form></database>");
  }
  // What an import really does to the notes that are there.
  QSet<NoteId> reallyChanged(const QByteArray& bytes) {
    QSet<NoteId> there;
    for (const NoteSummary& note : database_->notes().list(0x7FFF)) there.insert(note.id);
    const qint64 since = database_->versions().changeSequence();
    ImportReport report;
    DxlImporter importer(*database_);
    importer.applyDatabaseProperties(false);
    importer.importFile(write(bytes), report);
    QSet<NoteId> changed;
    for (const NoteChange& change : database_->versions().changesSince(since))
      if (there.contains(change.id)) changed.insert(change.id);
    return changed;
  }
};

// The list that the user sees is what happens then.
TEST_F(ImportPreviewTest, NamesTheNotesThatAnImportChangesAndNoOthers) {
  const QByteArray end = "</database>";
  const QVector<QByteArray> files = {
      memoXml(1),
      memoXml(9),
      kHead + memoXml(2) + memoXml(8) + end,
      kHead + end,
      kHead + "<acl/>" + end,
      kHead + "<note class='icon'><item name='$TITLE'><text>u</text></item></note>" + end,
      kHead + "<note class='icon'/><launchsettings/>" + end,
      "<note class='icon'/>",
      "<note class='0010'/>",
      "<helpaboutdocument/>",
      "<form name='F'><noteinfo unid='" + QByteArray(32, 'A') + "'/></form>",
      "<form name='F'/>",
      "<note class='acl'/>",
      kHead + memoXml(1),                     // cut short
      "<html/>",                              // no DXL
      "<note class='nonsense'/>",             // refused
      kHead + memoXml(1) + memoXml(1) + end,  // twice
      "<note class='document'><noteinfo unid='" + QByteArray("3").rightJustified(32, '0') + "'/></note>",
  };
  int replacing = 0;
  for (const QByteArray& bytes : files) {
    const ImportPreview preview = previewImport(*database_, {write(bytes)});
    const QSet<NoteId> told(preview.replaced.begin(), preview.replaced.end());
    EXPECT_EQ(told.size(), preview.replaced.size());
    replacing += !told.isEmpty();
    EXPECT_EQ(told, reallyChanged(bytes)) << bytes.constData();
  }
  EXPECT_GT(replacing, 9);
}

TEST_F(ImportPreviewTest, ChangesNothingAndCountsWhatAllFilesBring) {
  const qint64 before = database_->versions().changeSequence();
  write(kHead + memoXml(1) + memoXml(7) + "</database>", u"in/a.dxl"_s);
  write(memoXml(1), u"in/sub/b.dxl"_s);
  write("no XML", u"in/c.txt"_s);
  const ImportPreview preview = previewImport(*database_, {folder_.filePath(u"in"_s)});
  EXPECT_EQ(preview.notes, 3);
  EXPECT_EQ(preview.replaced.size(), 2) << "the document and the icon note";
  EXPECT_EQ(database_->versions().changeSequence(), before);
}

TEST_F(ImportPreviewTest, EndsWhenItIsToldTo) {
  struct Stop : ImportProgress {
    bool go(const QString&, qint64, qint64) override { return false; }
  } stop;
  EXPECT_TRUE(previewImport(*database_, {write(memoXml(1))}, &stop).cancelled);
}

TEST_F(ImportPreviewTest, TellsFilesThatHoldADatabase) {
  EXPECT_TRUE(holdsDatabaseElement(write("<?xml version='1.0'?>\n<!-- x -->" + kHead + "</database>")));
  EXPECT_TRUE(holdsDatabaseElement(write(kHead + "<document>cut")));
  EXPECT_FALSE(holdsDatabaseElement(write(memoXml(1))));
  EXPECT_FALSE(holdsDatabaseElement(write("no XML")));
  EXPECT_FALSE(holdsDatabaseElement(folder_.filePath(u"missing"_s)));
  EXPECT_FALSE(holdsDatabaseElement(folder_.path()));
}

}  // namespace
}  // namespace lens
