// The look at what a database's file says of its tables, before anything else of it is read.
#pragma once

#include <QByteArrayList>

#include "embedded/store/sqlite_statement.h"

namespace lens {

// What deviates and may: it is dropped or brought up to date before it is used.
struct SchemaFindings {
  QByteArrayList outdated;  // tables of derived data that are not as this program makes them
  bool earlierFolders = false;
};

// Raises Damaged when the file holds a table, index, view or trigger that this program does not make, or
// makes otherwise: a definition can hold expressions, which would be run. Raises it too when a table lacks.
SchemaFindings requireOwnSchema(const Connection& connection);

}  // namespace lens
