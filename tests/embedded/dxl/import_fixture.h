// A database in a temporary folder, and DXL written as text into it.
#pragma once

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "embedded/dxl/dxl_importer.h"
#include "embedded/store/database.h"

namespace lens {

class DxlImport : public ::testing::Test {
 protected:
  DxlImport() : database_(Database::create(folder_.filePath(QStringLiteral("t.nsf")), {})) {}

  QString write(const QByteArray& bytes, const QString& name = QStringLiteral("in.dxl")) {
    const QString path = folder_.filePath(name);
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return path;
  }

  // Imports the bytes as one file.
  ImportReport run(const QByteArray& bytes) {
    ImportReport report;
    DxlImporter(*database_).importFile(write(bytes), report);
    return report;
  }

  // Imports one document with this content and gives it back; a failure fails the test.
  Note document(const QByteArray& content, const QByteArray& attributes = {}) {
    return onlyNote(
        run("<document xmlns='http://www.lotus.com/dxl' " + attributes + ">" + content + "</document>"),
        noteclass::Document);
  }

  Note design(const QByteArray& xml, quint16 noteClass) { return onlyNote(run(xml), noteClass); }

  // The reason for which a document with this content is refused; "" when it is not.
  QString refusal(const QByteArray& content) {
    const ImportReport report = run("<document>" + content + "</document>");
    EXPECT_EQ(notes(), 0);
    return report.failed.isEmpty() ? QString() : report.failed.first();
  }

  int notes() const { return database_->notes().noteCount(0x7FFF); }

  QByteArray attachment(quint32 objectId) const {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    database_->objects().read(objectId, buffer);
    return buffer.data();
  }

  Note onlyNote(const ImportReport& report, quint16 noteClass) {
    EXPECT_EQ(report.failed.join(u'\n').toStdString(), "");
    last_ = report;
    const QVector<NoteSummary> list = database_->notes().list(noteClass);
    EXPECT_EQ(list.size(), 1);
    Note note;
    if (!list.isEmpty()) {
      EXPECT_TRUE(database_->notes().read(list.first().id, note));
    }
    return note;
  }

  QTemporaryDir folder_;
  std::shared_ptr<Database> database_;
  ImportReport last_;
};

// Bytes as "01 02".
inline std::string hex(QByteArrayView bytes) {
  return bytes.toByteArray().toHex(' ').toStdString();
}

// Values of an item as texts, "|" between; "(missing)" without the item.
inline std::string valuesText(const Note& note, QStringView name) {
  const Item* item = note.find(name);
  if (!item) return "(missing)";
  const Value values = itemValues(*item);
  QStringList texts;
  if (values.isArray())
    for (const Value& value : values.values()) texts.push_back(value.text());
  return texts.join(u'|').toStdString();
}

inline std::string namesText(const Note& note) {
  QStringList names;
  for (const Item& item : note.items) names.push_back(item.name);
  return names.join(u' ').toStdString();
}

}  // namespace lens
