#include "embedded/formula/compiled/vectors.h"

#include <QFile>
#include <QRegularExpression>
#include <ostream>

namespace lens::formula {
using namespace Qt::StringLiterals;

void PrintTo(const CompiledVector& vector, std::ostream* out) {
  *out << "vectors.txt:" << vector.line << ": " << vector.source.left(80).toStdString();
}

const QVector<CompiledVector>& compiledVectors() {
  static const QVector<CompiledVector> vectors = [] {
    QVector<CompiledVector> read;
    QFile file(QStringLiteral(LENS_FORMULA_CASES "/../compiled/vectors.txt"));
    if (!file.open(QIODevice::ReadOnly)) return read;
    static const QRegularExpression kRow(u"^(.*) (=>|<=) ([0-9a-f]+)$"_s);
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    for (int i = 0; i < lines.size(); ++i) {
      if (lines[i].isEmpty() || lines[i].startsWith(u'#')) continue;
      const QRegularExpressionMatch row = kRow.match(lines[i]);
      QString source = row.captured(1);
      source.replace(u'¶', u'\n').replace(u'→', u'\t');
      read.push_back(
          {i + 1, source, QByteArray::fromHex(row.captured(3).toLatin1()), row.captured(2) == u"=>"});
    }
    return read;
  }();
  return vectors;
}

}  // namespace lens::formula
