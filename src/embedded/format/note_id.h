// The number of a note in its file. Other replicas know the note by its UNID and number it on their own.
#pragma once

#include <QHash>
#include <QString>
#include <compare>

namespace lens {

// 0 stands for no note. A type of its own, so that no count and no object's number is taken for one.
class NoteId {
 public:
  constexpr NoteId() = default;
  explicit constexpr NoteId(quint32 value) : value_(value) {}

  constexpr quint32 value() const { return value_; }
  constexpr bool isNull() const { return value_ == 0; }
  explicit constexpr operator bool() const { return value_ != 0; }
  // As messages and people write it: capital hexadecimal digits without leading zeros.
  QString hexText() const { return QString::number(value_, 16).toUpper(); }

  friend constexpr auto operator<=>(NoteId, NoteId) = default;
  friend size_t qHash(NoteId id, size_t seed = 0) noexcept { return ::qHash(id.value_, seed); }

 private:
  quint32 value_ = 0;
};
static_assert(sizeof(NoteId) == 4);

}  // namespace lens

Q_DECLARE_TYPEINFO(lens::NoteId, Q_PRIMITIVE_TYPE);
