#include "embedded/views/view_lookup.h"

#include <QHash>
#include <utility>

#include "embedded/formula_context/evaluated_note.h"
#include "embedded/views/sort_key.h"
#include "notes/literals.h"
#include "notes/numbers.h"

namespace lens {
namespace {

using FormulaValue = formula::Value;
using Visit = std::function<bool(QByteArrayView)>;

// Date and time as the object model shows them.
QString civilText(const formula::Civil& civil, const Regional& regional) {
  DateTime moment;
  if (civil.hasDate) moment.date = QDate::fromJulianDay(civil.day);
  if (civil.hasTime) moment.time = QTime::fromMSecsSinceStartOfDay(civil.hundredths * 10);
  return regional.text(moment);
}

QString elementText(const FormulaValue& value, qsizetype element, const formula::LocalZone& zone,
                    const Regional& regional) {
  switch (value.type()) {
    case formula::Type::Number:
      return numberText(value.number(element));
    case formula::Type::Time:
      return civilText(formula::civilOf(value.time(element), zone), regional);
    case formula::Type::TimeRange:
      return civilText(formula::civilOf(value.range(element).from, zone), regional) + u" - "_s +
             civilText(formula::civilOf(value.range(element).to, zone), regional);
    case formula::Type::Text:
    case formula::Type::Keyword:
      return value.text(element).toString();
    default:
      return {};
  }
}

// --- Rows of a key -------------------------------------------------------------------------------------

class KeySearch {
 public:
  KeySearch(ViewIndex& index, const ViewKey& key, const Regional& regional, const Visit& visit)
      : index_(index), key_(key), regional_(regional), visit_(visit), sort_(index.design().keys.front()) {}

  // Numbers and times stand before texts, and behind them where the view sorts descending.
  void run() {
    if (!sort_.descending && goesOn_) numbersAndTimes();
    if (goesOn_) texts();
    if (sort_.descending && goesOn_) numbersAndTimes();
  }

 private:
  void rowsThatBeginWith(const QByteArray& beginning) {
    index_.tables().eachRow(index_.design().noteId, beginning,
                            [&](QByteArrayView key, int level, QByteArrayView) {
                              if (!key.startsWith(beginning)) return false;
                              if (level == 0) goesOn_ = visit_(key);
                              return goesOn_;
                            });
  }

  // A category counts with all that stands below it.
  QByteArray beginningOfTexts() const {
    QByteArray bytes;
    const QStringList path = sort_.category ? categoryPath(key_.text) : QStringList(key_.text);
    for (qsizetype i = 0; i < path.size(); ++i) {
      if (key_.exact || i + 1 < path.size())
        appendTextKey(bytes, path[i]);
      else
        bytes += textKeyBeginning(path[i]);
    }
    if (key_.exact && !sort_.category) bytes.append(char(sortkey::End));
    cut(bytes, 0);
    if (sort_.descending) invert(bytes, 0);
    return bytes;
  }
  void texts() { rowsThatBeginWith(beginningOfTexts()); }

  // Each number or time that is in the view is looked at once.
  void numbersAndTimes() {
    QByteArray from(1, char(sort_.descending ? ~sortkey::Time : sortkey::Number));
    while (goesOn_) {
      QByteArray value;
      index_.tables().eachRow(index_.design().noteId, from, [&](QByteArrayView key, int, QByteArrayView) {
        value = key.first(qMin<qsizetype>(key.size(), kTimeKeySize + 1)).toByteArray();
        return false;
      });
      if (sort_.descending) invert(value, 0);
      QString text;
      const qsizetype size = readValue(value, text);
      if (size == 0) return;
      QByteArray wanted = value.first(size), next = wanted;
      if (key_.exact) wanted.append(char(sortkey::End));
      if (sort_.descending) invert(wanted, 0), invert(next, 0);
      if (matches(text)) rowsThatBeginWith(wanted);
      const QByteArray behind = behindAll(next);
      if (behind <= from) return;  // a damaged index is not in order
      from = behind;
    }
  }
  // Bytes of the number or time that the key begins with; 0 when it is none.
  qsizetype readValue(QByteArrayView key, QString& text) const {
    double number = 0;
    formula::Civil time;
    if (readNumberKey(key, number)) return text = numberText(number), kNumberKeySize;
    if (!readTimeKey(key, index_.rows().zone(), time)) return 0;
    return text = civilText(time, regional_), kTimeKeySize;
  }
  bool matches(const QString& text) const {
    return key_.exact ? text.compare(key_.text, Qt::CaseInsensitive) == 0
                      : text.startsWith(key_.text, Qt::CaseInsensitive);
  }

  ViewIndex& index_;
  const ViewKey& key_;
  const Regional& regional_;
  const Visit& visit_;
  const DesignKey sort_;
  bool goesOn_ = true;
};

// --- Values --------------------------------------------------------------------------------------------

// Puts values together as long as they fit into what a formula can hold.
class ValueRow {
 public:
  bool add(FormulaValue value) {
    if (value.count() == 0) value = FormulaValue::text(u"");
    elements_ += value.count();
    bytes_ += value.storedSizeBound();
    if (elements_ > formula::kMaxElements) return false;
    values_.push_back(std::move(value));
    return bytes_ <= formula::kMaxBytes * 4;
  }
  bool isEmpty() const { return values_.empty(); }

  FormulaValue take(const formula::LocalZone& zone, const Regional& regional) const {
    formula::ListBuilder list;
    const bool same = isOfOneType();
    for (const FormulaValue& value : values_) {
      if (same) list.add(value);
      for (qsizetype i = 0; !same && i < value.count(); ++i)
        list.addText(elementText(value, i, zone, regional));
    }
    return list.take();
  }

 private:
  bool isOfOneType() const {
    for (const FormulaValue& value : values_)
      if (value.type() != values_.front().type()) return false;
    return true;
  }
  std::vector<FormulaValue> values_;
  qsizetype elements_ = 0, bytes_ = 0;
};

// Nothing happens when the document cannot be read.
template <class Read>
void withDocument(ViewIndex& index, NoteId note, const Read& read) {
  Note found;
  try {
    if (!index.database().notes().read(note, found)) return;
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    return;
  }
  EvaluatedNote document(found, &index.database(), EvaluatedNote::Items::Summary);
  read(found, document);
}

// What rows show, in their order. A document that stands in many rows is read once and asked for all of them:
// it may have as many values as rows.
template <class Read>
ValueRow valuesOf(ViewIndex& index, const QVector<QByteArray>& rowKeys, const Read& read) {
  struct Shown {
    QVector<QByteArray> keys;
    std::vector<FormulaValue> values;
    std::size_t next = 0;
    bool asked = false;
  };
  QHash<NoteId, Shown> documents;
  for (const QByteArray& key : rowKeys) documents[noteIdOf(key)].keys.push_back(key);
  ValueRow values;
  for (const QByteArray& key : rowKeys) {
    Shown& shown = documents[noteIdOf(key)];
    if (!std::exchange(shown.asked, true))
      withDocument(index, noteIdOf(key), [&](const Note& note, EvaluatedNote& document) {
        shown.values = read(note, document, shown.keys);
      });
    if (shown.next < shown.values.size() && !values.add(std::move(shown.values[shown.next++]))) break;
  }
  return values;
}

// Categories with all their levels, each once.
FormulaValue categoryColumn(ViewIndex& index, int column, const Regional& regional) {
  ValueRow values;
  QVector<ViewLine> path;
  for (const ViewLine& line : index.lines()) {
    if (line.note) continue;
    path.resize(line.level);
    path.push_back(line);
    if (line.column != column) continue;
    QStringList parts;
    for (const ViewLine& above : std::as_const(path))
      if (above.column == column) parts.append(elementText(above.category, 0, index.rows().zone(), regional));
    if (!values.add(parts.size() == 1 ? line.category : FormulaValue::text(parts.join(u'\\')))) break;
  }
  return values.isEmpty() ? FormulaValue::text(u"") : values.take(index.rows().zone(), regional);
}

}  // namespace

void eachRowOfKey(ViewIndex& index, const ViewKey& key, const Regional& regional, const Visit& visit) {
  if (!index.design().keys.isEmpty()) KeySearch(index, key, regional, visit).run();
}

NoteId findByKey(ViewIndex& index, const ViewKey& key, const Regional& regional) {
  NoteId found;
  eachRowOfKey(index, key, regional, [&](QByteArrayView row) {
    const NoteId note = noteIdOf(row);
    if (index.database().notes().state(note) == NoteState::Live) found = note;
    return found.isNull();
  });
  return found;
}

FormulaValue viewColumn(ViewIndex& index, int column, const Regional& regional) {
  for (const DesignKey& key : index.design().keys)
    if (key.column == column && key.category) return categoryColumn(index, column, regional);
  QVector<QByteArray> keys;
  for (const ViewLine& line : index.lines()) {
    if (keys.size() == formula::kMaxElements) break;
    if (line.note) keys.push_back(line.key);
  }
  const ValueRow values =
      valuesOf(index, keys, [&](const Note&, EvaluatedNote& document, const auto& rowKeys) {
        return index.rows().column(column, document, rowKeys);
      });
  return values.isEmpty() ? FormulaValue::text(u"") : values.take(index.rows().zone(), regional);
}

bool viewLookup(ViewIndex& index, const formula::Database::Lookup& lookup, const Regional& regional,
                FormulaValue& value) {
  QVector<QByteArray> keys;
  eachRowOfKey(index, {lookup.key, !lookup.partial}, regional, [&](QByteArrayView key) {
    keys.push_back(key.toByteArray());
    return keys.size() < formula::kMaxElements;
  });
  const formula::Name item(lookup.item);
  const auto shown = [&](const Note& note, EvaluatedNote& document, const QVector<QByteArray>& rowKeys) {
    if (lookup.column > 0 && !lookup.unids) return index.rows().column(lookup.column - 1, document, rowKeys);
    FormulaValue found = FormulaValue::text(u"");
    if (lookup.unids)
      found = FormulaValue::text(note.header.unid.text());
    else
      EvaluatedNote(note).item(item, found);
    return std::vector<FormulaValue>(std::size_t(rowKeys.size()), found);
  };
  const ValueRow values = valuesOf(index, keys, shown);
  if (values.isEmpty()) return false;
  value = values.take(index.rows().zone(), regional);
  return true;
}

}  // namespace lens
