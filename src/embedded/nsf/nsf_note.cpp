#include "embedded/nsf/nsf_note.h"

namespace lens {

Note NsfNote::toNote() const {
  Note note{header, {}};
  note.items.reserve(items.size());
  for (const NsfItem& item : items)
    if (item.state != NsfItemState::Unreadable) note.items.push_back(item.item);
  return note;
}

}  // namespace lens
