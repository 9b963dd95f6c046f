#include "embedded/dxl/export/design_children.h"
#include "embedded/dxl/export/formula_writer.h"
#include "embedded/dxl/export/rich_text_writer.h"
#include "embedded/dxl/rich_text_records.h"
#include "embedded/format/source_formula.h"
#include "embedded/richtext/field_record.h"
#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"

namespace lens {

namespace {

bool isSource(const QByteArray& formula) {
  QString source;
  return readSourceFormula(formula, source);
}

bool isBody(const Item& item) {
  return item.flags == 0 && item.value.size() >= 2 && item.type() == itemtype::RichText;
}

}  // namespace

void addFormContent(DesignContent& content, const QVector<Item>& kept, const Item& body) {
  if (!isBody(body)) return;
  if (content.is(u"sharedfield")) {
    const RichText text = RichText::fromBytes(body.data());
    for (const RichElement& element : text.elements()) {
      if (content.has(u"field") || quint8(element.record[0]) != StoredField::kKind) continue;
      bool written = false;
      const QString xml = DesignContent::fragment(
          [&](DxlWriter& out) { written = writeFieldElement(out, element.record, FieldPlace::Alone); });
      if (written) content.add(u"field"_s, xml);
    }
    return;
  }
  bool written = false;
  const QString xml = DesignContent::fragment([&](DxlWriter& out) {
    out.begin(u"body"_s);
    written = writeRichText(out, body.data(), kept, true);
    out.end();
  });
  if (written) content.add(u"body"_s, xml);
}

bool hasSourceInBody(const Note& note) {
  const Item* const body = note.find(u"$Body");
  if (!body || !isBody(*body)) return false;
  const RichText text = RichText::fromBytes(body->data());
  return std::any_of(text.elements().cbegin(), text.elements().cend(), [](const RichElement& element) {
    FieldRecord field;
    RichFont font;
    return readFieldRecord(element.record, field, font) &&
           (isSource(field.defaultValue) || isSource(field.inputTranslation) ||
            isSource(field.inputValidation));
  });
}

}  // namespace lens
