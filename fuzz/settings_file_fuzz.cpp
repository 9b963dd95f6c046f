// Settings files of the bulk tool from the fuzzer: keys and lists are read or refused with one of two
// numbers, and what is saved into the file is read back, while nothing else of it is lost.

#include "bulk/settings_text.h"
#include "check.h"
#include "host/profile_file.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

QString keyOf(const QByteArray& file, const char* key) {
  try {
    return settingsKey(file, key);
  } catch (const RuntimeError& error) {
    check(error.number() == err::InvalidCall, "A key fails otherwise than by its length.");
    return {};
  }
}

QStringList rowsOf(const QByteArray& file, const char* header) {
  QStringList rows;
  try {
    readSettingsSection(file, header, rows);
  } catch (const RuntimeError& error) {
    check(error.number() == err::InputPastEnd && file.isEmpty(), "A section fails in a file that has bytes.");
  }
  for (const QString& row : rows)
    check(!row.startsWith(u'[') && !row.contains(u'\n') && !row.contains(u'\r') && !row.contains(QChar(0)),
          "A row is no line.", row);
  return rows;
}

qsizetype linesThatAre(const QByteArray& file, QByteArrayView text) {
  qsizetype count = 0;
  for (TextLines lines(file); !lines.atEnd();) count += lines.next() == text;
  return count;
}

QStringList withoutEmpty(QStringList rows) {
  rows.removeAll(QString());
  return rows;
}

void tryFile(const QByteArray& file) {
  const SettingsKeys keys{keyOf(file, "Source"), keyOf(file, "Destination"), keyOf(file, "txtFind"),
                          keyOf(file, "txtReplace")};
  const SettingsLists lists{rowsOf(file, "[SourceDB]"), rowsOf(file, "[DestDB]"), rowsOf(file, "[Fields]")};
  const QByteArray saved = savedSettingsFile(file, {u"q"_s, keys.targetServer, u"f = \"x\""_s, {}}, lists);
  check(settingsKey(saved, "Source") == u"q", "A key that was saved is not read.");
  check(settingsKey(saved, "txtFind") == u"f = \"x\"", "A key with signs that was saved is not read.");
  const struct {
    const char* header;
    const QStringList& rows;
  } sections[] = {{"[SourceDB]", lists.sourceDatabases}, {"[DestDB]", lists.targetDatabases}};
  // Where a file has a section twice, the older one is read first.
  for (const auto& section : sections)
    if (linesThatAre(saved, section.header) == 1)
      check(rowsOf(saved, section.header) == withoutEmpty(section.rows),
            "Rows that were saved are not read.");
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryFile(QByteArray(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}
