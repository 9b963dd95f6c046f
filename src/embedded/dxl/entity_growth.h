// How much longer a DXL file becomes by the entities that it declares: what is a few hundred bytes in the
// file can be gigabytes to whoever reads it.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QXmlStreamReader>

namespace lens {

class EntityGrowth {
 public:
  void declare(const QXmlStreamEntityDeclarations& entities);
  // Without declared entities nothing needs to be counted.
  bool counts() const { return !entities_.isEmpty(); }
  // The next bytes of the file. References may be cut anywhere between two pieces.
  void count(QByteArrayView bytes);
  // Characters that all references so far expand to.
  qint64 characters() const { return characters_; }

 private:
  struct Entity {
    QByteArray text;
    qint64 length = -1;  // with all that it refers to; -1 while it is not known
  };
  qint64 lengthOf(const QByteArray& name, int depth);
  qint64 lengthOfText(QByteArrayView text, int depth);

  QHash<QByteArray, Entity> entities_;
  qint64 longest_ = 0;
  qint64 characters_ = 0;
  QByteArray reference_;  // the name of one so far
  bool inReference_ = false;
};

}  // namespace lens
