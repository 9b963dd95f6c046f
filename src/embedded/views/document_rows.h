// What a view's formulas say of a document: whether it is in the view, where it stands, what its columns
// show.
#pragma once

#include <QStringList>
#include <memory>
#include <vector>

#include "embedded/formula/formula.h"
#include "embedded/views/view_design.h"

namespace lens {

// A category above a row: it reaches to that place of the row's key, and says so.
struct RowCategory {
  quint16 end = 0;
  quint16 column = 0;
  QByteArray shown;  // see shownBytes
};

// A row of a document among those without a parent.
struct DocumentRow {
  QByteArray key;         // without the document's own end
  QByteArray categories;  // packed
  // Of each sort key that has rows of its own for each value: which value this is; -1 for the others.
  std::vector<qint32> choice;
};

QByteArray packCategories(const std::vector<RowCategory>& categories);
// The same where it lies packed.
struct PackedCategory {
  quint16 end = 0;
  quint16 column = 0;
  QByteArrayView shown;
};
void readCategories(QByteArrayView packed, std::vector<PackedCategory>& categories);
// The parts of a category between its backslashes, without blanks around; at least one, which may be "".
QStringList categoryPath(QStringView text);

// A part of a category as it is kept for showing: a text, a number or a time.
QByteArray shownBytes(const formula::Value& value, qsizetype element);
formula::Value shownValue(QByteArrayView bytes);

class DocumentRows {
 public:
  // The environment must outlive this. Raises kFormulaError for a selection with a mistake.
  DocumentRows(const ViewDesign& design, formula::Environment& environment);

  // Whether the selection takes in responses of selected documents.
  formula::Formula::Responses responses() const;
  // How often the index has to be made anew because its formulas ask for the time.
  enum class Clock { Never, Daily, EveryMinute };
  Clock clock() const { return clock_; }
  // The number of the day or minute as of now, 0 for Never.
  qint64 moment() const;

  // Names of items that the selection and the sort keys read.
  std::vector<formula::Name> names() const;
  // Raises kFormulaError when the formula takes too much time. A document over which it fails is not
  // selected.
  bool selects(formula::Document& document);
  // Whether each document stands in one place, as in most views; then its key goes to the end of the bytes.
  bool makesOneRow() const { return makesOneRow_; }
  void appendOnlyKey(formula::Document& document, QByteArray& bytes);
  // One row for each combination of the values of its categories and the like; at most kMostRows.
  std::vector<DocumentRow> rows(formula::Document& document);
  // What a column shows.
  formula::Value column(int column, formula::Document& document);
  // The same in rows of the document: of a column that makes rows for its values the value of each row.
  // Columns for responses only show nothing for other documents.
  std::vector<formula::Value> column(int column, formula::Document& document,
                                     const QVector<QByteArray>& rowKeys);

  // Names the view.
  [[noreturn]] void raiseTooMuchTime() const;

  const formula::LocalZone& zone() const { return environment_.zone(); }

  static constexpr std::size_t kMostRows = 65535;

 private:
  struct Column {
    std::unique_ptr<formula::Evaluation> evaluation;  // null: the item
    formula::Name item;
  };
  struct Part;
  std::vector<Part> partsOf(int key, formula::Document& document);
  std::vector<DocumentRow> sortedRows(formula::Document& document);
  formula::Value evaluated(formula::Evaluation& evaluation, formula::Document& document, bool* matches);
  void noteClock(const formula::Formula& formula);

  const ViewDesign design_;
  formula::Environment& environment_;
  std::shared_ptr<const formula::Formula> selectionFormula_;
  std::unique_ptr<formula::Evaluation> selection_;
  std::vector<Column> columns_;
  std::vector<formula::Name> keyNames_;
  Clock clock_ = Clock::Never;
  const bool makesOneRow_;
};

}  // namespace lens
