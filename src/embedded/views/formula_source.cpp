#include "embedded/views/formula_source.h"

#include "embedded/dxl/source_formula.h"
#include "embedded/store/lmbcs.h"

namespace lens {

bool formulaSource(const Item& item, QString& source) {
  if (item.type() == itemtype::Text || item.type() == itemtype::Rfc822Text) {
    source = fromLmbcs(item.data());
    return true;
  }
  return item.type() == itemtype::Formula && readSourceFormula(item.data(), source);
}

}  // namespace lens
