// A database whose export is imported into a second one.
#pragma once

#include <gtest/gtest.h>

#include <QBuffer>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include "embedded/dxl/dxl_exporter.h"
#include "embedded/dxl/dxl_importer.h"
#include "embedded/dxl/export/database_compare.h"
#include "embedded/dxl/export/table_check.h"

namespace lens {

using namespace Qt::StringLiterals;

class DxlExport : public ::testing::Test {
 protected:
  DxlExport() : source_(create()) {}

  std::shared_ptr<Database> create() {
    DatabaseInfo info;
    info.title = QStringLiteral("Source");
    return Database::create(folder_.filePath(QStringLiteral("%1.nsf").arg(++made_)), info);
  }

  QByteArray exported() {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(exportDatabase(*source_, buffer));
    return buffer.data();
  }
  QByteArray exported(const QVector<NoteId>& ids) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(exportNotes(*source_, ids, buffer));
    return buffer.data();
  }

  std::shared_ptr<Database> imported(const QByteArray& dxl) {
    const QString path = folder_.filePath(QStringLiteral("%1.dxl").arg(++made_));
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(dxl);
    file.close();
    std::shared_ptr<Database> target = Database::create(path + u".nsf"_s, {});
    report_ = {};
    DxlImporter(*target).importFile(path, report_);
    EXPECT_EQ(report_.failed.join(u'\n').toStdString(), "");
    return target;
  }

  // The export of the source gives the source again; returns the export.
  QByteArray roundTrip() {
    const QByteArray dxl = exported();
    EXPECT_EQ(fault(dxl).toStdString(), "");
    EXPECT_EQ(tableFault(dxl).toStdString(), "");
    saveForOtherReaders(dxl);
    EXPECT_EQ(difference(*source_, *imported(dxl)).toStdString(), "");
    return dxl;
  }

  NoteId save(Note note) {
    source_->notes().save(note);
    return note.header.id;
  }
  // A document with one item makes the round trip; returns the export.
  QByteArray itemTrip(quint16 flags, const QByteArray& value, const QString& name = u"A"_s) {
    Note note;
    note.add(name, flags, value);
    save(std::move(note));
    return roundTrip();
  }

  // LENS_DXL_SAVE names a folder for all exports, to hold them against the schema with another program.
  void saveForOtherReaders(const QByteArray& dxl) {
    static int number = 0;
    const QString folder = qEnvironmentVariable("LENS_DXL_SAVE");
    if (folder.isEmpty()) return;
    QFile file(u"%1/%2.dxl"_s.arg(folder).arg(++number));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(dxl) == dxl.size());
  }

  // "" for well-formed DXL without a document type.
  static QString fault(const QByteArray& dxl) {
    QXmlStreamReader xml(dxl);
    while (!xml.atEnd()) {
      const QXmlStreamReader::TokenType token = xml.readNext();
      if (token == QXmlStreamReader::DTD) return u"it has a document type"_s;
      if (token == QXmlStreamReader::StartElement && xml.namespaceUri() != u"http://www.lotus.com/dxl")
        return u"an element is of another namespace"_s;
    }
    return xml.hasError() ? xml.errorString() : QString();
  }

  QTemporaryDir folder_;
  int made_ = 0;
  std::shared_ptr<Database> source_;
  ImportReport report_;
};

}  // namespace lens
