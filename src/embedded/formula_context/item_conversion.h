// Items of the store as values of formulas, and back.
#pragma once

#include <QByteArray>

#include "embedded/format/item_value.h"
#include "embedded/formula/value.h"

namespace lens {

// The value that a formula reads from an item: texts, numbers, times and ranges, note references as
// UNIDs, a stored error. Bytes that end early give the elements that are whole. An element that formulas
// cannot hold makes the value an error. False, with the empty text, for everything that is no such list:
// rich text, objects, formulas.
bool formulaValue(const Item& item, formula::Value& value);
// The same from the item's bytes, type word included.
bool formulaValue(QByteArrayView stored, formula::Value& value);

// The value with its type word, always as a list: texts 0x0501, numbers 0x0301, times and ranges 0x0401,
// even for one. Keywords become texts; what is no value becomes one empty text; an error keeps its number
// as an item of type Error. Raises a RuntimeError (6) for what does not fit into a list.
QByteArray storedValue(const formula::Value& value);
// The same as FIELD writes it: one text, number or time takes the single form.
QByteArray fieldValue(const formula::Value& value);

}  // namespace lens
