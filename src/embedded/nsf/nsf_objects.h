// The objects of a real database for the store that its notes were read into: their bytes stay in the file.
#pragma once

#include <QHash>
#include <QString>
#include <memory>

#include "embedded/nsf/nsf_database.h"
#include "embedded/store/outside_objects.h"

namespace lens {

class NsfObjects : public OutsideObjects {
 public:
  // The file in the state (nsfStateOf) in which its notes were read. It is opened when an object is asked
  // for.
  NsfObjects(QString path, QByteArray state);

  // Both raise CannotOpen, with the file, where it has gone or is in another state by now. Attachments come
  // unpacked, everything else as it lies there.
  qint64 size(quint32 objectId) override;
  void read(quint32 objectId, QIODevice& target) override;

 private:
  NsfDatabase& source();
  void findFiles();

  const QString path_;
  const QByteArray state_;
  std::unique_ptr<NsfDatabase> source_;
  QHash<quint32, FileObject> files_;
};

}  // namespace lens
