// The rows of a view. It holds note IDs only: a note is read when its row comes into sight.
#pragma once

#include <QAbstractTableModel>
#include <QCache>
#include <QVector>
#include <memory>

#include "client/note_texts.h"
#include "embedded/store/database.h"

namespace lens {

class DocumentModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Form, Subject, Modified, NoteId, ColumnCount };

  DocumentModel(const Regional& regional, QObject* parent);

  // Shows other rows; null and empty for none.
  void show(std::shared_ptr<Database> database, QVector<quint32> noteIds);
  const QVector<quint32>& noteIds() const { return noteIds_; }
  quint32 noteId(int row) const { return noteIds_.value(row); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  // How many notes were read for their rows since show().
  int notesRead() const { return notesRead_; }

 private:
  const NoteTexts& texts(quint32 noteId) const;
  NoteTexts read(quint32 noteId) const;

  Regional regional_;
  std::shared_ptr<Database> database_;
  QVector<quint32> noteIds_;
  mutable QCache<quint32, NoteTexts> cache_;
  mutable int notesRead_ = 0;
};

}  // namespace lens
