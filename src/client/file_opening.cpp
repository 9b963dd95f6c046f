#include "client/file_opening.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include "client/client_controls.h"
#include "client/database_controller.h"
#include "client/import_controller.h"
#include "notes/literals.h"

namespace lens {
namespace {

// A file that is named like a database and is none gets the error of one.
bool isDatabaseFile(const QString& path) {
  const QString suffix = QFileInfo(path).suffix().toLower();
  return QFileInfo(path).isFile() &&
         (suffix == u"nsf" || suffix == u"ntf" || Workspace::looksLikeDatabase(path));
}

QStringList localFiles(const QMimeData* data) {
  QStringList files;
  for (const QUrl& url : data->urls())
    if (url.isLocalFile()) files += url.toLocalFile();
  return files;
}

}  // namespace

FileOpening::FileOpening(ClientControls& controls, DatabaseController& databases, ImportController& import)
    : controls_(controls), databases_(databases), import_(import) {
  controls.window.setAcceptDrops(true);
  controls.window.installEventFilter(this);
}

void FileOpening::open(const QStringList& paths) {
  QStringList toImport;
  const QPointer<FileOpening> self(this);
  for (const QString& path : paths) {
    if (!self) return;  // destroyed by what ran while a file was read
    if (!QFileInfo::exists(path))
      controls_.showError(tr("%1: there is no such file").arg(path));
    else if (isDatabaseFile(path))
      databases_.openFile(QFileInfo(path).absoluteFilePath());
    else
      toImport += QFileInfo(path).absoluteFilePath();
  }
  if (self && !toImport.isEmpty()) import_.importDxl(toImport, false);
}

// The drop is answered before anything is opened: whoever drags waits for the answer.
bool FileOpening::eventFilter(QObject* window, QEvent* event) {
  if (event->type() == QEvent::DragEnter) {
    auto* drag = static_cast<QDragEnterEvent*>(event);
    if (!localFiles(drag->mimeData()).isEmpty()) {
      drag->setDropAction(Qt::CopyAction);
      drag->accept();
      return true;
    }
  }
  if (event->type() == QEvent::Drop) {
    auto* drop = static_cast<QDropEvent*>(event);
    const QStringList files = localFiles(drop->mimeData());
    if (!files.isEmpty()) {
      drop->setDropAction(Qt::CopyAction);
      drop->accept();
      QTimer::singleShot(0, this, [this, files] { open(files); });
      return true;
    }
  }
  return QObject::eventFilter(window, event);
}

}  // namespace lens
