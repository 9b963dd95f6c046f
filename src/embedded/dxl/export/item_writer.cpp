#include "embedded/dxl/export/item_writer.h"

#include <QBuffer>

#include "embedded/dxl/compiled_values.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/file_writer.h"
#include "embedded/dxl/export/native_values.h"
#include "embedded/dxl/export/rich_text_writer.h"
#include "embedded/dxl/item_flag_names.h"
#include "embedded/dxl/raw_values.h"
#include "embedded/formula/compiled/stored_formula.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr qsizetype kMostStored = 64 * 1024;  // bytes of a value that an attribute takes along

void writeFlags(DxlWriter& out, const Item& item) {
  quint16 told = 0;
  for (const FlagName& known : kFlagNames) {
    const bool set = (item.flags & known.flag) != 0;
    const bool stated = set || (known.flag == itemflag::Summary && isSummaryByDefault(item.type()));
    if (stated) out.flag(QString::fromUtf16(known.name), set);
    if (set) told |= known.flag | known.implied;
  }
  if (told != item.flags) out.mark(exactmark::kFlags, QString::number(item.flags, 16));
}

template <class Content>
void element(DxlWriter& out, const QString& name, Content content) {
  out.begin(name);
  content();
  out.end();
}

void writeTextElement(DxlWriter& out, const QString& text) {
  element(out, u"text"_s, [&] { out.lines(text); });
}

bool writeText(DxlWriter& out, QByteArrayView data) {
  QString text;
  if (!nativeText(data, text)) return false;
  writeTextElement(out, text);
  return true;
}

bool writeTexts(DxlWriter& out, QByteArrayView data) {
  QStringList texts;
  if (!nativeTexts(data, texts)) return false;
  element(out, u"textlist"_s, [&] {
    for (const QString& text : texts) writeTextElement(out, text);
  });
  return true;
}

void writeNumberElement(DxlWriter& out, const QString& number) {
  element(out, u"number"_s, [&] { out.literal(number); });
}

bool writeNumber(DxlWriter& out, QByteArrayView data) {
  QString number;
  if (!nativeNumber(data, number)) return false;
  writeNumberElement(out, number);
  return true;
}

bool writeNumbers(DxlWriter& out, QByteArrayView data) {
  QStringList numbers;
  if (!nativeNumbers(data, numbers)) return false;
  element(out, u"numberlist"_s, [&] {
    for (const QString& number : numbers) writeNumberElement(out, number);
  });
  return true;
}

bool writeTime(DxlWriter& out, QByteArrayView data) {
  TimeDate time;
  if (!nativeTime(data, time)) return false;
  out.datetime(time);
  return true;
}

bool writeTimes(DxlWriter& out, QByteArrayView data) {
  QVector<TimeDate> singles, pairEnds;
  if (!nativeTimes(data, singles, pairEnds)) return false;
  // Pairs stand behind the single values, in elements of their own.
  element(out, u"datetimelist"_s, [&] {
    for (const TimeDate& single : singles) out.datetime(single);
    for (qsizetype i = 0; i + 1 < pairEnds.size(); i += 2) {
      element(out, u"datetimepair"_s, [&] {
        out.datetime(pairEnds[i]);
        out.datetime(pairEnds[i + 1]);
      });
    }
  });
  return true;
}

void writeCompiledFormula(DxlWriter& out, QByteArrayView data, const QByteArray& stored = {}) {
  element(out, u"formula"_s, [&] {
    out.flag(u"compiled"_s, true);
    if (!stored.isEmpty()) out.mark(exactmark::kStored, QString::fromLatin1(stored.toBase64()));
    out.base64(data);
  });
}

bool writeFormula(DxlWriter& out, QByteArrayView data) {
  QString source;
  if (nativeFormula(data, source)) {
    element(out, u"formula"_s, [&] { out.literal(source); });
    return true;
  }
  // The item of a raw note keeps the bytes that other programs run.
  if (formula::readStored(data).state == formula::CompiledReading::State::Unreadable) return false;
  writeCompiledFormula(out, data);
  return true;
}

// False, and nothing written, when the elements of the type would not give the value back.
bool writeNative(DxlWriter& out, quint16 type, QByteArrayView data) {
  switch (type) {
    case itemtype::Text:
      return writeText(out, data);
    case itemtype::TextList:
      return writeTexts(out, data);
    case itemtype::Number:
      return writeNumber(out, data);
    case itemtype::NumberRange:
      return writeNumbers(out, data);
    case itemtype::Time:
      return writeTime(out, data);
    case itemtype::TimeRange:
      return writeTimes(out, data);
    case itemtype::Formula:
      return writeFormula(out, data);
    case itemtype::RichText:
      return writeRichText(out, data);
    default:
      return false;
  }
}

void writeRaw(DxlWriter& out, quint16 type, QByteArrayView data, const QByteArray& stored = {}) {
  element(out, u"rawitemdata"_s, [&] {
    out.attribute(u"type"_s, QString::number(type, 16));
    if (!stored.isEmpty()) out.mark(exactmark::kStored, QString::fromLatin1(stored.toBase64()));
    if (!rawValueFault(type, data).isEmpty()) out.mark(exactmark::kAsStored, u"true"_s);
    out.base64(data);
  });
}

// Formulas as source are compiled for those who take the note as it is; a mark keeps what was stored.
bool writeCompiled(DxlWriter& out, const Note& note, const Item& item) {
  if (item.value.size() > kMostStored) return false;
  const QByteArray compiled = compiledValue(note, item);
  if (compiled.isEmpty()) return false;
  const QByteArrayView data = QByteArrayView(compiled).sliced(2);
  if (item.type() == itemtype::Formula)
    writeCompiledFormula(out, data, item.value);
  else
    writeRaw(out, item.type(), data, item.value);
  return true;
}

}  // namespace

void writeItem(ExportContext& context, const Note& note, const Item& item) {
  DxlWriter& out = context.out;
  element(out, u"item"_s, [&] {
    out.exactAttribute(u"name"_s, item.name);
    // An import refuses an item without a name, unless it is said to have none.
    if (item.name.isEmpty()) out.mark(exactMarkOf(u"name"), {});
    writeFlags(out, item);
    if (item.type() == itemtype::Object)
      writeObjectValue(context, item);
    else if (!writeCompiled(out, note, item) && !writeNative(out, item.type(), item.data()))
      writeRaw(out, item.type(), item.data());
  });
  out.layout();
}

bool writeItemWithKept(ExportContext& context, const Item& item, const QVector<Item>& kept) {
  QBuffer xml;
  xml.open(QIODevice::WriteOnly);
  DxlWriter richText(xml);
  if (item.type() != itemtype::RichText || item.name.isEmpty() || !writeRichText(richText, item.data(), kept))
    return false;
  DxlWriter& out = context.out;
  element(out, u"item"_s, [&] {
    out.exactAttribute(u"name"_s, item.name);
    writeFlags(out, item);
    out.verbatim(QString::fromUtf8(xml.data()));
  });
  out.layout();
  return true;
}

}  // namespace lens
