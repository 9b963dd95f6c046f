// The table of names of items: each once, with the type that its items usually have.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QVector>

#include "embedded/nsf/maker/made_database.h"

namespace lens::made {

struct MadeName {
  QByteArray text;
  quint16 type = 0;
};

class MadeNames {
 public:
  explicit MadeNames(const MadeDatabase& described);
  const QVector<MadeName>& all() const { return names_; }
  int indexOf(const QByteArray& name) const { return indexes_.value(name.toLower(), -1); }
  // Whether the item's value begins with its type word.
  bool storesType(const MadeItem& item) const;

 private:
  QVector<MadeName> names_;
  QHash<QByteArray, int> indexes_;
};

}  // namespace lens::made
