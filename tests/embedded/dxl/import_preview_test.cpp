#include "embedded/dxl/import_preview.h"

#include <QRandomGenerator>
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
  // What an import really does to the notes that are there, and how many it brings.
  QSet<NoteId> reallyChanged(const QByteArray& bytes, int& notes) {
    QSet<NoteId> there;
    for (const NoteSummary& note : database_->notes().list(0x7FFF)) there.insert(note.id);
    const qint64 since = database_->versions().changeSequence();
    ImportReport report;
    DxlImporter importer(*database_);
    importer.applyDatabaseProperties(false);
    importer.importFile(write(bytes), report);
    notes = report.notes;
    QSet<NoteId> changed;
    for (const NoteChange& change : database_->versions().changesSince(since))
      if (there.contains(change.id)) changed.insert(change.id);
    return changed;
  }
  // Gives how many notes the import replaces, as it was told.
  qsizetype expectAsTold(const QByteArray& bytes) {
    const ImportPreview preview = previewImport(*database_, {write(bytes)});
    const QSet<NoteId> told(preview.replaced.begin(), preview.replaced.end());
    EXPECT_EQ(told.size(), preview.replaced.size());
    int notes = 0;
    EXPECT_EQ(told, reallyChanged(bytes, notes)) << bytes.constData();
    EXPECT_EQ(preview.notes, notes) << bytes.constData();
    return told.size();
  }
};

// As an export marks an access control list that tells its own note.
QByteArray aclXml(const QByteArray& unid) {
  return "<acl xmlns:lens='urn:tessaly-lens:dxl' lens:noteinfo='" + unid +
         " 1 0040 0000000000000000 0000000000000000 0000000000000000 0000000000000000 0000000000000000'/>";
}

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
      // Of somebody else, by its namespace.
      "<document xmlns='http://example.org/other'><noteinfo unid='" +
          QByteArray("3").rightJustified(32, '0') + "'/></document>",
      "<database xmlns='http://example.org/other'>" + memoXml(1) + end,
      kHead + memoXml(1) + "<document><noteinfo unid='12'/></document>" + end,  // refused
      // The last one counts.
      "<document><noteinfo unid='" + QByteArray("1").rightJustified(32, '0') + "'/><noteinfo unid='" +
          QByteArray("2").rightJustified(32, '0') + "'/></document>",
      kHead + aclXml(QByteArray("2").rightJustified(32, '0')) + end,
      kHead + "<acl xmlns:lens='urn:tessaly-lens:dxl' lens:notefollows='true'/>" + end,
      kHead + "<acl xmlns:lens='urn:tessaly-lens:dxl' lens:notefollows='true'/><note class='acl'/>" + end,
  };
  int replacing = 0;
  for (const QByteArray& bytes : files) replacing += expectAsTold(bytes) > 0;
  EXPECT_GT(replacing, 12);
}

// Notes of every kind in any order, of few UNIDs, into a database that is what earlier files made of it.
TEST_F(ImportPreviewTest, NamesWhatFilesAtRandomChange) {
  QRandomGenerator random(20);
  const QByteArray kinds[] = {"document",
                              "note class='document'",
                              "note class='icon'",
                              "note class='0010'",
                              "note class='acl'",
                              "note class='designcollection'",
                              "note class='view' default='true'",
                              "note class='helpindex'",
                              "profiledocument name='Setup'",
                              "profiledocument name='SETUP' username='CN=Ada/O=Acme'",
                              "form name='F' alias='f|g'",
                              "view name='V' default='true'",
                              "agent name='A'",
                              "helpaboutdocument",
                              "helpusingdocument"};
  const QByteArray loose[] = {"<acl/>", "<acl><aclentry name='A'/></acl>", "<launchsettings/>",
                              "<databaseinfo dbid='852585F8005AE191'/>"};
  const auto unid = [&] { return QByteArray::number(random.bounded(12)).rightJustified(32, '1'); };
  const auto note = [&] {
    const QByteArray kind = kinds[random.bounded(int(std::size(kinds)))];
    const QByteArray info = random.bounded(3) ? "<noteinfo unid='" + unid() + "'/>" : QByteArray();
    return "<" + kind + ">" + info + "<item name='$TITLE'><text>t</text></item></" + kind.split(' ').first() +
           ">";
  };
  qsizetype replacing = 0;
  for (int round = 0; round < 80 && !HasFailure(); ++round) {
    SCOPED_TRACE(round);
    QByteArray file;
    for (int left = random.bounded(6); left > 0; --left)
      file += random.bounded(4) ? note() : random.bounded(3) ? loose[random.bounded(4)] : aclXml(unid());
    replacing += expectAsTold(random.bounded(5) ? kHead + file + "</database>" : note());
  }
  EXPECT_GT(replacing, 100);
}

// The class of a note may be a word or a number.
TEST_F(ImportPreviewTest, AnIconNoteThatTellsItsClassAsANumberKeepsItsTitle) {
  run(kHead + "<note class='0010'><item name='$TITLE'><text>Of its own</text></item></note></database>");
  Note icon;
  ASSERT_TRUE(database_->notes().read(database_->notes().specialNote(noteclass::Icon), icon));
  EXPECT_EQ(icon.text(u"$TITLE"), u"Of its own"_s);
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
  EXPECT_FALSE(holdsDatabaseElement(write("<database xmlns='http://example.org/other'/>")));
  EXPECT_FALSE(holdsDatabaseElement(write(memoXml(1))));
  EXPECT_FALSE(holdsDatabaseElement(write("no XML")));
  EXPECT_FALSE(holdsDatabaseElement(folder_.filePath(u"missing"_s)));
  EXPECT_FALSE(holdsDatabaseElement(folder_.path()));
}

}  // namespace
}  // namespace lens
