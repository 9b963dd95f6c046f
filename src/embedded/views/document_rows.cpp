#include "embedded/views/document_rows.h"

#include <QSet>
#include <algorithm>

#include "embedded/formula/program.h"
#include "embedded/search/selection.h"
#include "embedded/views/sort_key.h"
#include "notes/literals.h"

namespace lens {
namespace {

using formula::Evaluation;
using formula::Formula;
using formula::Type;
using FormulaValue = formula::Value;

constexpr qsizetype kMostShown = 2048;  // characters of a category

}  // namespace

// --- Categories as they are kept -----------------------------------------------------------------------

QByteArray packCategories(const std::vector<RowCategory>& categories) {
  QByteArray packed;
  for (const RowCategory& category : categories) {
    appendU16(packed, category.end);
    appendU16(packed, category.column);
    appendU32(packed, quint32(category.shown.size()));
    packed.append(category.shown);
  }
  return packed;
}

void readCategories(QByteArrayView packed, std::vector<PackedCategory>& categories) {
  categories.clear();
  ByteReader reader(packed);
  while (reader.left() > 0) {
    PackedCategory category;
    category.end = reader.u16();
    category.column = reader.u16();
    const quint32 size = reader.u32();
    if (reader.failed() || !reader.has(size)) break;
    category.shown = reader.take(size);
    categories.push_back(category);
  }
}

QStringList categoryPath(QStringView text) {
  QStringList parts;
  for (const QStringView part : text.split(u'\\'))
    if (!part.trimmed().isEmpty()) parts.append(part.trimmed().toString());
  if (parts.isEmpty()) parts.append(QString());
  return parts;
}

QByteArray shownBytes(const FormulaValue& value, qsizetype element) {
  QByteArray bytes;
  switch (value.type()) {
    case Type::Number:
      appendF64(bytes.append('n'), value.number(element));
      return bytes;
    case Type::Time:
      appendTimeDate(bytes.append('t'), value.time(element));
      return bytes;
    case Type::TimeRange:
      appendTimeDate(bytes.append('t'), value.range(element).from);
      return bytes;
    case Type::Text:
    case Type::Keyword:
      return bytes.append('x').append(value.text(element).toString().left(kMostShown).toUtf8());
    default:
      return bytes.append('x');
  }
}

FormulaValue shownValue(QByteArrayView bytes) {
  ByteReader reader(bytes);
  const char kind = char(reader.u8());
  if (kind == 'n' && reader.has(8)) return FormulaValue::number(reader.f64());
  if (kind == 't' && reader.has(8)) return FormulaValue::time(reader.time());
  return FormulaValue::text(QString::fromUtf8(reader.take(reader.left())));
}

// --- Formulas ------------------------------------------------------------------------------------------

DocumentRows::DocumentRows(const ViewDesign& design, formula::Environment& environment)
    : design_(design),
      environment_(environment),
      columns_(std::size_t(design.columns.size())),
      makesOneRow_(std::none_of(design.keys.begin(), design.keys.end(),
                                [](const DesignKey& key) { return key.separateValues; })) {
  QSet<ItemName> known;
  const auto need = [&](const formula::Name& name) {
    const qsizetype before = known.size();
    known.insert(name);
    if (known.size() > before) keyNames_.push_back(name);
  };
  const auto compile = [&](const QString& source) {
    return formula::compile(source, {&environment_}).formula;
  };
  if (design.hasSelection && !design.folder)
    selectionFormula_ = compiledFormula(design.selection, environment_);
  if (selectionFormula_) {
    selection_ = std::make_unique<Evaluation>(selectionFormula_, environment_);
    noteClock(*selectionFormula_);
    for (const formula::Name& name : selectionFormula_->itemNames()) need(name);
  }
  for (int i = 0; i < design_.columns.size(); ++i) {
    const DesignColumn& column = design_.columns[i];
    columns_[std::size_t(i)].item = formula::Name(column.item);
    const auto compiled = column.formula.isEmpty() ? nullptr : compile(column.formula);
    const bool sorts = std::any_of(design_.keys.begin(), design_.keys.end(),
                                   [i](const DesignKey& key) { return key.column == i; });
    if (compiled) columns_[std::size_t(i)].evaluation = std::make_unique<Evaluation>(compiled, environment_);
    if (!sorts) continue;
    if (!compiled) need(columns_[std::size_t(i)].item);
    if (!compiled) continue;
    noteClock(*compiled);
    for (const formula::Name& name : compiled->itemNames()) need(name);
  }
}

// What asks for the day changes with the day, what asks for the time with each minute. (A formula that is
// put together while it runs is not looked into.)
void DocumentRows::noteClock(const Formula& formula) {
  for (const formula::Function* function : formula.program().functions) {
    const QLatin1String name(function->name);
    if (name == QLatin1String("@Now"))
      clock_ = Clock::EveryMinute;
    else if (clock_ == Clock::Never &&
             (name == QLatin1String("@Today") || name == QLatin1String("@Tomorrow") ||
              name == QLatin1String("@Yesterday")))
      clock_ = Clock::Daily;
  }
}

qint64 DocumentRows::moment() const {
  if (clock_ == Clock::Never) return 0;
  const qint64 now = formula::instantOf(environment_.now(), zone());
  if (clock_ == Clock::EveryMinute) return now / 6000;
  return formula::hundredthsOf(formula::civilAt(now + 100 * qint64(zone().offsetAt(now)))) /
         formula::kHundredthsOfDay;
}

Formula::Responses DocumentRows::responses() const {
  return selectionFormula_ ? selectionFormula_->responses() : Formula::Responses::None;
}

std::vector<formula::Name> DocumentRows::names() const {
  return keyNames_;
}

void DocumentRows::raiseTooMuchTime() const {
  throw RuntimeError(kFormulaError,
                     u"%1: the view \"%2\": %3"_s.arg(design_.database, design_.title,
                                                      formula::faultText(formula::fault::TooMuchTime)));
}

// A formula without an end would have none over the next document either.
FormulaValue DocumentRows::evaluated(Evaluation& evaluation, formula::Document& document, bool* matches) {
  formula::Outcome outcome = evaluation.run(&document, nullptr, Evaluation::Writes::Pretend);
  if (outcome.value.isError() && outcome.value.errorCode() == formula::fault::TooMuchTime) raiseTooMuchTime();
  if (matches) *matches = outcome.matches;
  return std::move(outcome.value);
}

bool DocumentRows::selects(formula::Document& document) {
  if (!selection_) return true;
  bool matches = false;
  evaluated(*selection_, document, &matches);
  return matches;
}

FormulaValue DocumentRows::column(int column, formula::Document& document) {
  Column& each = columns_[std::size_t(column)];
  if (each.evaluation) return evaluated(*each.evaluation, document, nullptr);
  FormulaValue value;
  return document.item(each.item, value) ? value : FormulaValue::text(u"");
}

std::vector<DocumentRow> DocumentRows::sortedRows(formula::Document& document) {
  std::vector<DocumentRow> sorted = rows(document);
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const DocumentRow& a, const DocumentRow& b) { return a.key < b.key; });
  return sorted;
}

std::vector<FormulaValue> DocumentRows::column(int column, formula::Document& document,
                                               const QVector<QByteArray>& rowKeys) {
  if (design_.columns[column].responsesOnly && !document.properties().isResponse)
    return std::vector<FormulaValue>(std::size_t(rowKeys.size()), FormulaValue::text(u""));
  const FormulaValue value = this->column(column, document);
  std::vector<FormulaValue> values(std::size_t(rowKeys.size()), value);
  const auto key = std::find_if(design_.keys.begin(), design_.keys.end(), [column](const DesignKey& each) {
    return each.column == column && each.separateValues;
  });
  if (key == design_.keys.end()) return values;
  // No row's key begins another one, so the row of a key is the last one that does not stand behind it.
  const std::vector<DocumentRow> rows = sortedRows(document);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const QByteArray& rowKey = rowKeys[qsizetype(i)];
    const auto behind = std::upper_bound(rows.begin(), rows.end(), rowKey,
                                         [](const QByteArray& a, const DocumentRow& b) { return a < b.key; });
    if (behind == rows.begin() || !rowKey.startsWith(std::prev(behind)->key)) continue;
    const qint32 choice = std::prev(behind)->choice[std::size_t(key - design_.keys.begin())];
    if (choice < value.count()) values[i] = value.element(choice);
  }
  return values;
}

// --- Rows ----------------------------------------------------------------------------------------------

// One value of one sort key.
struct DocumentRows::Part {
  QByteArray key;
  std::vector<RowCategory> categories;  // ends counted from the part's start
  qint32 choice = -1;
};

std::vector<DocumentRows::Part> DocumentRows::partsOf(int keyPlace, formula::Document& document) {
  const DesignKey& key = design_.keys[keyPlace];
  const FormulaValue value = column(key.column, document);
  const auto finished = [&](Part part) {
    part.key.append(char(sortkey::End));
    cut(part.key, 0);
    if (key.descending) invert(part.key, 0);
    return part;
  };
  std::vector<Part> parts;
  if (!key.separateValues) {
    Part part;
    appendSortKey(part.key, value, zone());
    if (key.descending) invert(part.key, 0);
    parts.push_back(std::move(part));
    return parts;
  }
  QSet<QByteArray> known;
  const qsizetype count = qMax<qsizetype>(1, value.count());
  for (qsizetype i = 0; i < count && parts.size() < kMostRows; ++i) {
    Part part;
    part.choice = qint32(i);
    if (key.category && (value.isText() || value.count() == 0)) {
      const QStringList path = categoryPath(value.isText() ? value.text(i) : QStringView());
      for (const QString& each : path) {
        if (part.key.size() >= kMostKeyBytes) break;
        appendTextKey(part.key, each);
        part.categories.push_back({quint16(qMin(part.key.size(), kMostKeyBytes)), quint16(key.column),
                                   shownBytes(FormulaValue::text(each), 0)});
      }
    } else {
      appendElementKey(part.key, value, i, zone());
      if (key.category)
        part.categories.push_back({quint16(part.key.size()), quint16(key.column), shownBytes(value, i)});
    }
    part = finished(std::move(part));
    // A value that stands twice in a list makes one row.
    const qsizetype before = known.size();
    known.insert(part.key);
    if (known.size() > before) parts.push_back(std::move(part));
  }
  return parts;
}

void DocumentRows::appendOnlyKey(formula::Document& document, QByteArray& bytes) {
  for (const DesignKey& key : design_.keys) {
    const qsizetype start = bytes.size();
    appendSortKey(bytes, column(key.column, document), zone());
    if (key.descending) invert(bytes, start);
  }
}

std::vector<DocumentRow> DocumentRows::rows(formula::Document& document) {
  if (makesOneRow_) {
    std::vector<DocumentRow> rows(1);
    appendOnlyKey(document, rows[0].key);
    rows[0].choice.assign(std::size_t(design_.keys.size()), -1);
    return rows;
  }
  struct Growing {
    DocumentRow row;
    std::vector<RowCategory> categories;
  };
  std::vector<Growing> rows(1);
  for (int place = 0; place < design_.keys.size(); ++place) {
    const std::vector<Part> parts = partsOf(place, document);
    std::vector<Growing> longer;
    longer.reserve(qMin(rows.size() * parts.size(), kMostRows));
    for (const Growing& row : rows)
      for (const Part& part : parts) {
        if (longer.size() >= kMostRows) break;
        Growing next = row;
        const qsizetype start = next.row.key.size();
        next.row.key.append(part.key);
        next.row.choice.push_back(part.choice);
        for (RowCategory category : part.categories) {
          category.end = quint16(category.end + start);
          next.categories.push_back(std::move(category));
        }
        longer.push_back(std::move(next));
      }
    rows = std::move(longer);
  }
  std::vector<DocumentRow> finished;
  finished.reserve(rows.size());
  for (Growing& row : rows) {
    row.row.categories = packCategories(row.categories);
    finished.push_back(std::move(row.row));
  }
  return finished;
}

}  // namespace lens
