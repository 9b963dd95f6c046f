#include "client/formula_model.h"

#include "controls/look.h"
#include "embedded/formula/formula.h"

namespace lens {
namespace {

using formula::CompiledReading;
using formula::Sureness;

constexpr qsizetype kShownBeginning = 200;  // characters that a row can show

// Of a formula that was stored as source nobody has looked whether it is one.
formula::CompileError mistakeIn(const QString& source) {
  static const formula::MachineEnvironment machine;
  return formula::parse(source, machine).error;
}

}  // namespace

QString formulaState(const CompiledReading& reading) {
  using State = CompiledReading::State;
  if (reading.state == State::Hidden) return FormulaModel::tr("hidden");
  if (reading.state == State::Unreadable) return FormulaModel::tr("unreadable");
  if (reading.keptAsSource) return FormulaModel::tr("kept as source");
  switch (reading.sureness) {
    case Sureness::Proven:
      return FormulaModel::tr("proven");
    case Sureness::Context:
      return FormulaModel::tr("names from context");
    case Sureness::Guess:
      return FormulaModel::tr("names guessed");
    case Sureness::Unnamed:
      break;
  }
  return FormulaModel::tr("names missing");
}

QString formulaRemark(const CompiledReading& reading) {
  using State = CompiledReading::State;
  if (reading.state == State::Hidden)
    return FormulaModel::tr("The formula is hidden: its source cannot be read by anybody");
  if (reading.state == State::Unreadable)
    return FormulaModel::tr("It cannot be read: %1").arg(reading.problem);
  if (reading.keptAsSource) {
    const formula::CompileError mistake = mistakeIn(reading.source);
    if (mistake.reason == 0) return FormulaModel::tr("It was stored as source, as it stands here");
    return FormulaModel::tr("It was stored as source, and cannot run: %1 (character %2)")
        .arg(formula::faultText(mistake.reason))
        .arg(mistake.offset + 1);
  }
  QString remark = FormulaModel::tr("It was read from the compiled form, and every name in it is proven");
  if (!reading.problem.isEmpty())
    remark = FormulaModel::tr("It cannot run: %1").arg(reading.problem);
  else if (!reading.unproven.isEmpty())
    remark = FormulaModel::tr("It was read from the compiled form with names that are not proven: %1")
                 .arg(reading.unproven.join(u", "));
  if (!reading.exact) remark += FormulaModel::tr(". A date in it says less than the code does");
  return remark;
}

void FormulaModel::show(QVector<NoteFormula> formulas) {
  beginResetModel();
  formulas_ = std::move(formulas);
  // What is shown is the source alone.
  for (NoteFormula& formula : formulas_) formula.reading.tree = {};
  endResetModel();
}

const NoteFormula* FormulaModel::formula(int row) const {
  return row >= 0 && row < formulas_.size() ? &formulas_[row] : nullptr;
}

int FormulaModel::rowOfItem(qsizetype itemPlace) const {
  for (int row = 0; row < formulas_.size(); ++row)
    if (formulas_[row].itemPlace == itemPlace) return row;
  return 0;
}

int FormulaModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(formulas_.size());
}

int FormulaModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant FormulaModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case ItemName:
      return tr("Item");
    case Place:
      return tr("Place");
    case State:
      return tr("State");
    case Beginning:
      return tr("Formula");
    default:
      return {};
  }
}

QVariant FormulaModel::data(const QModelIndex& index, int role) const {
  const NoteFormula* const shown = index.isValid() ? formula(index.row()) : nullptr;
  if (!shown || (role != Qt::DisplayRole && role != Qt::ToolTipRole)) return {};
  QString text;
  switch (index.column()) {
    case ItemName:
      text = shown->item;
      break;
    case Place:
      text = shown->place;
      break;
    case State:
      text = formulaState(shown->reading);
      break;
    case Beginning:
      text = shown->reading.source.left(2 * kShownBeginning).simplified().left(kShownBeginning);
      break;
    default:
      break;
  }
  return role == Qt::ToolTipRole ? plainTip(text) : text;
}

}  // namespace lens
