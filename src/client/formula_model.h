// The formulas of one note: where each stands, what is known of it, and how it begins.
#pragma once

#include <QAbstractTableModel>

#include "embedded/formula_context/note_formulas.h"

namespace lens {

// One or two words: whether the source is the author's own, and how sure its names are.
QString formulaState(const formula::CompiledReading& reading);
// The same as a sentence that names what is missing, not proven or wrong.
QString formulaRemark(const formula::CompiledReading& reading);

class FormulaModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { ItemName, Place, State, Beginning, ColumnCount };

  using QAbstractTableModel::QAbstractTableModel;

  void show(QVector<NoteFormula> formulas);
  // Null for a row that is not there.
  const NoteFormula* formula(int row) const;
  // The first formula of the item at that place of the note; 0 when it has none.
  int rowOfItem(qsizetype itemPlace) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  QVector<NoteFormula> formulas_;
};

}  // namespace lens
