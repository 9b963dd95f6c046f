// Values of the formula language. Every value is a list of one type; a single number, time or text is a
// list of one. Copies are cheap: texts and lists are shared and never changed once they are built.
//
// Values belong to the thread that made them (their reference counts are plain numbers), and what they
// hold is counted, so that a formula cannot eat the machine's memory.
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>
#include <QVector>
#include <cstring>
#include <limits>
#include <utility>

#include "embedded/format/item_value.h"
#include "embedded/formula/faults.h"

namespace lens::formula {

inline constexpr qsizetype kMaxElements = 65535;  // of a list
inline constexpr qsizetype kMaxBytes = 65535;     // of a text as it is stored, and of a result

enum class Type : quint8 {
  Unset,        // inside the evaluator: a name that was not looked up yet
  Nothing,      // no value: @Nothing
  Missing,      // a name that is neither variable nor item
  Unavailable,  // @Unavailable and @DeleteField: removes the field that it is assigned to
  Error,
  Number,
  Time,
  TimeRange,  // a list with at least one range; a plain time in it is a range with equal ends
  Text,
  Keyword,  // [CN]; held as text in upper case
};

// A text that values share; UTF-16. The empty text owns no memory.
class Text {
 public:
  Text() = default;
  // Raises fault::TextTooLong above kMaxBytes characters (stored bytes are checked by Value::text).
  explicit Text(QStringView units);
  // Room for that many units; the caller fills all of them through the pointer at once.
  static Text ofSize(qsizetype size, char16_t*& units);
  static Text joined(QStringView left, QStringView right);
  Text(const Text& other) : rep_(other.rep_) { retain(rep_); }
  Text(Text&& other) noexcept : rep_(std::exchange(other.rep_, nullptr)) {}
  Text& operator=(Text other) noexcept {
    std::swap(rep_, other.rep_);
    return *this;
  }
  ~Text() { release(rep_); }

  QStringView view() const { return viewOf(rep_); }
  qsizetype size() const { return rep_ ? rep_->size : 0; }

 private:
  friend class Value;
  friend class ListBuilder;
  struct Rep {
    quint32 references;
    quint32 size;
    char16_t* units() { return reinterpret_cast<char16_t*>(this + 1); }
    const char16_t* units() const { return reinterpret_cast<const char16_t*>(this + 1); }
  };
  static void retain(Rep* rep) {
    if (rep) ++rep->references;
  }
  static void release(Rep* rep) {
    if (rep && --rep->references == 0) destroy(rep);
  }
  static void destroy(Rep* rep);
  static QStringView viewOf(const Rep* rep) {
    return rep ? QStringView(rep->units(), rep->size) : QStringView(u"");
  }
  Rep* rep_ = nullptr;
};

// One element of a list: what it means depends on the list's type. A range takes two.
union Cell {
  double number;
  quint64 time;
  void* text;
};

class Value {
 public:
  Value() = default;
  Value(const Value& other)
      : type_(other.type_), shape_(other.shape_), code_(other.code_), cell_(other.cell_) {
    retain();
  }
  Value(Value&& other) noexcept
      : type_(other.type_), shape_(other.shape_), code_(other.code_), cell_(other.cell_) {
    other.shape_ = Shape::Plain;
    other.type_ = Type::Unset;
  }
  Value& operator=(const Value& other) {
    if (this != &other) *this = Value(other);
    return *this;
  }
  Value& operator=(Value&& other) noexcept {
    // Taken first: the other may live inside what this one lets go.
    const Type type = std::exchange(other.type_, Type::Unset);
    const Shape shape = std::exchange(other.shape_, Shape::Plain);
    const FaultCode code = other.code_;
    const Cell cell = other.cell_;
    release();
    type_ = type, shape_ = shape, code_ = code, cell_ = cell;
    return *this;
  }
  ~Value() { release(); }

  static Value number(double number) {
    Value value(Type::Number);
    value.cell_.number = number;
    return value;
  }
  static Value truth(bool yes) { return number(yes ? 1.0 : 0.0); }
  static Value time(const TimeDate& time) {
    Value value(Type::Time);
    value.cell_.time = packTime(time);
    return value;
  }
  static Value range(const TimePair& range);
  // Raises fault::TextTooLong when the stored text would be longer than kMaxBytes bytes.
  static Value text(Text text);
  static Value text(QStringView units) { return text(Text(units)); }
  static Value keyword(QStringView word);
  static Value error(FaultCode code) {
    Value value(Type::Error);
    value.code_ = code;
    return value;
  }
  static Value nothing() { return Value(Type::Nothing); }
  static Value missing() { return Value(Type::Missing); }
  static Value unavailable() { return Value(Type::Unavailable); }
  // Lists; an empty one is the empty text, since no list is without elements.
  static Value numbers(const QVector<double>& numbers);
  static Value texts(const QStringList& texts);
  static Value times(const QVector<TimeDate>& times);

  Type type() const { return type_; }
  bool isNumber() const { return type_ == Type::Number; }
  bool isText() const { return type_ == Type::Text; }
  bool isTime() const { return type_ == Type::Time; }
  bool isError() const { return type_ == Type::Error; }
  bool isOneNumber() const { return kind() == kindOf(Type::Number, Shape::Plain); }
  bool isOneText() const { return kind() == kindOf(Type::Text, Shape::Text); }
  FaultCode errorCode() const { return code_; }

  // Elements; 0 for everything that is no list (error, nothing, missing ...).
  qsizetype count() const {
    if (shape_ == Shape::List) return list()->count;
    return type_ >= Type::Number ? 1 : 0;
  }
  // The elements in a row; of ranges two cells an element.
  const Cell* cells() const { return shape_ == Shape::List ? list()->cells() : &cell_; }

  // Elements by place; the place and the type must be right.
  double number(qsizetype i = 0) const { return cells()[i].number; }
  TimeDate time(qsizetype i = 0) const { return unpackTime(cells()[i].time); }
  TimePair range(qsizetype i = 0) const {
    return {unpackTime(cells()[2 * i].time), unpackTime(cells()[2 * i + 1].time)};
  }
  QStringView text(qsizetype i = 0) const { return Text::viewOf(static_cast<Text::Rep*>(cells()[i].text)); }
  // The same, sharing its memory.
  Text sharedText(qsizetype i = 0) const;
  // One element as a value of its own; of a range list the range.
  Value element(qsizetype i) const;

  QStringList toTexts() const;
  // Stored bytes of the value's data, counted high (three for each character beyond ASCII).
  qsizetype storedSizeBound() const;

  // Same type and same elements, bit by bit; what tests and the compiler ask.
  bool identical(const Value& other) const;

  // In place, for the evaluator: no memory is touched when a number follows a number.
  void setNumber(double number) {
    if (shape_ != Shape::Plain) release();
    type_ = Type::Number, shape_ = Shape::Plain, cell_.number = number;
  }
  double plainNumber() const { return cell_.number; }  // only of isOneNumber()
  void clear() {
    if (shape_ != Shape::Plain) release();
    type_ = Type::Unset, shape_ = Shape::Plain;
  }
  bool isUnset() const { return type_ == Type::Unset; }

 private:
  friend class ListBuilder;
  enum class Shape : quint8 { Plain, Text, List };
  struct List {
    quint32 references;
    quint32 count;  // elements
    quint32 room;   // cells
    Type type;
    Cell* cells() { return reinterpret_cast<Cell*>(this + 1); }
    const Cell* cells() const { return reinterpret_cast<const Cell*>(this + 1); }
    quint32 cellCount() const { return type == Type::TimeRange ? 2 * count : count; }
  };
  explicit Value(Type type) : type_(type) {}
  // Type and shape in one word, since the evaluator asks for both at every step.
  quint16 kind() const { return kindOf(type_, shape_); }
  static constexpr quint16 kindOf(Type type, Shape shape) {
    return quint16(quint16(type) | quint16(shape) << 8);
  }
  List* list() const { return static_cast<List*>(cell_.text); }
  void retain() const {
    if (shape_ == Shape::Text)
      Text::retain(static_cast<Text::Rep*>(cell_.text));
    else if (shape_ == Shape::List)
      ++list()->references;
  }
  void release() {
    if (shape_ == Shape::Plain) return;
    if (shape_ == Shape::Text)
      Text::release(static_cast<Text::Rep*>(cell_.text));
    else if (--list()->references == 0)
      destroyList(list());
    shape_ = Shape::Plain;
  }
  static void destroyList(List* list);

  Type type_ = Type::Unset;
  Shape shape_ = Shape::Plain;
  FaultCode code_ = 0;
  Cell cell_{};
};

// Puts a list together, element by element. Raises fault::TooMuchMemory beyond kMaxElements.
class ListBuilder {
 public:
  // The type may be left open: the first element added sets it.
  explicit ListBuilder(Type type = Type::Unset, qsizetype expected = 0);
  // Goes on behind the elements of a value, in its own memory where nobody else shares it.
  explicit ListBuilder(Value&& start);
  ListBuilder(const ListBuilder&) = delete;
  ListBuilder& operator=(const ListBuilder&) = delete;
  ~ListBuilder();

  void addNumber(double number);
  void addTime(const TimeDate& time);
  void addRange(const TimePair& range);
  void addText(Text text);
  void addText(QStringView units) { addText(Text(units)); }
  // All elements of a value of the same type; a time among ranges becomes a range, and the first range
  // among times makes the list one of ranges. Raises fault::WrongType for any other mixture.
  void add(const Value& value);
  void addElement(const Value& value, qsizetype i);

  Type type() const { return type_; }
  qsizetype count() const { return list_ ? list_->count : 0; }
  // The list; of one element the element; of none the empty text. The builder is empty afterwards.
  Value take();

 private:
  Cell* room(Type type);
  void grow(quint32 cells);
  void timesToRanges();
  Type type_;
  Value::List* list_ = nullptr;
};

// Memory that values of this thread hold, in bytes, and how much they may.
struct ValueMemory {
  static qsizetype inUse() { return used_; }
  // Raises a fatal fault::TooMuchMemory at the allocation that would go beyond. Returns the old limit.
  static qsizetype setLimit(qsizetype bytes) { return std::exchange(limit_, bytes); }

 private:
  friend void* allocate(qsizetype bytes);
  friend void deallocate(void* memory, qsizetype bytes);
  static inline constinit thread_local qsizetype used_ = 0;
  static inline constinit thread_local qsizetype limit_ = std::numeric_limits<qsizetype>::max();
};

// Bytes that a text takes when it is stored.
qsizetype storedTextSize(QStringView units);

}  // namespace lens::formula
