// The design of a view or folder as its index needs it, read from the view's note.
//
// $Formula holds the selection, $ViewFormat the columns, $Collation the sorting; where $Collation cannot be
// read, the columns' own marks count. Compiled formulas are read as their source. One that is hidden, damaged
// or uses a code without a known name cannot be computed: a view with such a selection cannot be shown, and
// such a column shows the item of its own name.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include "embedded/format/engine_fault.h"
#include "embedded/format/note.h"
#include "embedded/formula/compiled/compiled_formula.h"

namespace lens {

struct DesignColumn {
  QString item, title;
  QString formula;            // its source; "": the column shows the item
  bool compiledOnly = false;  // there is a formula, but no source that can be computed
  bool hidden = false, categorized = false, responsesOnly = false, separateValues = false;
  int width = 0;  // eighths of a character
};

// One level of sorting.
struct DesignKey {
  int column = 0;  // place among the columns
  bool descending = false, category = false;
  bool separateValues = false;  // each of several values makes a row
};

struct ViewDesign {
  NoteId noteId;
  QString database;  // its path, for messages
  QString title;
  Unid unid;
  bool folder = false;
  bool hierarchy = false;  // responses stand below what they answer
  quint16 noteClass = noteclass::Document;
  bool hasSelection = false;     // its source is known
  bool hiddenSelection = false;  // there is one that cannot be computed
  QString whyHidden;             // why not
  QString selection;
  QVector<DesignColumn> columns;
  QVector<DesignKey> keys;
  QByteArray digest;  // differs when anything does that the index depends on

  bool categorized() const {
    for (const DesignKey& key : keys)
      if (key.category) return true;
    return false;
  }
};

ViewDesign readViewDesign(const Note& view);

// Raises kNoFormulaSource for a view whose selection nobody can read. Which documents it holds cannot be
// told, and to show all of them would be wrong: who removes all documents of a view means those of the view.
[[noreturn]] void raiseHiddenSelection(const QString& databasePath, const ViewDesign& design);

// The selection of a view note, in whatever form the note has it; unreadable, without a problem, when the
// note has none.
formula::CompiledReading readSelection(const Note& view);

bool isFolder(const Note& view);

}  // namespace lens
