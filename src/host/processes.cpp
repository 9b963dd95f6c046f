#include "host/processes.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "notes/literals.h"

#ifdef Q_OS_UNIX
#include <signal.h>
#include <unistd.h>
#endif

namespace lens {
namespace {

const QString kProcesses = u"/proc"_s;
const QString kDeleted = u" (deleted)"_s;  // behind the name of a file that has been replaced meanwhile

QString fileOf(const QString& path) {
  return path.mid(std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')) + 1);
}

// What the process was started as. The process table itself cuts names to 15 characters.
QString startedAs(qint64 processId) {
  QFile file(u"%1/%2/cmdline"_s.arg(kProcesses).arg(processId));
  if (!file.open(QIODevice::ReadOnly)) return {};
  return QString::fromLocal8Bit(file.readAll().split('\0').value(0));
}

}  // namespace

QString programOf(qint64 processId) {
  QString file = QFile::symLinkTarget(u"%1/%2/exe"_s.arg(kProcesses).arg(processId));
  if (file.endsWith(kDeleted)) file.chop(kDeleted.size());
  const QString program = fileOf(file);
  return program.startsWith(u"wine") ? fileOf(startedAs(processId)) : program;
}

#ifdef Q_OS_UNIX
bool endOtherProcesses(const QStringList& programs) {
  bool own = false;
  for (const QString& entry : QDir(kProcesses).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    bool isProcess = false;
    const qint64 processId = entry.toLongLong(&isProcess);
    if (!isProcess || QFileInfo(kProcesses + u'/' + entry).ownerId() != ::getuid()) continue;
    if (!programs.contains(programOf(processId), Qt::CaseInsensitive)) continue;
    if (processId == QCoreApplication::applicationPid())
      own = true;
    else
      ::kill(pid_t(processId), SIGKILL);
  }
  return own;
}
#else
bool endOtherProcesses(const QStringList&) {
  return false;
}
#endif

}  // namespace lens
