#include "embedded/evaluation/workspace_environment.h"

#include <QDir>
#include <QLocale>

#include "notes/literals.h"

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
  return QDir::toNativeSeparators(workspace_.directory() + u"/notes.ini"_s);
}

QStringList WorkspaceEnvironment::addressBooks() const {
  QStringList books;
  for (const DatabasePlace& book : workspace_.addressBooks())
    books.append(book.server.isEmpty() ? book.path : book.server + u"!!"_s + book.path);
  return books;
}

QString WorkspaceEnvironment::language() const {
  const QString code = QLocale::system().name().section(u'_', 0, 0);
  return code.isEmpty() || code == u"C" ? u"en"_s : code;
}

}  // namespace lens
