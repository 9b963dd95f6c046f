// What stands in the settings file of the bulk tool, byte for byte: made from the texts of its controls and
// read back. A profile file with four keys in a section of the program's name, and behind everything else
// three sections of bare lines, which are no keys.
//
// Writing and reading differ on purpose: an empty row is written and not read; a header in the last line of
// the file counts as absent; a row that begins with "[" ends its section when it is read.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include "notes/literals.h"

namespace lens {

// Name of the executable, of the section of the keys, and of the file in front of ".ini".
inline const QString kSettingsName = u"TessalyAndDocContent"_s;

// The texts of four controls.
struct SettingsKeys {
  QString sourceServer, targetServer, find, replace;
};

// The rows of three lists, as the file holds them.
struct SettingsLists {
  QStringList sourceDatabases, targetDatabases, fields;
};

// A file for the first start, which is not empty: an empty one cannot be read.
QByteArray newSettingsFile(const SettingsKeys& keys);

// The file after a save: the lists and the obsolete section "WVDB" go, the keys are set, the lists come to
// the end. All else stays.
QByteArray savedSettingsFile(QByteArray file, const SettingsKeys& keys, const SettingsLists& lists);

// The text of a key; "" when it is missing. Raises 5 for a value of 254 bytes or more, which fills the buffer
// that it is read through.
QString settingsKey(QByteArrayView file, QByteArrayView key);

// The rows of a section. False when it is missing or nothing stands behind its header. The header has to be
// written just so. Raises 62 for a file of no bytes.
bool readSettingsSection(QByteArrayView file, QByteArrayView header, QStringList& rows);

}  // namespace lens
