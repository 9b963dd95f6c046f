#include "embedded/model/member_table.h"

namespace lens {
namespace {

// Members have names of plain letters, and a call finds its member each time: no folding of other alphabets
// here.
constexpr char16_t folded(char16_t c) {
  return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
}

quint32 hashOf(QStringView name) {
  quint32 hash = 2166136261u;
  for (const QChar c : name) hash = (hash ^ folded(c.unicode())) * 16777619u;
  return hash ^ (hash >> 15);
}

bool sameName(QStringView a, QStringView b) {
  if (a.size() != b.size()) return false;
  for (qsizetype i = 0; i < a.size(); ++i)
    if (folded(a[i].unicode()) != folded(b[i].unicode())) return false;
  return true;
}

constexpr int kWrongArguments = 450;
constexpr int kArgumentMissing = 449;

}  // namespace

MemberTable::MemberTable(std::initializer_list<Members> groups) {
  for (const Members& group : groups) rows_.insert(rows_.end(), group.begin(), group.end());
  size_t size = 8;
  while (size < rows_.size() * 3) size *= 2;
  slots_.assign(size, -1);
  for (size_t row = 0; row < rows_.size(); ++row) {
    size_t slot = hashOf(rows_[row].name) & (size - 1);
    while (slots_[slot] >= 0) slot = (slot + 1) & (size - 1);
    slots_[slot] = qint16(row);
  }
}

const Member* MemberTable::find(QStringView name) const {
  const size_t mask = slots_.size() - 1;
  for (size_t slot = hashOf(name) & mask; slots_[slot] >= 0; slot = (slot + 1) & mask)
    if (sameName(rows_[size_t(slots_[slot])].name, name)) return &rows_[size_t(slots_[slot])];
  return nullptr;
}

void ModelObject::set(const QString& name, const Value& value) {
  const Member* member = members().find(name);
  if (!member) throw RuntimeError(err::MemberNotSupported);
  allow(*member);
  if (!member->write) throw RuntimeError(kWrongArguments);
  member->write(*this, value);
}

Value ModelObject::call(const QString& name, const Arguments& arguments) {
  const Member* member = members().find(name);
  if (!member) throw RuntimeError(err::MemberNotSupported);
  allow(*member);
  if (arguments.size() < member->fewest) throw RuntimeError(kArgumentMissing);
  if (arguments.size() > member->most) throw RuntimeError(kWrongArguments);
  return member->read(*this, arguments);
}

}  // namespace lens
