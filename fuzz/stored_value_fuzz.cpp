// Stored values of any type from the fuzzer, as every reader of items meets them: nothing outside the bytes
// is read, and what was read and stored again reads as the same values. The first bytes stand for packed
// items too.
#include <cmath>

#include "check.h"
#include "embedded/dxl/compiled_values.h"
#include "embedded/format/agent_records.h"
#include "embedded/format/packed_items.h"
#include "embedded/format/stored_lists.h"
#include "embedded/format/view_records.h"
#include "embedded/format/written_value.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/formula_context/item_conversion.h"
#include "embedded/formula_context/note_formulas.h"
#include "embedded/mime/mime_entity.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {
using namespace Qt::StringLiterals;

// Bytes that are no character come as this one, which a program cannot write back.
bool isWhole(const Value& values) {
  for (const Value& value : values.values())
    if (value.kind() == Value::Kind::Text && value.text().contains(QChar::ReplacementCharacter)) return false;
  return true;
}

// Numbers that are none differ from themselves; of CR LF a program writes the line end.
bool isWritten(const Value& before, const Value& after) {
  if (before.kind() == Value::Kind::Text && after.kind() == Value::Kind::Text)
    return after.text() == before.text().replace(u"\r\n"_s, u"\n"_s);
  if (before.kind() == Value::Kind::Number && after.kind() == Value::Kind::Number &&
      std::isnan(before.number()))
    return std::isnan(after.number());
  return before == after;
}

// What a program reads from an item and writes back, it reads again. The name of an attachment is none of
// the texts that are written so.
void checkWrittenBack(const Item& item) {
  if (item.type() == itemtype::Object) return;
  const Value values = itemValues(item);
  if (!values.isArray() || !isWhole(values)) return;
  QByteArray written;
  try {
    written = writtenValue(values);
  } catch (const RuntimeError&) {
    return;  // too long a list
  }
  const Value again = itemValues({u"Other"_s, item.flags, written});
  check(again.upperBound() == values.upperBound(), "A value written back has another number of places.");
  for (int i = 0; i <= values.upperBound(); ++i)
    check(isWritten(values.at(i), again.at(i)), "A value written back reads as another.");
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
  formula::formulaSource(item, source);
  StoredReferences references(item.data());
  for (qsizetype i = 0; i < references.count(); ++i) references.unid(i);
}

// The formulas of a design note, and what an export makes of those that are source.
void checkFormulas(const Item& item) {
  for (const quint16 noteClass : {noteclass::View, noteclass::Form, noteclass::Filter}) {
    Note note;
    note.header.noteClass = noteClass;
    note.items.push_back(item);
    for (const NoteFormula& found : formulasOf(note))
      check(found.itemPlace == 0 && found.item == item.name, "A formula stands in another item.");
    const QByteArray compiled = compiledValue(note, item);
    if (compiled.isEmpty()) continue;
    check(isCompiledFrom(compiled, item.value), "An export would not come back.");
    check(compiledValue(note, {item.name, item.flags, compiled}).isEmpty(), "It is compiled twice.");
  }
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
  for (const QString& name : {u"Subject"_s, u"$FILE"_s, u"$Formula"_s, u"$DXL_action"_s}) {
    const Item item{name, quint16(itemflag::Summary), input.toByteArray()};
    objectModelType(item);
    firstText(item);
    checkWrittenBack(item);
    checkFormulaValue(item);
    readRecords(item);
    checkFormulas(item);
  }
}

}  // namespace
}  // namespace lens

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lens::tryValue(QByteArrayView(reinterpret_cast<const char*>(data), qsizetype(size)));
  return 0;
}
