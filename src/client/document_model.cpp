#include "client/document_model.h"

#include "client/panes.h"

namespace lens {
namespace {

constexpr int kCachedRows = 4000;  // many screens full

}  // namespace

DocumentModel::DocumentModel(const Regional& regional, QObject* parent)
    : QAbstractTableModel(parent), regional_(regional), cache_(kCachedRows) {}

void DocumentModel::show(std::shared_ptr<Database> database, QVector<quint32> noteIds) {
  beginResetModel();
  database_ = std::move(database);
  noteIds_ = std::move(noteIds);
  cache_.clear();
  notesRead_ = 0;
  endResetModel();
}

int DocumentModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(noteIds_.size());
}

int DocumentModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant DocumentModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case Form:
      return tr("Form");
    case Subject:
      return tr("Subject");
    case Modified:
      return tr("Modified");
    case NoteId:
      return tr("Note ID");
    default:
      return {};
  }
}

QVariant DocumentModel::data(const QModelIndex& index, int role) const {
  const bool wanted = role == Qt::DisplayRole || role == Qt::ToolTipRole;
  if (!wanted || !index.isValid() || index.row() >= noteIds_.size()) return {};
  const quint32 id = noteIds_[index.row()];
  if (index.column() == NoteId) return role == Qt::ToolTipRole ? QString() : noteIdText(id);
  const NoteTexts& row = texts(id);
  const QString& text = index.column() == Form       ? row.form
                        : index.column() == Modified ? row.modified
                                                     : row.subject;
  return role == Qt::ToolTipRole ? plainTip(text) : text;
}

const NoteTexts& DocumentModel::texts(quint32 noteId) const {
  if (const NoteTexts* known = cache_.object(noteId)) return *known;
  auto* fresh = new NoteTexts(read(noteId));
  cache_.insert(noteId, fresh);
  return *fresh;
}

// A row must say what is wrong with its note: an exception cannot cross the painting of a table.
NoteTexts DocumentModel::read(quint32 noteId) const {
  ++notesRead_;
  try {
    Note note;
    if (database_ && database_->read(noteId, note)) return textsOf(note, regional_);
    return {{}, tr("(deleted since the view was read)"), {}};
  } catch (const RuntimeError& error) {
    return {{}, tr("(damaged) %1").arg(error.description()), {}};
  }
}

}  // namespace lens
