#include "client/document_model.h"

#include <QFont>
#include <algorithm>
#include <optional>

#include "client/note_texts.h"
#include "controls/look.h"

namespace lens {
namespace {

constexpr int kCachedRows = 4000;   // many screens full
constexpr int kAllCached = 50'000;  // of a list up to this length all rows stay, once they were all read

}  // namespace

DocumentModel::DocumentModel(const Regional& regional, QObject* parent)
    : QAbstractTableModel(parent), regional_(regional), cache_(kCachedRows) {}

void DocumentModel::show(std::shared_ptr<Database> database, QVector<NoteId> noteIds) {
  take(std::move(database), nullptr, std::move(noteIds));
}

void DocumentModel::show(std::unique_ptr<ViewRows> view) {
  QVector<NoteId> noteIds = view->noteIds();
  take(nullptr, std::move(view), std::move(noteIds));
}

void DocumentModel::take(std::shared_ptr<Database> database, std::unique_ptr<ViewRows> view,
                         QVector<NoteId> noteIds) {
  beginResetModel();
  database_ = std::move(database);
  view_ = std::move(view);
  allIds_ = noteIds_ = std::move(noteIds);
  order_.clear();
  isArranged_ = false;
  documentCount_ = shownDocuments();
  cache_.clear();
  cache_.setMaxCost(kCachedRows);
  notesRead_ = 0;
  endResetModel();
}

bool DocumentModel::arrange(const RowArrangement& wanted, const std::function<bool()>& interrupted) {
  std::optional<QVector<int>> rows = QVector<int>();
  if (!wanted.isPlain()) {
    if (allIds_.size() <= kAllCached) cache_.setMaxCost(kAllCached);
    const RowSource source{int(allIds_.size()), [this](int row) { return !allIds_[row].isNull(); },
                           [this](int row) { return texts(row); },
                           [this](int row, int column) { return key(row, column); }};
    rows = arrangedRows(source, wanted, interrupted);
  }
  if (!rows) return false;
  beginResetModel();
  isArranged_ = !wanted.isPlain();
  order_ = *rows;
  noteIds_ = allIds_;
  if (isArranged_) {
    noteIds_.resize(order_.size());
    std::transform(order_.begin(), order_.end(), noteIds_.begin(), [this](int row) { return allIds_[row]; });
  }
  endResetModel();
  return true;
}

// What can be counted is not ordered by its text.
RowKey DocumentModel::key(int row, int column) const {
  try {
    if (view_) return view_->key(row, column);
    if (column == Id) return {true, double(allIds_[row].value()), {}};
    Note note;
    if (column == Modified && database_->notes().read(allIds_[row], note))
      return {true, double(instantOrder(note.header.modified)), {}};
  } catch (const RuntimeError&) {
    // Its text says so.
  }
  return {false, 0, texts(row).value(column).trimmed()};
}

QVector<int> DocumentModel::columnWidths() const {
  if (!view_) return {22, 0, 19, 10};  // the longest kind of a design note has room
  QVector<int> widths;
  for (const ViewRows::Column& column : view_->columns()) widths.push_back(column.width);
  return widths;
}

int DocumentModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(noteIds_.size());
}

int DocumentModel::columnCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return view_ ? int(view_->columns().size()) : ColumnCount;
}

QVariant DocumentModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  if (view_) return view_->columns().value(section).title;
  switch (section) {
    case Form:
      return tr("Form");
    case Subject:
      return tr("Subject");
    case Modified:
      return tr("Modified");
    case Id:
      return tr("Note ID");
    default:
      return {};
  }
}

// A category is passed over by marks and cannot be opened.
Qt::ItemFlags DocumentModel::flags(const QModelIndex& index) const {
  const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
  return noteId(index.row()).isNull() ? usual & ~Qt::ItemIsSelectable : usual;
}

QVariant DocumentModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= noteIds_.size()) return {};
  if (role == Qt::FontRole && noteId(index.row()).isNull()) {
    QFont strong;
    strong.setBold(true);
    return strong;
  }
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole) return {};
  const QString text = texts(sourceRow(index.row())).value(index.column());
  return role == Qt::ToolTipRole ? plainTip(text.trimmed()) : text;
}

const QStringList& DocumentModel::texts(int row) const {
  if (const QStringList* known = cache_.object(row)) return *known;
  auto* fresh = new QStringList(read(row));
  cache_.insert(row, fresh);
  return *fresh;
}

// A row must say what is wrong with its note: an exception cannot cross the painting of a table.
QStringList DocumentModel::read(int row) const {
  ++notesRead_;
  QString problem;
  try {
    return view_ ? view_->texts(row) : readNote(allIds_[row]);
  } catch (const RuntimeError& error) {
    problem = error.number() == enginefault::UnknownNote ? tr("(deleted since the view was read)")
                                                         : tr("(damaged) %1").arg(error.description());
  }
  if (view_) return {problem};
  return {QString(), problem, QString(), noteIdText(allIds_[row])};
}

QStringList DocumentModel::readNote(NoteId noteId) const {
  Note note;
  if (!database_->notes().read(noteId, note)) throw RuntimeError(enginefault::UnknownNote);
  const NoteTexts texts = textsOf(note, regional_);
  return {texts.form, texts.subject, texts.modified, noteIdText(noteId)};
}

}  // namespace lens
