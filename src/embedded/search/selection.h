// Which documents of a database a formula selects.
#pragma once

#include <QVector>
#include <memory>

#include "embedded/format/engine_fault.h"
#include "embedded/formula/formula.h"
#include "embedded/store/database.h"

namespace lens {

struct SelectionRequest {
  std::shared_ptr<const formula::Formula> formula;
  formula::Environment& environment;
  formula::Database* database = nullptr;  // what the formula may ask of the database; null: nothing
  QDateTime since = {};                   // only documents modified then or later; invalid: all
  qsizetype most = 0;                     // 0: no limit
};

// Note IDs in ascending order. A formula sees summary items only, and what it assigns is not written.
// Profile documents are passed over, and so is a document over which the formula fails. With
// @AllChildren or @AllDescendants responses of the documents that match are asked again. Raises
// kFormulaError when the formula takes too much time over a document, or the environment interrupts.
QVector<NoteId> selectDocuments(const Database& documents, const SelectionRequest& request);

// A compiled formula, or a RuntimeError (kFormulaError) that tells the reason, the place and the word at
// fault.
std::shared_ptr<const formula::Formula> compiledFormula(QStringView source,
                                                        const formula::Environment& environment);
// The same for the formula of a search, with the database's name in front.
std::shared_ptr<const formula::Formula> searchFormula(const Database& database, QStringView source,
                                                      const formula::Environment& environment);

}  // namespace lens
