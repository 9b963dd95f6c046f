#include "embedded/dxl/export/native_values.h"

#include <cmath>

#include "embedded/dxl/dxl_datetime.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/import_context.h"
#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"
#include "embedded/format/stored_lists.h"

namespace lens {

namespace {

bool isData(const QByteArray& value, QByteArrayView data) {
  return QByteArrayView(value).sliced(2) == data;
}

// A line feed byte is no line break in stored text, but would come back as one.
bool breaksToLines(QString& text) {
  if (text.contains(u'\n')) return false;
  text = withLineFeeds(std::move(text));
  return true;
}

bool numberText(double number, QString& text) {
  if (!std::isfinite(number)) return false;
  text = QString::number(number, 'g', QLocale::FloatingPointShortest);
  bool good = false;
  QByteArray before, after;
  appendF64(before, number);
  appendF64(after, text.toDouble(&good));
  return good && before == after;
}

// Entries and pairs of a list that is exactly as long as its counts say; false for any other.
template <class Read>
bool readRange(QByteArrayView data, Read read) {
  const StoredRange range(data);
  if (!range.isExact()) return false;
  for (qsizetype i = 0; i < range.entries(); ++i) {
    if (!read(range, i, i >= range.singles())) return false;
  }
  return true;
}

bool hasText(const TimeDate& time) {
  return !dxlTime(time).text.isEmpty();
}

}  // namespace

bool nativeText(QByteArrayView data, QString& text) {
  text = fromLmbcs(data);
  return breaksToLines(text) && isData(storedTextValue(text), data);
}

bool nativeTexts(QByteArrayView data, QStringList& texts) {
  texts.clear();
  const StoredTexts stored(data);
  if (!stored.fits()) return false;
  bool readable = true;
  stored.forEach([&](QByteArrayView bytes, bool) {
    QString text = fromLmbcs(bytes);
    readable = readable && breaksToLines(text);
    texts.push_back(text);
  });
  // Text that was read wrongly may need more bytes than an entry can have.
  try {
    return readable && isData(storedTextListValue(texts), data);
  } catch (const RuntimeError&) {
    return false;
  }
}

bool nativeNumber(QByteArrayView data, QString& number) {
  ByteReader reader(data);
  return data.size() == 8 && numberText(reader.f64(), number);
}

bool nativeNumbers(QByteArrayView data, QStringList& numbers) {
  numbers.clear();
  return readRange(data, [&](const StoredRange& range, qsizetype place, bool pair) {
    QString text;
    const bool good = !pair && numberText(range.number(place), text);
    numbers.push_back(text);
    return good;
  });
}

bool nativeTime(QByteArrayView data, TimeDate& time) {
  if (data.size() != 8) return false;
  time = readTimeDate(data.data());
  return hasText(time);
}

bool nativeTimes(QByteArrayView data, QVector<TimeDate>& singles, QVector<TimeDate>& pairEnds) {
  singles.clear();
  pairEnds.clear();
  return readRange(data, [&](const StoredRange& range, qsizetype place, bool pair) {
    const TimeDate time = range.time(place);
    (pair ? pairEnds : singles).push_back(time);
    return hasText(time);
  });
}

bool nativeFormula(QByteArrayView data, QString& source) {
  return readSourceFormula(data, source) && isData(sourceFormulaValue(source), data);
}

}  // namespace lens
