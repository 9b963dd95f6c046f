#include "client/formula_window.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QSplitter>
#include <QVBoxLayout>

#include "client/panes.h"
#include "notes/literals.h"

namespace lens {

FormulaWindow::FormulaWindow(QWidget* parent)
    : QDialog(parent), model_(new FormulaModel(this)), heading_(new QLabel(this)), remark_(new QLabel(this)) {
  setObjectName(u"FormulaWindow"_s);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Formulas"));
  resize(820, 560);
  heading_->setObjectName(u"formulaHeading"_s);
  remark_->setObjectName(u"formulaRemark"_s);
  for (QLabel* label : {heading_, remark_}) {
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
  }
  remark_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  auto* halves = new QSplitter(Qt::Vertical, this);
  halves->setChildrenCollapsible(false);
  halves->addWidget(makeTable());
  halves->addWidget(makeSource());
  halves->setSizes({200, 260});
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  copy_ = buttons->addButton(tr("C&opy"), QDialogButtonBox::ActionRole);
  copy_->setObjectName(u"formulaCopy"_s);
  copy_->setToolTip(tr("Puts the source of the formula on the clipboard"));
  // Enter in the table is not meant for them.
  copy_->setAutoDefault(false);
  buttons->button(QDialogButtonBox::Close)->setAutoDefault(false);
  connect(copy_, &QPushButton::clicked, this,
          [this] { QGuiApplication::clipboard()->setText(source_->toPlainText()); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(heading_);
  layout->addWidget(halves, 1);
  layout->addWidget(remark_);
  layout->addWidget(buttons);
}

QWidget* FormulaWindow::makeTable() {
  table_ = new QTableView(this);
  table_->setObjectName(u"formulaTable"_s);
  table_->setToolTip(tr("The formulas of the note; the source of the current one stands below"));
  prepareTable(*table_);
  table_->setSelectionMode(QAbstractItemView::SingleSelection);
  table_->setModel(model_);
  const int character = table_->fontMetrics().averageCharWidth();
  table_->setColumnWidth(FormulaModel::ItemName, 18 * character);
  table_->setColumnWidth(FormulaModel::Place, 34 * character);
  table_->setColumnWidth(FormulaModel::State, 20 * character);
  table_->horizontalHeader()->setStretchLastSection(true);
  connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) { showFormula(current.row()); });
  return labelled(tr("&Formulas:"), table_);
}

QWidget* FormulaWindow::makeSource() {
  source_ = new QPlainTextEdit(this);
  source_->setObjectName(u"formulaSource"_s);
  source_->setReadOnly(true);
  source_->setTabChangesFocus(true);
  source_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  source_->setToolTip(tr("The source of the current formula, for reading and copying"));
  useListFont(*source_);
  source_->setTabStopDistance(4 * source_->fontMetrics().averageCharWidth());
  return labelled(tr("&Source:"), source_);
}

void FormulaWindow::showNote(const QString& noteName, QVector<NoteFormula> formulas, qsizetype itemPlace) {
  const qsizetype count = formulas.size();
  heading_->setText(count == 0   ? tr("%1 has no formulas").arg(noteName)
                    : count == 1 ? tr("%1 has one formula").arg(noteName)
                                 : tr("%1 has %2 formulas").arg(noteName, QString::number(count)));
  model_->show(std::move(formulas));
  showFormula(-1);
  table_->setCurrentIndex(model_->index(model_->rowOfItem(itemPlace), 0));
  table_->setFocus();
  show();
  raise();
  activateWindow();
}

void FormulaWindow::showFormula(int row) {
  const NoteFormula* const shown = model_->formula(row);
  source_->setPlainText(shown ? shown->reading.source : QString());
  remark_->setText(shown ? formulaRemark(shown->reading) : QString());
  copy_->setEnabled(shown && !shown->reading.source.isEmpty());
}

}  // namespace lens
