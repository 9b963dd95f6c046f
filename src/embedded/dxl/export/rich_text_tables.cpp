#include "embedded/dxl/export/rich_text_tables.h"

#include "embedded/dxl/record_writer.h"

namespace lens {

namespace {

using Kind = RichElement::Kind;

// The numbers of one byte end here.
constexpr int kMost = 255;

struct OpenTable {
  int row = -1, column = 0;
  qsizetype cell = -1;  // place of the last one
};

// The cell follows the one before it in its row, or is the first of a later row.
bool takeCell(OpenTable& table, const RichElement& element, qsizetype place, TableLayout& layout) {
  if (element.row >= kMost || element.column >= kMost) return false;
  if (element.row == table.row) {
    const int span = element.column - table.column;
    if (span < 1) return false;
    if (span > 1) layout.columnSpan.insert(table.cell, span);
  } else if (element.row < table.row || element.column != 0) {
    return false;
  }
  table = {element.row, element.column, place};
  return true;
}

// The same records as an import writes them; between them stands nothing.
class Expected {
 public:
  bool begin(const RichElement& element) {
    return added(element, [this] { writer_.beginTable(); });
  }
  bool cell(const RichElement& element) {
    return added(element, [&] { writer_.beginCell(element.row, element.column); });
  }
  bool end(const RichElement& element) {
    return added(element, [this] { writer_.endTable(); });
  }

 private:
  template <class Write>
  bool added(const RichElement& element, Write write) {
    const qsizetype before = writer_.bytes().size();
    write();
    return QByteArrayView(writer_.bytes()).sliced(before) == element.record;
  }
  RecordWriter writer_;
};

bool walk(const QVector<RichElement>& elements, TableLayout& layout) {
  QVector<OpenTable> open;
  Expected expected;
  for (qsizetype i = 0; i < elements.size(); ++i) {
    const RichElement& element = elements[i];
    const bool inCell = open.isEmpty() || open.last().row >= 0;
    if (element.kind == Kind::TableBegin) {
      if (!inCell || !expected.begin(element)) return false;
      open.push_back({});
    } else if (element.kind == Kind::TableCell) {
      if (open.isEmpty() || !expected.cell(element) || !takeCell(open.last(), element, i, layout))
        return false;
    } else if (element.kind == Kind::TableEnd) {
      if (open.isEmpty() || !expected.end(element)) return false;
      open.pop_back();
    } else if (!inCell) {
      return false;
    }
  }
  return open.isEmpty();
}

}  // namespace

TableLayout tableLayout(const QVector<RichElement>& elements) {
  TableLayout layout;
  layout.asElements = walk(elements, layout);
  return layout;
}

}  // namespace lens
