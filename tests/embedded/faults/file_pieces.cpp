// Files beside databases: settings, extracted attachments, exports. Whatever happens, the file that was there
// stays or the new one is whole.
#include <gtest/gtest.h>

#include <QFile>

#include "bulk/settings_text.h"
#include "embedded/dxl/dxl_exporter.h"
#include "embedded/files/ini_file.h"
#include "embedded/store/database.h"
#include "host/save_file.h"
#include "piece_of_work.h"

namespace lens::testbed {
namespace {

using namespace Qt::StringLiterals;

constexpr int kFiles = 3;

QString databaseIn(const QString& directory) {
  return directory + u"/letters.nsf"_s;
}
QString targetIn(const QString& directory, int number) {
  return u"%1/out%2"_s.arg(directory).arg(number);
}
QByteArray bytesOf(int number) {
  // One that is written at once, and one that waits in a buffer for its end.
  return QByteArray(number == 1 ? 2'000 : 300'000, char('a' + number));
}

QByteArray contentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& content) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_EQ(file.write(content), content.size());
}

// Documents with one attachment each, and former files where they go.
void prepareFiles(const QString& directory) {
  const auto database = Database::create(databaseIn(directory), {});
  for (int number = 0; number < kFiles; ++number) {
    Database::Transaction transaction(*database);
    FileObject file;
    file.objectId = database->objects().begin();
    database->objects().append(file.objectId, bytesOf(number));
    file.size = quint32(database->objects().finish(file.objectId).size);
    file.name = u"a.bin"_s;
    Note note;
    note.add(u"Subject"_s, itemflag::Summary, textValue(QString::number(number)));
    note.add(u"$FILE"_s, itemflag::Summary, fileObjectValue(file));
    database->notes().save(note);
    transaction.commit();
    writeFile(targetIn(directory, number), "former");
  }
}

QVector<quint32> objectsOf(const Database& database) {
  QVector<quint32> objects;
  database.notes().scan(noteclass::Document, [&](const Note& note) {
    FileObject file;
    if (readFileObject(note.find(u"$FILE")->data(), file)) objects.push_back(file.objectId);
    return true;
  });
  return objects;
}

const RegisterPiece extracting(
    {"ExtractingAttachments", prepareFiles,
     [](const QString& directory, const auto& stepDone) {
       const auto database = Database::open(databaseIn(directory));
       const QVector<quint32> objects = objectsOf(*database);
       for (int number = 0; number < kFiles; ++number) {
         database->objects().extract(objects[number], targetIn(directory, number));
         stepDone();
       }
     },
     [](const QString& directory, int stepsDone) {
       for (int number = 0; number < kFiles; ++number) {
         const QByteArray content = contentOf(targetIn(directory, number));
         EXPECT_TRUE(content == bytesOf(number) || (content == "former" && number >= stepsDone)) << number;
       }
       EXPECT_EQ(objectsOf(*Database::open(databaseIn(directory))).size(), kFiles);
     }});

// As whoever exports does it: the exporter leaves it to its caller to name the file.
void exportTo(const Database& database, const QString& path) {
  QSaveFile file(path);
  try {
    if (file.open(QIODevice::WriteOnly) && exportDatabase(database, file) && commitWhole(file)) return;
  } catch (const RuntimeError& error) {
    throw RuntimeError(error.number(), path + u": "_s + error.description());
  }
  throw RuntimeError(err::PathFileAccess, path + u": "_s + file.errorString());
}

const RegisterPiece exporting({"ExportingADatabase", prepareFiles,
                               [](const QString& directory, const auto& stepDone) {
                                 const auto database = Database::open(databaseIn(directory));
                                 for (int number = 0; number < 2; ++number) {
                                   exportTo(*database, targetIn(directory, number));
                                   stepDone();
                                 }
                               },
                               [](const QString& directory, int stepsDone) {
                                 for (int number = 0; number < 2; ++number) {
                                   const QByteArray content = contentOf(targetIn(directory, number));
                                   const bool whole = content.startsWith("<?xml") &&
                                                      content.trimmed().endsWith("</database>") &&
                                                      content.count("<filedata>") == kFiles;
                                   EXPECT_TRUE(whole || (content == "former" && number >= stepsDone))
                                       << number;
                                 }
                                 EXPECT_EQ(objectsOf(*Database::open(databaseIn(directory))).size(), kFiles);
                               }});

IniFile settingsIn(const QString& directory) {
  return IniFile(directory + u"/notes.ini"_s, u"Notes"_s);
}

const RegisterPiece changingSettings(
    {"ChangingSettings",
     [](const QString& directory) { writeFile(directory + u"/notes.ini"_s, "[Notes]\nUserName=A\n"); },
     [](const QString& directory, const auto& stepDone) {
       IniFile settings = settingsIn(directory);
       for (int number = 0; number < kFiles; ++number) {
         settings.change([&](IniFile& ini) { ini.setValue(u"Step"_s, QString::number(number + 1)); });
         stepDone();
       }
     },
     [](const QString& directory, int stepsDone) {
       IniFile settings = settingsIn(directory);
       EXPECT_EQ(settings.value(u"UserName"), u"A"_s);
       const int step = settings.value(u"Step").toInt();
       EXPECT_TRUE(step == stepsDone || step == stepsDone + 1) << step << " of " << stepsDone;
       // A process that died with the lock in its hands keeps nobody else out.
       settings.change([](IniFile& ini) { ini.setValue(u"After"_s, u"1"_s); });
       EXPECT_EQ(settingsIn(directory).value(u"After"), u"1"_s);
     }});

const QString kFormerRow = u"former.nsf"_s;

QString bulkSettingsIn(const QString& directory) {
  return directory + u"/TessalyAndDocContent.ini"_s;
}
// Long enough to be written in several pieces.
SettingsLists bulkLists(int number) {
  return {QStringList(2'000, u"database %1.nsf"_s.arg(number)), {u"target.nsf"_s}, {}};
}

const RegisterPiece savingTheBulkToolsSettings(
    {"SavingTheBulkToolsSettings",
     [](const QString& directory) {
       writeFile(bulkSettingsIn(directory), savedSettingsFile({}, {}, {{kFormerRow}, {}, {}}));
     },
     [](const QString& directory, const auto& stepDone) {
       const QString path = bulkSettingsIn(directory);
       for (int number = 0; number < kFiles; ++number) {
         replaceWhole(path, savedSettingsFile(contentOf(path), {}, bulkLists(number)));
         stepDone();
       }
     },
     [](const QString& directory, int stepsDone) {
       const QByteArray content = contentOf(bulkSettingsIn(directory));
       QStringList rows;
       ASSERT_TRUE(readSettingsSection(content, "[SourceDB]", rows));
       const bool isFormer = rows == QStringList(kFormerRow) && stepsDone == 0;
       const bool isLast = stepsDone > 0 && rows == bulkLists(stepsDone - 1).sourceDatabases;
       EXPECT_TRUE(isFormer || isLast || rows == bulkLists(stepsDone).sourceDatabases) << stepsDone;
       EXPECT_TRUE(content.endsWith("[Fields]\r\n") || content.endsWith("[Fields]\r\n\r\n")) << "to its end";
     }});

}  // namespace
}  // namespace lens::testbed
