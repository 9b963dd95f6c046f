// What the readers of the single elements share while one file is imported.
#pragma once

#include "embedded/dxl/dxl_reader.h"
#include "embedded/dxl/import_report.h"
#include "embedded/store/database.h"
#include "embedded/store/note.h"

namespace lens {

struct ImportContext {
  DxlReader& in;
  Database& target;
  FileFindings& findings;
  bool applyProperties = true;
};

// Keeps an element that nothing interprets: its XML becomes a text item "$DXL_" + name of the note,
// and the report names it. The reader stands at the element's start tag, afterwards at its end tag.
void keepElement(ImportContext& context, Note& note);
// The same for XML that was recorded.
void keepXml(ImportContext& context, Note& note, const QString& element, const QString& xml);

// Stored text: a line break is a NUL inside.
QByteArray storedTextValue(QStringView text);
QByteArray storedTextListValue(const QStringList& texts);

// Class and flag attributes as they are used in many places.
quint16 itemFlags(const DxlReader& in);

}  // namespace lens
