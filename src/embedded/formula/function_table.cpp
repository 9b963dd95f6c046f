#include <QHash>
#include <algorithm>

#include "embedded/format/case_key.h"
#include "embedded/formula/function.h"

namespace lens::formula {
namespace {

QVector<const Function*> collect() {
  QVector<const Function*> rows;
  for (const std::span<const Function> family :
       {textFunctions(), textPieceFunctions(), nameFunctions(), listFunctions(), numberFunctions(),
        timeFunctions(), logicFunctions(), documentFunctions(), databaseFunctions(), environmentFunctions(),
        clientFunctions()})
    for (const Function& row : family) rows.push_back(&row);
  std::sort(rows.begin(), rows.end(),
            [](const Function* a, const Function* b) { return qstricmp(a->name, b->name) < 0; });
  return rows;
}

}  // namespace

const QVector<const Function*>& allFunctions() {
  static const QVector<const Function*> rows = collect();
  return rows;
}

QString callForm(const Function& function) {
  const QString name = QString::fromLatin1(function.name), arguments = QString::fromUtf8(function.arguments);
  return arguments.isEmpty() ? name : name + u'(' + arguments + u')';
}

const Function* findFunction(QStringView name) {
  static const QHash<QString, const Function*> byName = [] {
    QHash<QString, const Function*> index;
    for (const Function* row : allFunctions()) index.insert(caseKey(QString::fromLatin1(row->name)), row);
    return index;
  }();
  return byName.value(caseKey(name), nullptr);
}

}  // namespace lens::formula
