#include "embedded/format/source_formula.h"

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"

namespace lens {

QByteArray sourceFormula(QStringView source) {
  return QByteArray(2, '\0') + toLmbcs(source);
}

QByteArray sourceFormulaValue(QStringView source) {
  return rawValue(itemtype::Formula, sourceFormula(source));
}

bool readSourceFormula(QByteArrayView data, QString& source) {
  if (data.size() < 2 || data[0] != 0 || data[1] != 0) return false;
  source = fromLmbcs(data.sliced(2));
  return true;
}

}  // namespace lens
