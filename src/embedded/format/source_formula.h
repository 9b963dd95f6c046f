// Formulas as source text in an item of type Formula.
//
// A formula in the platform's compiled form begins with its length, a 16-bit word that is never 0. A
// formula that came as source is stored as such: a zero word, then the text in LMBCS. So two bytes
// tell a reader which of the two it has.
#pragma once

#include <QByteArray>
#include <QString>

namespace lens {

// The bytes without the item's type word, as they stand in records too.
QByteArray sourceFormula(QStringView source);
// Whole item value, type word included.
QByteArray sourceFormulaValue(QStringView source);
// False when the data (without the type word) is a compiled formula.
bool readSourceFormula(QByteArrayView data, QString& source);

}  // namespace lens
