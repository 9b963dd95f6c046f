#include "embedded/views/view_documents.h"

#include "embedded/search/selection.h"
#include "embedded/views/formula_source.h"

namespace lens {
namespace {

QVector<quint32> allDocuments(const Database& database) {
  QVector<quint32> found;
  database.scan(noteclass::Document, [&](const Note& note) {
    if (!isProfile(note)) found.push_back(note.header.id);
    return true;
  });
  return found;
}

}  // namespace

QVector<quint32> viewDocuments(const Database& database, const Note& view) {
  if (isFolder(view)) return {};
  QString source;
  if (!selectionSource(view, source)) return allDocuments(database);
  formula::MachineEnvironment environment;
  const formula::Compiled compiled = formula::compile(source, {&environment});
  if (!compiled) return allDocuments(database);
  return selectDocuments(database, {compiled.formula, environment, nullptr, {}, 0});
}

bool selectionSource(const Note& view, QString& source) {
  const Item* formula = view.find(u"$Formula");
  return formula && formulaSource(*formula, source);
}

bool isFolder(const Note& view) {
  return view.text(u"$Flags").contains(u'F');
}

}  // namespace lens
