#include "embedded/formula/compiled/stored_formula.h"

#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"

namespace lens::formula {

CompiledReading sourceReading(const QString& source) {
  CompiledReading reading;
  reading.state = CompiledReading::State::Source;
  reading.source = source;
  reading.keptAsSource = true;
  return reading;
}

CompiledReading readStored(QByteArrayView data, ShownSelect select) {
  QString source;
  if (readSourceFormula(data, source)) return sourceReading(source);
  static const thread_local MachineEnvironment machine;
  return readCompiled(data, machine, select);
}

QString shownFormula(QByteArrayView data, ShownSelect select) {
  const CompiledReading reading = readStored(data, select);
  return reading.state == CompiledReading::State::Hidden ? reading.problem : reading.source;
}

bool formulaSource(const Item& item, QString& source) {
  if (item.value.size() < 2) return false;
  if (item.type() == itemtype::Text || item.type() == itemtype::Rfc822Text) {
    source = fromLmbcs(item.data());
    return true;
  }
  if (item.type() != itemtype::Formula) return false;
  const CompiledReading reading = readStored(item.data());
  if (reading.state == CompiledReading::State::Unreadable) return false;
  source = reading.state == CompiledReading::State::Hidden ? reading.problem : reading.source;
  return true;
}

}  // namespace lens::formula
