// Stored values of any type from the fuzzer, as every reader of items meets them: nothing outside the bytes
// is read, and what was read and stored again reads as the same values. The first bytes stand for packed
// items too.
#include <cmath>

#include "check.h"
#include "embedded/format/agent_records.h"
#include "embedded/format/formula_source.h"
#include "embedded/format/packed_items.h"
#include "embedded/format/stored_lists.h"
#include "embedded/format/view_records.h"
#include "embedded/format/written_value.h"
#include "embedded/formula_context/item_conversion.h"
#include "embedded/mime/mime_entity.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

// Numbers that are none differ from themselves.
bool sameValues(const Value& a, const Value& b) {
  if (a.isArray() && b.isArray()) {
    if (a.upperBound() != b.upperBound()) return false;
    for (int i = 0; i <= a.upperBound(); ++i)
      if (!sameValues(a.at(i), b.at(i))) return false;
    return true;
  }
  if (a.kind() == Value::Kind::Number && b.kind() == Value::Kind::Number && std::isnan(a.number()))
    return std::isnan(b.number());
  return a == b;
}

// What a program reads from an item and writes back, it reads again.
void checkWrittenBack(const Item& item) {
  const Value values = itemValues(item);
  QByteArray written;
  try {
    written = writtenValue(values);
  } catch (const RuntimeError&) {
    return;  // no value to write, or too long a list
  }
  check(sameValues(itemValues({u"Other"_s, item.flags, written}), values),
        "A value written back reads as another.");
}

void checkFormulaValue(const Item& item) {
  formula::Value value;
  if (!formulaValue(item.value, value)) return;
  QByteArray stored;
  try {
    stored = storedValue(value);
  } catch (const RuntimeError&) {
    return;
  }
  formula::Value again;
  check(formulaValue(stored, again), "What a formula stored is no value of formulas.");
  check(storedValue(again) == stored, "A value of a formula changes each time it is stored.");
}

void readRecords(const Item& item) {
  StoredViewFormat format;
  QVector<StoredKey> keys;
  FileObject file;
  MimePart part;
  QString source;
  readViewFormat(item.data(), format);
  readCollation(item.data(), keys);
  if (readFileValue(item.value, file)) check(objectIdOf(item.data()) == file.objectId, "Two object numbers.");
  if (readMimePart(item.data(), part)) {
    MimePart again;
    check(readMimePart(QByteArrayView(mimePartValue(part)).sliced(2), again), "A part is not read back.");
    check(again.boundary == part.boundary && again.headers == part.headers && again.body == part.body,
          "A part reads back as another.");
  }
  formulaSource(item, source);
  StoredReferences references(item.data());
  for (qsizetype i = 0; i < references.count(); ++i) references.unid(i);
}

void checkPacked(QByteArrayView bytes) {
  try {
    const QVector<Item> items = unpackItems(bytes);
    const QVector<Item> again = unpackItems(packItems(items));
    check(again.size() == items.size(), "Items were lost.");
    for (qsizetype i = 0; i < items.size(); ++i)
      check(again[i].value == items[i].value && again[i].flags == items[i].flags, "An item changed.");
  } catch (const RuntimeError& error) {
    check(!error.description().isEmpty(), "A fault without a reason.");
  }
}

void tryValue(QByteArrayView input) {
  checkPacked(input);
  if (input.size() < 2) return;
  for (const QString& name : {u"Subject"_s, u"$FILE"_s, u"$Formula"_s}) {
    const Item item{name, quint16(itemflag::Summary), input.toByteArray()};
    objectModelType(item);
    firstText(item);
    checkWrittenBack(item);
    checkFormulaValue(item);
    readRecords(item);
  }
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryValue(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}
