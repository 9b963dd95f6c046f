// Checking and evaluating a formula through the C API's door.
#pragma once

#include <QString>
#include <QVector>
#include <optional>

#include "notes/bridge.h"
#include "notes/capi.h"

namespace lens {

struct FormulaMistake {
  QString reason;
  int line = 1, character = 1;  // both from 1; the character counts within its line
  int offset = 0, length = 0;   // characters of the source from its start, from 0

  QString text() const;  // "reason (line 1, character 7)"
};

// The first mistake in the source, or nothing. Raises for a source with characters that the system's code
// page lacks, and for one of more than 65,535 bytes: the door cannot take them.
std::optional<FormulaMistake> mistakeIn(CApi& api, const QString& source);

// What the formula gives for a note of the database at that network path; nothing is saved. Values of every
// kind: a list has several. Raises with the reason when the formula has a mistake or its evaluation fails.
QVector<Value> evaluateOn(CApi& api, const QString& source, const QByteArray& database,
                          const QString& noteId);

}  // namespace lens
