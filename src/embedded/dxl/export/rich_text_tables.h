// Whether the tables of a rich text are laid out as "table", "tablerow" and "tablecell" give them back.
#pragma once

#include <QHash>

#include "embedded/richtext/rich_text.h"

namespace lens {

struct TableLayout {
  bool asElements = false;           // all of them can be written as elements
  QHash<qsizetype, int> columnSpan;  // of cells that span more than one, by their place in the rich text
};
TableLayout tableLayout(const QVector<RichElement>& elements);

}  // namespace lens
