// What the readers of the single elements share while one file is imported.
#pragma once

#include "embedded/dxl/dxl_reader.h"
#include "embedded/dxl/import_report.h"
#include "embedded/dxl/large_import.h"
#include "embedded/format/kept_items.h"
#include "embedded/format/note.h"
#include "embedded/store/database.h"
#include "embedded/store/value_spool.h"

namespace lens {

// Enough to read what needs no database.
struct ReadContext {
  DxlReader& in;
  FileFindings& findings;
};

struct ImportContext : ReadContext {
  Database& target;
  bool applyProperties = true;
  bool wholeDatabase = false;    // the file says of itself that it holds every note
  ValueSpool spool = {};         // of the note that is being read
  LargeImport* large = nullptr;  // of a file that is no single transaction

  // Between two changes of the target: others may have their turn.
  void pause() const {
    if (large) large->pause();
  }
  // What others would see before the end of the import.
  void atEnd(std::function<void()> change) const {
    if (large)
      large->atEnd(std::move(change));
    else
      change();
  }
};

// Keeps an element that nothing interprets: its XML becomes a text item "$DXL_" + name of the note,
// and the report names it. The reader stands at the element's start tag, afterwards at its end tag.
void keepElement(ReadContext& context, Note& note);
// The same for XML that was recorded.
void keepXml(ReadContext& context, Note& note, const QString& element, const QString& xml);
// Ends the record that was begun at the element, if one was, and keeps it when something in it was not read.
void keepUnlessRead(ReadContext& context, Note& note, const QString& element, bool recorded);

// Stored text: a line break is a NUL inside.
QByteArray storedTextValue(QStringView text);
QByteArray storedTextListValue(const QStringList& texts);

}  // namespace lens
