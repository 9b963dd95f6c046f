#include "embedded/format/set_item.h"

namespace lens {

void setItem(Note& note, const QString& name, QByteArray value, quint16 flagsOfNew) {
  if (Item* const present = note.find(name))
    present->value = std::move(value);
  else
    note.add(name, flagsOfNew, std::move(value));
}

}  // namespace lens
