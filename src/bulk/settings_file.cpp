#include "bulk/settings_file.h"

#include <QFile>
#include <QFileInfo>

#include "bulk/settings_text.h"
#include "host/paths.h"
#include "host/save_file.h"

namespace lens {
namespace {

// Many times what a list of all databases of a server takes.
constexpr qint64 kLargestSettings = 256 << 20;

QByteArray readWholeSettings(const QString& path) {
  QFile file(path);
  const QFileInfo info(path);
  const auto refuse = [&path](int number, const QString& reason) {
    throw RuntimeError(number, u"%1: the settings cannot be read (%2)"_s.arg(path, reason));
  };
  if (!info.exists()) refuse(err::FileNotFound, u"there is no such file"_s);
  if (!info.isFile()) refuse(err::PathFileAccess, u"this is no file"_s);
  if (info.size() > kLargestSettings) refuse(err::PathFileAccess, u"it is larger than 256 MB"_s);
  if (!file.open(QIODevice::ReadOnly)) refuse(err::PathFileAccess, file.errorString());
  const QByteArray bytes = file.readAll();
  // Half of it would be saved over the whole.
  if (file.error() != QFile::NoError) refuse(err::PathFileAccess, file.errorString());
  return bytes;
}

SettingsKeys presentKeys(const FrmReplic& window) {
  return {window.lstServer->text(), window.lstDesignServer->text(), window.txtFind->text(),
          window.txtReplace->text()};
}

// A row behind the last one is empty.
QStringList firstRows(const ListBox& list, int count) {
  QStringList rows;
  rows.reserve(count);
  for (int row = 0; row < count; ++row) rows += list.list(row);
  return rows;
}

}  // namespace

void SettingsFile::findSettings() {
  QString directory = desk_.host.programDirectory();
  if (!takesFiles(directory)) {
    const QString ofUser = desk_.host.userDirectory();
    if (!ofUser.isEmpty()) directory = ofUser;
  }
  desk_.state.gIniPath = desk_.host.joinPath(directory, kSettingsName + u".ini"_s);
}

void SettingsFile::provideSettings() {
  findSettings();
  if (!QFileInfo::exists(desk_.state.gIniPath))
    replaceWhole(desk_.state.gIniPath, newSettingsFile(presentKeys(desk_.window)));
}

// A file that cannot be read has no keys, so the boxes are emptied before its failure is told.
void SettingsFile::readSettings() {
  findSettings();
  QByteArray file;
  try {
    file = readWholeSettings(desk_.state.gIniPath);
  } catch (const RuntimeError&) {
    readKeys({});
    throw;
  }
  readKeys(file);
  const FrmReplic& window = desk_.window;
  if (!readList(file, "[SourceDB]", *window.lstDBNames)) return;
  if (!readList(file, "[DestDB]", *window.lstDBNamesDest)) return;
  readList(file, "[Fields]", *window.fldList);
}

void SettingsFile::readKeys(QByteArrayView file) {
  const FrmReplic& window = desk_.window;
  window.lstServer->setText(settingsKey(file, "Source"));
  window.lstDesignServer->setText(settingsKey(file, "Destination"));
  window.txtFind->setText(settingsKey(file, "txtFind"));
  window.txtReplace->setText(settingsKey(file, "txtReplace"));
}

bool SettingsFile::readList(QByteArrayView file, QByteArrayView header, ListBox& list) {
  QStringList rows;
  if (!readSettingsSection(file, header, rows)) return false;
  list.clear();
  for (const QString& row : std::as_const(rows)) list.addItem(row);
  return true;
}

// As many rows of fields are saved as there are target databases; where there are fewer fields, empty rows.
void SettingsFile::writeSettings() {
  desk_.state.gSession.release();
  findSettings();
  const FrmReplic& window = desk_.window;
  const int targets = window.lstDBNamesDest->listCount();
  const SettingsLists lists{firstRows(*window.lstDBNames, window.lstDBNames->listCount()),
                            firstRows(*window.lstDBNamesDest, targets), firstRows(*window.fldList, targets)};
  const QString& path = desk_.state.gIniPath;
  const QByteArray old = QFileInfo::exists(path) ? readWholeSettings(path) : QByteArray();
  replaceWhole(path, savedSettingsFile(old, presentKeys(window), lists));
}

}  // namespace lens
