#include "embedded/formula/value.h"

#include <cstdlib>
#include <new>

#include "embedded/format/lmbcs.h"

namespace lens::formula {
void* allocate(qsizetype bytes) {
  if (ValueMemory::used_ + bytes > ValueMemory::limit_) throw Fault{fault::TooMuchMemory, true};
  ValueMemory::used_ += bytes;
  return ::operator new(std::size_t(bytes));
}

void deallocate(void* memory, qsizetype bytes) {
  ValueMemory::used_ -= bytes;
  ::operator delete(memory, std::size_t(bytes));
}

namespace {

constexpr qsizetype kHeader = 8;  // of a shared text
static_assert(sizeof(Cell) == 8);

}  // namespace

qsizetype storedTextSize(QStringView units) {
  for (const QChar c : units)
    if (c.unicode() >= 0x80) return toLmbcs(units).size();
  return units.size();
}

// --- Text ----------------------------------------------------------------------------------------------

Text Text::ofSize(qsizetype size, char16_t*& units) {
  Text text;
  units = nullptr;
  if (size <= 0) return text;
  if (size > kMaxBytes) throw Fault{fault::TextTooLong};
  static_assert(sizeof(Rep) == kHeader);
  text.rep_ = new (allocate(kHeader + size * 2)) Rep{1, quint32(size)};
  units = text.rep_->units();
  return text;
}

Text::Text(QStringView units) {
  char16_t* room;
  *this = ofSize(units.size(), room);
  if (room) std::memcpy(room, units.utf16(), std::size_t(units.size()) * 2);
}

Text Text::joined(QStringView left, QStringView right) {
  char16_t* room;
  Text text = ofSize(left.size() + right.size(), room);
  if (!left.isEmpty()) std::memcpy(room, left.utf16(), std::size_t(left.size()) * 2);
  if (!right.isEmpty()) std::memcpy(room + left.size(), right.utf16(), std::size_t(right.size()) * 2);
  return text;
}

void Text::destroy(Rep* rep) {
  deallocate(rep, kHeader + qsizetype(rep->size) * 2);
}

// --- Value ---------------------------------------------------------------------------------------------

Value Value::range(const TimePair& range) {
  ListBuilder one(Type::TimeRange, 1);
  one.addRange(range);
  return one.take();
}

Value Value::text(Text text) {
  // A unit takes three bytes at most, so only long texts have to be looked at.
  if (text.size() * 3 > kMaxBytes && storedTextSize(text.view()) > kMaxBytes) throw Fault{fault::TextTooLong};
  Value value(Type::Text);
  value.shape_ = Shape::Text;
  value.cell_.text = std::exchange(text.rep_, nullptr);
  return value;
}

Value Value::keyword(QStringView word) {
  Value value = text(word.toString().toUpper());
  value.type_ = Type::Keyword;
  return value;
}

Value Value::numbers(const QVector<double>& numbers) {
  ListBuilder list(Type::Number, numbers.size());
  for (const double number : numbers) list.addNumber(number);
  return list.take();
}

Value Value::texts(const QStringList& texts) {
  ListBuilder list(Type::Text, texts.size());
  for (const QString& text : texts) list.addText(text);
  return list.take();
}

Value Value::times(const QVector<TimeDate>& times) {
  ListBuilder list(Type::Time, times.size());
  for (const TimeDate& time : times) list.addTime(time);
  return list.take();
}

Text Value::sharedText(qsizetype i) const {
  Text text;
  text.rep_ = static_cast<Text::Rep*>(cells()[i].text);
  Text::retain(text.rep_);
  return text;
}

Value Value::element(qsizetype i) const {
  if (shape_ != Shape::List) return *this;
  switch (type_) {
    case Type::TimeRange:
      return range(range(i));
    case Type::Text:
    case Type::Keyword: {
      Value value(type_);
      value.shape_ = Shape::Text;
      value.cell_ = cells()[i];
      value.retain();
      return value;
    }
    default: {
      Value value(type_);
      value.cell_ = cells()[i];
      return value;
    }
  }
}

QStringList Value::toTexts() const {
  QStringList all;
  if (type_ != Type::Text && type_ != Type::Keyword) return all;
  all.reserve(count());
  for (qsizetype i = 0; i < count(); ++i) all.append(text(i).toString());
  return all;
}

qsizetype Value::storedSizeBound() const {
  constexpr qsizetype kListHeader = 4;  // two counts of 16 bits
  switch (type_) {
    case Type::Number:
    case Type::Time:
      return kListHeader + 8 * count();
    case Type::TimeRange:
      return kListHeader + 16 * count();
    case Type::Text:
    case Type::Keyword: {
      qsizetype bytes = kListHeader;
      for (qsizetype i = 0; i < count(); ++i) bytes += 2 + text(i).size() * 3;
      return bytes;
    }
    default:
      return 0;
  }
}

bool Value::identical(const Value& other) const {
  if (type_ != other.type_ || count() != other.count()) return false;
  if (type_ == Type::Error) return code_ == other.code_;
  if (type_ == Type::Text || type_ == Type::Keyword) {
    for (qsizetype i = 0; i < count(); ++i)
      if (text(i) != other.text(i)) return false;
    return true;
  }
  const qsizetype cellCount = type_ == Type::TimeRange ? 2 * count() : count();
  return std::memcmp(cells(), other.cells(), std::size_t(cellCount) * sizeof(Cell)) == 0;
}

void Value::destroyList(List* list) {
  if (list->type == Type::Text || list->type == Type::Keyword)
    for (quint32 i = 0; i < list->count; ++i) Text::release(static_cast<Text::Rep*>(list->cells()[i].text));
  deallocate(list, qsizetype(sizeof(List)) + qsizetype(list->room) * qsizetype(sizeof(Cell)));
}

// --- ListBuilder ---------------------------------------------------------------------------------------

ListBuilder::ListBuilder(Type type, qsizetype expected) : type_(type) {
  if (expected > kMaxElements) throw Fault{fault::TooMuchMemory};
  if (expected > 0 && type != Type::Unset) grow(quint32(type == Type::TimeRange ? 2 * expected : expected));
}

ListBuilder::ListBuilder(Value&& start) : type_(Type::Unset) {
  if (start.shape_ == Value::Shape::List && start.list()->references == 1) {
    type_ = start.type_;
    list_ = start.list();
    start.shape_ = Value::Shape::Plain;
    start.type_ = Type::Unset;
    return;
  }
  type_ = start.type_;
  const qsizetype count = start.count();
  if (count > 1) grow(quint32(qMin(kMaxElements, 2 * count) * (type_ == Type::TimeRange ? 2 : 1)));
  for (qsizetype i = 0; i < count; ++i) addElement(start, i);
}

ListBuilder::~ListBuilder() {
  if (list_) Value::destroyList(list_);
}

void ListBuilder::grow(quint32 cells) {
  static_assert(sizeof(Value::List) % alignof(Cell) == 0);
  auto* larger = static_cast<Value::List*>(
      allocate(qsizetype(sizeof(Value::List)) + qsizetype(cells) * qsizetype(sizeof(Cell))));
  new (larger) Value::List{1, 0, cells, type_};
  if (list_) {
    std::memcpy(larger->cells(), list_->cells(), std::size_t(list_->cellCount()) * sizeof(Cell));
    larger->count = list_->count;
    deallocate(list_, qsizetype(sizeof(Value::List)) + qsizetype(list_->room) * qsizetype(sizeof(Cell)));
  }
  list_ = larger;
}

Cell* ListBuilder::room(Type type) {
  if (type_ != type) {
    if (count() > 0) throw Fault{fault::WrongType};
    type_ = type;
    if (list_) list_->type = type;
  }
  const quint32 width = type == Type::TimeRange ? 2 : 1;
  if (count() >= kMaxElements) throw Fault{fault::TooMuchMemory};
  if (!list_ || list_->cellCount() + width > list_->room) grow(list_ ? qMax(8U, list_->room * 2) : 4);
  return list_->cells() + width * list_->count++;
}

void ListBuilder::addNumber(double number) {
  room(Type::Number)->number = number;
}

void ListBuilder::addTime(const TimeDate& time) {
  if (type_ == Type::TimeRange && count() > 0) return addRange({time, time});
  room(Type::Time)->time = packTime(time);
}

void ListBuilder::addRange(const TimePair& range) {
  if (type_ == Type::Time && count() > 0) timesToRanges();
  Cell* cells = room(Type::TimeRange);
  cells[0].time = packTime(range.from);
  cells[1].time = packTime(range.to);
}

void ListBuilder::addText(Text text) {
  // Room first: when there is none, the text is still the caller's.
  Cell* cell = room(type_ == Type::Keyword ? Type::Keyword : Type::Text);
  cell->text = std::exchange(text.rep_, nullptr);
}

void ListBuilder::timesToRanges() {
  ListBuilder ranges(Type::TimeRange, count());
  for (qsizetype i = 0; i < count(); ++i) {
    const TimeDate time = unpackTime(list_->cells()[i].time);
    ranges.addRange({time, time});
  }
  std::swap(list_, ranges.list_);
  std::swap(type_, ranges.type_);
}

void ListBuilder::addElement(const Value& value, qsizetype i) {
  switch (value.type()) {
    case Type::Number:
      return addNumber(value.number(i));
    case Type::Time:
      return addTime(value.time(i));
    case Type::TimeRange:
      return addRange(value.range(i));
    case Type::Keyword:
      if (type_ == Type::Unset) type_ = Type::Keyword;
      if (type_ != Type::Keyword) throw Fault{fault::WrongType};
      return addText(value.sharedText(i));
    case Type::Text:
      if (type_ == Type::Keyword) throw Fault{fault::WrongType};
      return addText(value.sharedText(i));
    default:
      throw Fault{fault::WrongType};
  }
}

void ListBuilder::add(const Value& value) {
  if (value.count() == 0) throw Fault{fault::WrongType};
  for (qsizetype i = 0; i < value.count(); ++i) addElement(value, i);
}

Value ListBuilder::take() {
  if (count() == 0) return Value::text(Text());
  Value value(type_);
  if (count() == 1 && type_ != Type::TimeRange) {
    const Cell cell = list_->cells()[0];
    // The one element moves out of the list.
    list_->count = 0;
    value.cell_ = cell;
    if (type_ == Type::Text || type_ == Type::Keyword) value.shape_ = Value::Shape::Text;
    return value;
  }
  value.shape_ = Value::Shape::List;
  value.cell_.text = std::exchange(list_, nullptr);
  return value;
}

}  // namespace lens::formula
