// Source to the platform's compiled form: the way back of compiled_formula.h, which tells the layout.
#pragma once

#include <QByteArray>
#include <QStringView>

#include "embedded/formula/formula.h"

namespace lens::formula {

struct Written {
  // Empty with a mistake in the source, and for a source that has no form: a function or keyword whose code
  // is not known or only guessed, a range of times, or more than a formula may hold. Such a source is kept
  // as text (embedded/format/source_formula.h).
  QByteArray bytes;
  CompileError error;  // reason 0: none
};
Written writeCompiled(QStringView source, const Environment& environment);

// The formula of a view's column, whose value is stored in the item.
Written writeCompiledColumn(QStringView source, QStringView item, const Environment& environment);

// A view's formula: what its columns compute, the names of their items, and the selection.
struct WrittenColumn {
  QString item;
  QByteArray formula;  // as its column has it; empty: it shows the item
};
Written writeCompiledSelection(QStringView source, const QVector<WrittenColumn>& columns,
                               const Environment& environment);

// What an item or record holds of a formula: its compiled form or, where there is none, its source.
QByteArray storedFormula(QStringView source, const Environment& environment);

}  // namespace lens::formula
