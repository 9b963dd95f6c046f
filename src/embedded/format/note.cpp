#include "embedded/format/note.h"

#include "embedded/format/profile_name.h"

namespace lens {
const Item* Note::find(QStringView name) const {
  for (const Item& item : items)
    if (sameItemName(item.name, name)) return &item;
  return nullptr;
}

Item* Note::find(QStringView name) {
  // The look-up itself must not detach a list that is shared.
  const Item* const found = std::as_const(*this).find(name);
  if (!found) return nullptr;
  const qsizetype index = found - items.constData();
  return &items[index];
}

QString Note::text(QStringView name) const {
  const Item* const item = find(name);
  return item ? firstText(*item) : QString();
}

bool isProfile(const Note& note) {
  return isProfileName(note.text(u"$Name"));
}

}  // namespace lens
