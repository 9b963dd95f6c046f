#include "bulk/settings_text.h"

#include "host/profile_file.h"
#include "notes/code_page.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

// The text is what stands in front of the first two NULs of the buffer, so a value may have two bytes less.
constexpr qsizetype kKeyBuffer = 255;

void setKeys(QByteArray& file, const SettingsKeys& keys) {
  const QByteArray section = toCodePage(kSettingsName);
  setProfileValue(file, section, "Source", toCodePage(keys.sourceServer));
  setProfileValue(file, section, "Destination", toCodePage(keys.targetServer));
  setProfileValue(file, section, "txtFind", toCodePage(keys.find));
  setProfileValue(file, section, "txtReplace", toCodePage(keys.replace));
}

void appendSection(QByteArray& file, QByteArrayView header, const QStringList& rows) {
  file += header + "\r\n";
  for (const QString& row : rows) file += asOneLine(toCodePage(row)) + "\r\n";
}

}  // namespace

QByteArray newSettingsFile(const SettingsKeys& keys) {
  QByteArray file;
  setKeys(file, keys);
  return file;
}

QByteArray savedSettingsFile(QByteArray file, const SettingsKeys& keys, const SettingsLists& lists) {
  for (const char* section : {"SourceDB", "DestDB", "WVDB", "Fields"}) deleteProfileSection(file, section);
  setKeys(file, keys);
  appendSection(file, "[SourceDB]", lists.sourceDatabases);
  appendSection(file, "[DestDB]", lists.targetDatabases);
  appendSection(file, "[Fields]", lists.fields);
  return file;
}

QString settingsKey(QByteArrayView file, QByteArrayView key) {
  const QByteArray value = profileValue(file, toCodePage(kSettingsName), key, kKeyBuffer);
  if (value.size() + 2 > kKeyBuffer) throw RuntimeError(err::InvalidCall);
  return fromCodePage(value);
}

bool readSettingsSection(QByteArrayView file, QByteArrayView header, QStringList& rows) {
  TextLines lines(file);
  bool found = false;
  do found = lines.next() == header;
  while (!found && !lines.atEnd());
  if (lines.atEnd()) return false;
  rows.clear();
  bool inside = true;
  while (inside && !lines.atEnd()) {
    const QByteArrayView line = lines.next();
    inside = !line.startsWith('[');
    if (inside && !line.isEmpty()) rows += fromCodePage(upToNul(line.toByteArray()));
  }
  return true;
}

}  // namespace lens
