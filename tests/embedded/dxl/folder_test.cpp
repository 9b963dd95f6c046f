// Imports a folder of real exports, when there is one: set LENS_DXL_DIR to it.
#include <QDirIterator>
#include <QXmlStreamReader>
#include <algorithm>
#include <iostream>

#include "import_fixture.h"

namespace lens {
namespace {

struct SourceNote {
  QString unid;
  QStringList items;
};

// Every item of every note of the file, read apart from the importer. No notes: the file is no DXL.
QVector<SourceNote> sourceNotes(const QString& path) {
  QFile file(path);
  QVector<SourceNote> notes;
  if (!file.open(QIODevice::ReadOnly)) return notes;
  QXmlStreamReader xml(&file);
  QString pending;
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement) continue;
    if (xml.name() == u"note")
      notes.push_back({});
    else if (notes.isEmpty())
      continue;
    else if (xml.name() == u"noteinfo")
      notes.last().unid = xml.attributes().value(QStringLiteral("unid")).toString();
    else if (xml.name() == u"item")
      pending = xml.attributes().value(QStringLiteral("name")).toString();
    if (xml.name() == u"item") notes.last().items.push_back(pending);
  }
  return notes;
}

TEST_F(DxlImport, EveryItemOfAFolderOfExportsIsStored) {
  const QString folder = qEnvironmentVariable("LENS_DXL_DIR");
  if (folder.isEmpty()) GTEST_SKIP() << "LENS_DXL_DIR names no folder of DXL files";
  QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
  int files = 0, items = 0;
  QStringList kept, ignored, refused;
  while (it.hasNext()) {
    const QString path = it.next();
    const QVector<SourceNote> source = sourceNotes(path);
    ImportReport report;
    DxlImporter(*database_).importFile(path, report);
    refused += report.failed;
    if (source.isEmpty()) continue;
    ++files;
    ASSERT_EQ(report.failed.join(u'\n').toStdString(), "");
    EXPECT_GE(report.notes, source.size());
    kept += report.keptRaw;
    ignored += report.ignored;
    for (const SourceNote& note : source) {
      Unid unid;
      Note stored;
      ASSERT_TRUE(Unid::parse(note.unid, unid)) << path.toStdString();
      ASSERT_TRUE(database_->notes().read(unid, stored)) << path.toStdString();
      QStringList names;
      for (const Item& item : stored.items) names.push_back(item.name);
      // The icon note also takes what the database root says of itself, and notes their prolog.
      names.removeIf([](const QString& name) { return name.startsWith(u"$DXL_"); });
      if (!note.items.contains(QStringLiteral("$UpdatedBy"))) names.removeAll(QStringLiteral("$UpdatedBy"));
      QStringList expected = note.items;
      std::sort(expected.begin(), expected.end());
      std::sort(names.begin(), names.end());
      EXPECT_EQ(names.join(u' ').toStdString(), expected.join(u' ').toStdString()) << path.toStdString();
      items += int(names.size());
    }
  }
  std::cout << files << " files, " << notes() << " notes, " << items << " items\nrefused:\n"
            << refused.join(u'\n').toStdString() << "\nkept:\n"
            << kept.join(u'\n').toStdString() << "\nignored: " << ignored.size() << "\n";
}

}  // namespace
}  // namespace lens
