// A window on the formulas of one note: all of them above, the source of the current one and what is known of
// it below. It shows the note as it was when it was asked for, and changes nothing.
#pragma once

#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>

#include "client/formula_model.h"

namespace lens {

class FormulaWindow : public QDialog {
  Q_OBJECT

 public:
  explicit FormulaWindow(QWidget* parent);

  // Shows another note, whose formulas these are; the first of the item at that place is current.
  void showNote(const QString& noteName, QVector<NoteFormula> formulas, qsizetype itemPlace);

 private:
  QWidget* makeTable();
  QWidget* makeSource();
  void showFormula(int row);

  FormulaModel* model_;
  QLabel* heading_;
  QTableView* table_;
  QPlainTextEdit* source_;
  QLabel* remark_;
  QPushButton* copy_;
};

}  // namespace lens
