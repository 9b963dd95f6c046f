#include "embedded/nsf/maker/made_names.h"

namespace lens::made {

// The first item of a name says how it is written and what is usual.
MadeNames::MadeNames(const MadeDatabase& described) {
  for (const MadeNote& note : described.notes)
    for (const MadeItem& item : note.items) {
      const QByteArray key = item.name.toLower();
      if (indexes_.contains(key)) continue;
      indexes_.insert(key, int(names_.size()));
      names_.push_back({item.name, item.type});
    }
}

bool MadeNames::storesType(const MadeItem& item) const {
  return item.typeStored || names_[indexOf(item.name)].type != item.type;
}

}  // namespace lens::made
