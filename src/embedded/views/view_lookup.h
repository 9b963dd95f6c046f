// Finding rows of a view by the value of its first sorted column, and reading a column as a list.
//
// A key is compared with whole values, or with their beginnings, without regard to case; numbers and times
// count by their text. In a category "\" parts the levels, and what stands below a category has its value.
#pragma once

#include <functional>

#include "embedded/formula/evaluation_context.h"
#include "embedded/views/view_index.h"
#include "host/regional.h"

namespace lens {

struct ViewKey {
  QString text;
  bool exact = true;
};

// Of the index as of its last refresh. The visitor gets the keys of the rows in view order, responses not
// among them, until it returns false. A view without a sorted column has no keys.
void eachRowOfKey(ViewIndex& index, const ViewKey& key, const Regional& regional,
                  const std::function<bool(QByteArrayView rowKey)>& visit);

// The first document of the key that is there; 0 when there is none.
NoteId findByKey(ViewIndex& index, const ViewKey& key, const Regional& regional);

// Values of a column of the view's design, counted from 0, in view order; of a categorised one each category
// once. As much as a formula can hold. Where values are of several types all are texts.
formula::Value viewColumn(ViewIndex& index, int column, const Regional& regional);

// What a formula looks up: a column, an item or the UNIDs of the rows of a key. False when there is none.
bool viewLookup(ViewIndex& index, const formula::Database::Lookup& lookup, const Regional& regional,
                formula::Value& value);

}  // namespace lens
