// Compiled formulas beside their source; vectors.txt tells how they are written.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>
#include <iosfwd>

namespace lens::formula {

struct CompiledVector {
  int line = 0;  // from 1
  QString source;
  QByteArray bytes;
  bool written = false;  // the source is written as these bytes
};
void PrintTo(const CompiledVector& vector, std::ostream* out);

const QVector<CompiledVector>& compiledVectors();

}  // namespace lens::formula
