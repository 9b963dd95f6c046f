#include "embedded/model/attaching.h"

#include <QFileInfo>
#include <QSet>
#include <limits>

#include "embedded/format/case_key.h"
#include "embedded/format/lmbcs.h"
#include "embedded/store/readable_file.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint16 kShownInDocument = 2;

[[noreturn]] void refuse(int number, const QString& path, const QString& reason) {
  throw RuntimeError(number, u"%1: %2"_s.arg(path, reason));
}

void requireAttachable(const QString& path) {
  const QFileInfo info(path);
  if (!info.exists()) refuse(err::FileNotFound, path, u"the file to attach does not exist"_s);
  if (info.size() > std::numeric_limits<quint32>::max())
    refuse(err::Overflow, path, u"the file is larger than an attachment can be"_s);
}

TimeDate timeOf(const QDateTime& moment) {
  return timeDateOf(DateTime{moment.toLocalTime().date(), moment.toLocalTime().time()});
}

// Names as the stored text can hold them.
QString storable(const QString& name) {
  return fromLmbcs(toLmbcs(name));
}

}  // namespace

QString freeAttachmentName(const Note& note, const QString& fileName) {
  const QString wanted = storable(fileName);
  QSet<QString> taken;
  FileObject file;
  for (const Item& item : note.items)
    if (readAttachedFile(item, file)) taken.insert(caseKey(file.name));
  if (!taken.contains(caseKey(wanted))) return wanted;
  const QString suffix = QFileInfo(wanted).suffix();
  for (int number = 1;; ++number) {
    QString name = u"ATT%1"_s.arg(number, 5, 10, QLatin1Char('0'));
    if (!suffix.isEmpty()) name += u'.' + suffix;
    if (!taken.contains(caseKey(name))) return name;
  }
}

FileObject attachFile(OpenNote& open, const QString& path, RichText& text) {
  if (path.isEmpty())
    refuse(err::FileNotFound, open.database->place.path, u"EMBEDOBJECT needs a file to attach"_s);
  requireAttachable(path);
  ReadableFile source(path);
  const QFileInfo info(path);
  FileObject file;
  file.name = freeAttachmentName(open.note, info.fileName());
  file.flags = kShownInDocument;
  file.created = timeOf(info.birthTime().isValid() ? info.birthTime() : info.lastModified());
  file.modified = timeOf(info.lastModified());
  text.appendAttachment(file.name, storable(info.fileName()));
  fileObjectValue(file);  // raises for a name that no item can hold, before anything is stored
  const StoredObject stored = open.storeObject(source.device());
  file.objectId = stored.id;
  file.size = quint32(stored.size);
  open.add({u"$FILE"_s, itemflag::Summary, fileObjectValue(file)});
  return file;
}

}  // namespace lens
