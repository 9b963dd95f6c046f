// The samples, and a folder of real exports where LENS_DXL_DIR names one: what an import of them made is
// the same after an export and a second import.
#include <QDirIterator>
#include <iostream>

#include "embedded/dxl/export/export_fixture.h"

namespace lens {
namespace {

QStringList filesBelow(const QString& folder) {
  QStringList files;
  QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
  while (it.hasNext()) files.push_back(it.next());
  files.sort();
  return files;
}

class SampleExport : public DxlExport {
 protected:
  // False when the file is no DXL.
  bool take(const QString& path) {
    source_ = create();
    ImportReport report;
    DxlImporter(*source_).importFile(path, report);
    return report.failed.isEmpty();
  }
};

TEST_F(SampleExport, SamplesAreTheSameAfterAnExport) {
  int samples = 0;
  for (const QString& path : filesBelow(QStringLiteral(LENS_SAMPLES_DIR))) {
    if (!path.endsWith(u".dxl")) continue;
    SCOPED_TRACE(path.toStdString());
    ASSERT_TRUE(take(path));
    const QByteArray dxl = roundTrip();
    EXPECT_EQ(dxl, exported());
    EXPECT_FALSE(dxl.contains("lens:item")) << "items need marks";
    ++samples;
  }
  EXPECT_GE(samples, 3);
}

// Wherever a text stands in an element: one that it cannot hold must come back all the same.
TEST_F(SampleExport, CharactersThatXmlCannotHoldComeBackFromEveryItem) {
  for (const QString& path : filesBelow(QStringLiteral(LENS_SAMPLES_DIR))) {
    if (!path.endsWith(u".dxl")) continue;
    SCOPED_TRACE(path.toStdString());
    ASSERT_TRUE(take(path));
    for (const NoteSummary& summary : source_->notes().list(0xFFFF)) {
      Note note;
      ASSERT_TRUE(source_->notes().read(summary.id, note));
      for (Item& item : note.items) {
        if (!itemtype::isText(item.type())) continue;
        QStringList texts;
        const Value values = itemValues(item);
        if (values.isEmpty()) continue;
        for (const Value& value : values.values()) texts += u'\u0001' + value.text();
        item.value = item.type() == itemtype::Text ? textValue(texts.first()) : textListValue(texts);
      }
      source_->notes().saveAsGiven(note);
    }
    roundTrip();
  }
}

TEST_F(SampleExport, TextOfTheSamplesIsReadable) {
  ASSERT_TRUE(take(QStringLiteral(LENS_SAMPLES_DIR "/mail.dxl")));
  const QByteArray dxl = exported();
  for (const char* part :
       {"<text>Contract 2024-117, second draft</text>",
        "<par def=\"1\"><run><font size=\"10pt\"/>Dear Mr Okafor,",
        "<attachmentref name=\"contract.pdf\" displayname=\"contract.pdf\"/>", "hosttype=\"msdos\""})
    EXPECT_TRUE(dxl.contains(part)) << part;
}

TEST_F(SampleExport, RealExportsAreTheSameAfterAnExport) {
  const QString folder = qEnvironmentVariable("LENS_DXL_DIR");
  if (folder.isEmpty()) GTEST_SKIP() << "LENS_DXL_DIR names no folder of DXL files";
  int files = 0, notes = 0;
  qsizetype raw = 0, marks = 0, bytes = 0;
  for (const QString& path : filesBelow(folder)) {
    SCOPED_TRACE(path.toStdString());
    if (!take(path)) continue;
    const QByteArray dxl = roundTrip();
    ++files;
    notes += source_->notes().noteCount(0x7FFF);
    raw += dxl.count("<rawitemdata");
    marks += dxl.count(" lens:");
    bytes += dxl.size();
    source_.reset();
  }
  std::cout << files << " files, " << notes << " notes, " << bytes << " bytes, " << raw << " raw values, "
            << marks << " marks\n";
}

}  // namespace
}  // namespace lens
