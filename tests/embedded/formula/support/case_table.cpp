#include "embedded/formula/support/case_table.h"

#include <QDir>
#include <QFile>
#include <ostream>

#include "embedded/formula/support/test_context.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

constexpr QChar kLineFeedSign = u'\u00B6';

// On one line, and without the middle of a very long text.
QString shown(QString text) {
  constexpr qsizetype kEnds = 200;
  if (text.size() > 2 * kEnds) text = text.left(kEnds) + u" ... "_s + text.right(kEnds);
  return text.replace(u'\n', kLineFeedSign);
}

QString printError(const CompileError& error) {
  return u"compile %1 at %2 length %3 line %4 column %5"_s
      .arg(QString::number(error.reason, 16).toUpper().rightJustified(4, u'0'))
      .arg(error.offset)
      .arg(error.length)
      .arg(error.line)
      .arg(error.column);
}

// The source with the place of its compile error between two marks.
QString markedStretch(const QString& formula) {
  const TestContext world;
  const CompileError error = compile(formula, {&world.environment}).error;
  if (!error.reason) return {};
  return formula.left(error.offset) + u">>"_s + formula.mid(error.offset, error.length) + u"<<"_s +
         formula.mid(error.offset + error.length);
}

}  // namespace

void PrintTo(const Case& tested, std::ostream* out) {
  *out << tested.file.toStdString() << ".txt:" << tested.line << ": " << shown(tested.formula).toStdString();
}

QVector<Case> readCases(const QString& path) {
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return {};
  const QString name = QFileInfo(path).completeBaseName();
  const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
  QVector<Case> cases;
  for (int i = 0; i < lines.size(); ++i) {
    QString line = lines[i];
    if (line.endsWith(u'\r')) line.chop(1);
    if (line.trimmed().isEmpty() || line.startsWith(u'#')) continue;
    line.replace(kLineFeedSign, u'\n');
    const qsizetype cut = line.lastIndexOf(u" => "_s);
    if (cut < 0)
      cases.append({name, i + 1, line, {}, false});
    else
      cases.append({name, i + 1, line.left(cut), line.mid(cut + 4).trimmed(), true});
  }
  return cases;
}

const QVector<Case>& allCases() {
  static const QVector<Case> all = [] {
    const QDir folder(QStringLiteral(LENS_FORMULA_CASES));
    QVector<Case> cases;
    for (const QString& name : folder.entryList({u"*.txt"_s}, QDir::Files, QDir::Name))
      cases += readCases(folder.filePath(name));
    return cases;
  }();
  return all;
}

QString resultOf(const QString& formula) {
  TestContext world;
  const Compiled compiled = compile(formula, {&world.environment});
  if (!compiled) return printError(compiled.error);
  Evaluation evaluation(compiled.formula, world.environment);
  return printValue(evaluation.run(&world.document, &world.database).value, world.environment.zone());
}

bool agrees(const QString& expected, const QString& result) {
  if (expected.startsWith(u"compile ") && !expected.contains(u" line "))
    return result.startsWith(u"compile ") && expected == result.section(u" line "_s, 0, 0);
  return expected == result;
}

QString complaint(const Case& tested) {
  if (!tested.wellFormed) return u"no \" => \" in this line: "_s + tested.formula;
  const QString result = resultOf(tested.formula);
  if (agrees(tested.expected, result)) return {};
  QString text = u"formula:  %1\nexpected: %2\ngot:      %3"_s;
  text = text.arg(shown(tested.formula), shown(tested.expected), shown(result));
  if (result.startsWith(u"compile ")) text += u"\nmarked:   "_s + shown(markedStretch(tested.formula));
  return text;
}

}  // namespace lens::formula
