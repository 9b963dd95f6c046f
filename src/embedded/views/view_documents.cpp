#include "embedded/views/view_documents.h"

#include <QRegularExpression>

#include "embedded/views/formula_source.h"

namespace lens {
namespace {

// One comparison of Form with a list of text constants; the name may stand on its left only.
const QRegularExpression& comparison() {
  static const QRegularExpression pattern(
      QStringLiteral(R"re(^\s*Form\s*=\s*("[^"\\]*"(?:\s*:\s*"[^"\\]*")*)\s*)re"),
      QRegularExpression::CaseInsensitiveOption);
  return pattern;
}

QString withoutFrame(QStringView formula) {
  QString text = formula.trimmed().toString();
  static const QRegularExpression select(QStringLiteral("^SELECT\\b"),
                                         QRegularExpression::CaseInsensitiveOption);
  text.remove(select);
  text = text.trimmed();
  while (text.endsWith(u';')) text = text.chopped(1).trimmed();
  while (text.startsWith(u'(') && text.endsWith(u')') && text.count(u'(') == 1 && text.count(u')') == 1)
    text = text.mid(1, text.size() - 2).trimmed();
  return text;
}

QStringList constants(const QString& list) {
  QStringList texts;
  const QStringList parts = list.split(u'"');
  for (qsizetype i = 1; i < parts.size(); i += 2) texts.append(parts[i]);
  return texts;
}

}  // namespace

ViewSelection readSelection(QStringView formula) {
  ViewSelection selection;
  QString rest = withoutFrame(formula);
  while (true) {
    const QRegularExpressionMatch match = comparison().match(rest);
    if (!match.hasMatch()) return {};
    selection.forms += constants(match.captured(1));
    rest = rest.mid(match.capturedEnd());
    if (rest.isEmpty()) break;
    if (!rest.startsWith(u'|')) return {};
    rest = rest.mid(1);
  }
  selection.all = false;
  return selection;
}

QVector<quint32> viewDocuments(const Database& database, const Note& view) {
  QVector<quint32> found;
  if (isFolder(view)) return found;
  QString formula;
  ViewSelection selection;
  if (selectionSource(view, formula)) selection = readSelection(formula);
  database.scan(noteclass::Document, [&](const Note& note) {
    if (!isProfile(note) && (selection.all || selection.forms.contains(note.text(u"Form"))))
      found.push_back(note.header.id);
    return true;
  });
  return found;
}

bool selectionSource(const Note& view, QString& source) {
  const Item* formula = view.find(u"$Formula");
  return formula && formulaSource(*formula, source);
}

bool isProfile(const Note& note) {
  return note.text(u"$Name").startsWith(u"$profile_", Qt::CaseInsensitive);
}

bool isFolder(const Note& view) {
  return view.text(u"$Flags").contains(u'F');
}

}  // namespace lens
