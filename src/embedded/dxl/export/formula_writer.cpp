#include "embedded/dxl/export/formula_writer.h"

#include <algorithm>

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/rich_text_font.h"
#include "embedded/dxl/field_elements.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/format/item_value.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "notes/literals.h"

namespace lens {

namespace {

void writeFieldAttributes(DxlWriter& out, const FieldRecord& field) {
  out.attribute(u"type"_s, fieldTypeWord(field));
  out.attribute(u"kind"_s, fieldKindWord(field));
  out.attribute(u"name"_s, field.name);
  if (!field.description.isEmpty()) out.attribute(u"description"_s, field.description);
  for (const FieldFlagWord& known : kFieldFlagWords) {
    if (field.flags & known.flag) out.flag(QString::fromUtf16(known.attribute), true);
  }
}

constexpr qsizetype kMostMarked = 16 * 1024;  // bytes of a formula that an attribute takes along

// Whether the source is the same wherever it is read: dates are written as the region has them, and a
// carriage return does not come back from XML.
bool isSameEverywhere(const formula::CompiledReading& reading) {
  const auto isTime = [](const formula::Node& node) { return node.constant.isTime(); };
  return reading.canRun() && isXmlText(reading.source) && !reading.source.contains(u'\r') &&
         std::none_of(reading.tree.nodes.begin(), reading.tree.nodes.end(), isTime);
}

void writeFieldCode(DxlWriter& out, const QString& event, const QByteArray& formula) {
  if (!formula.isEmpty()) writeFormulaCode(out, event, formula);
}

}  // namespace

void writeFormulaElement(DxlWriter& out, QByteArrayView formula) {
  QString source;
  out.begin(u"formula"_s);
  if (readSourceFormula(formula, source) && sourceFormula(source) == formula) {
    out.literal(source);
  } else if (const formula::CompiledReading reading = formula::readStored(formula);
             formula.size() <= kMostMarked && isSameEverywhere(reading)) {
    out.mark(exactmark::kCompiled, QString::fromLatin1(formula.toByteArray().toBase64()));
    out.literal(reading.source);
  } else {
    out.flag(u"compiled"_s, true);
    out.base64(formula);
  }
  out.end();
}

void writeFormulaCode(DxlWriter& out, const QString& event, QByteArrayView formula) {
  out.begin(u"code"_s);
  out.attribute(u"event"_s, event);
  writeFormulaElement(out, formula);
  out.end();
}

bool writeFieldElement(DxlWriter& out, const QByteArray& record, FieldPlace place) {
  FieldRecord field;
  RichFont font;
  if (!readFieldRecord(record, field, font) || fieldRecord(field, font) != record || !isXmlText(field.name) ||
      !isXmlText(field.description))
    return false;
  const bool run = place == FieldPlace::InText;
  if (run && !beginRun(out, font)) return false;
  out.begin(u"field"_s);
  writeFieldAttributes(out, field);
  writeFieldCode(out, u"defaultvalue"_s, field.defaultValue);
  writeFieldCode(out, u"inputtranslation"_s, field.inputTranslation);
  writeFieldCode(out, u"inputvalidation"_s, field.inputValidation);
  out.end();
  if (run) out.end();
  return true;
}

}  // namespace lens
