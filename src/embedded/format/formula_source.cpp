#include "embedded/format/formula_source.h"

#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"

namespace lens {

bool formulaSource(const Item& item, QString& source) {
  if (item.type() == itemtype::Text || item.type() == itemtype::Rfc822Text) {
    source = fromLmbcs(item.data());
    return true;
  }
  return item.type() == itemtype::Formula && readSourceFormula(item.data(), source);
}

}  // namespace lens
