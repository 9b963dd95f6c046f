#include "client/view_rows.h"

#include <algorithm>

#include "client/note_texts.h"
#include "embedded/formula/faults.h"
#include "embedded/formula_context/evaluated_note.h"
#include "embedded/formula_context/item_conversion.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kEighths = 8;  // the unit of widths
constexpr int kNarrow = 4, kWide = 60;
// Designs keep columns of categories as narrow as a mark, since a category may stand over the whole row.
constexpr int kCategoryWidth = 24;
constexpr int kLongest = 500;  // characters of a cell

bool isCategory(const ViewDesign& design, int column) {
  return std::any_of(design.keys.begin(), design.keys.end(),
                     [&](const DesignKey& key) { return key.category && key.column == column; });
}

// Without its formula a column shows the item of its own name.
QString titleOf(const DesignColumn& column) {
  return column.compiledOnly ? QObject::tr("%1 (formula not readable)").arg(column.item) : column.title;
}

// What stands lower stands further in, by its first text.
QStringList indented(QStringList texts, int level) {
  const auto first =
      std::find_if(texts.begin(), texts.end(), [](const QString& text) { return !text.isEmpty(); });
  if (first != texts.end()) first->prepend(QString(2 * level, u' '));
  return texts;
}

}  // namespace

ViewRows::ViewRows(std::shared_ptr<Database> database, NoteId view, const Regional& regional,
                   ViewIndex::Interrupted interrupted)
    : database_(std::move(database)),
      index_(*database_, view, std::move(interrupted),
             database_->isWritable() ? UnreadableSelection::Raises : UnreadableSelection::TakesAll),
      regional_(regional) {
  index_.refresh();
  const ViewDesign& design = index_.design();
  for (int place = 0; place < design.columns.size(); ++place) {
    const DesignColumn& column = design.columns[place];
    if (column.hidden) continue;
    const bool category = isCategory(design, place);
    const QString title = titleOf(column);
    const int wanted = qMax(column.width / kEighths, int(title.size()) + 1);
    const int width = qBound(category ? kCategoryWidth : kNarrow, wanted, kWide);
    columns_.push_back({place, title, width, category});
  }
  if (columns_.isEmpty()) return;
  lines_ = index_.lines();
  // Categories have columns of their own, so documents begin at the left; only responses stand further in.
  int categories = 0;
  for (ViewLine& line : lines_) {
    if (line.note.isNull())
      categories = line.level + 1;
    else
      line.level = qMax(0, line.level - categories);
  }
}

QVector<NoteId> ViewRows::noteIds() const {
  QVector<NoteId> ids;
  ids.reserve(lines_.size());
  for (const ViewLine& line : lines_) ids.push_back(line.note);
  return ids;
}

QStringList ViewRows::texts(int row) {
  const ViewLine& line = lines_[row];
  return indented(line.note.isNull() ? category(line) : document(line), line.level);
}

RowKey ViewRows::key(int row, int column) {
  const ViewLine& line = lines_[row];
  Note note;
  if (!database_->notes().read(line.note, note)) throw RuntimeError(enginefault::UnknownNote);
  EvaluatedNote document(note, database_.get(), EvaluatedNote::Items::Summary);
  const formula::Value value = index_.rows().column(columns_[column].place, document, {line.key}).front();
  if (value.isNumber()) return {true, value.number(), {}};
  if (value.type() == formula::Type::Time) return {true, double(instantOrder(value.time())), {}};
  return {false, 0, text(value)};
}

QString ViewRows::text(const formula::Value& value) const {
  if (value.isError()) return formula::faultText(value.errorCode());
  QString text = itemText({{}, 0, fieldValue(value)}, regional_);
  return text.replace(u'\n', u", "_s).left(kLongest).simplified();
}

// In its own column, or in the first where that one is hidden.
QStringList ViewRows::category(const ViewLine& line) const {
  QStringList texts(columns_.size());
  qsizetype at = 0;
  for (qsizetype i = 0; i < columns_.size(); ++i)
    if (columns_[i].place == line.column) at = i;
  const QString own = text(line.category);
  texts[at] = own.isEmpty() ? QObject::tr("(not categorized)") : own;
  return texts;
}

// What a category says is not said again.
QStringList ViewRows::document(const ViewLine& line) {
  Note note;
  if (!database_->notes().read(line.note, note)) throw RuntimeError(enginefault::UnknownNote);
  EvaluatedNote document(note, database_.get(), EvaluatedNote::Items::Summary);
  QStringList texts;
  for (const Column& column : std::as_const(columns_))
    texts.append(column.isCategory ? QString()
                                   : text(index_.rows().column(column.place, document, {line.key}).front()));
  return texts;
}

}  // namespace lens
