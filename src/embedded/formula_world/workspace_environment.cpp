#include "embedded/formula_world/workspace_environment.h"

#include <QDir>
#include <QLocale>

namespace lens {

void WorkspaceEnvironment::setIniValue(const QString& name, const QString& value) {
  bool plain = !name.trimmed().isEmpty();
  for (QChar c : name) plain &= c.isPrint() && c != u'=' && c != u'[' && c != u';';
  if (!plain) throw formula::Fault{formula::fault::SideEffect};
  try {
    workspace_.setIniValue(name, value);
  } catch (const RuntimeError&) {
    throw formula::Fault{formula::fault::SideEffect};
  }
}

QString WorkspaceEnvironment::iniPath() const {
  return QDir::toNativeSeparators(workspace_.directory() + QStringLiteral("/notes.ini"));
}

QStringList WorkspaceEnvironment::addressBooks() const {
  QStringList books;
  for (const DatabasePlace& book : workspace_.addressBooks())
    books.append(book.server.isEmpty() ? book.path : book.server + QStringLiteral("!!") + book.path);
  return books;
}

QString WorkspaceEnvironment::language() const {
  const QString code = QLocale::system().name().section(u'_', 0, 0);
  return code.isEmpty() || code == u"C" ? QStringLiteral("en") : code;
}

}  // namespace lens
