#include "embedded/formula/tree.h"

namespace lens::formula {
namespace {

class Comparison {
 public:
  Comparison(const Tree& left, const Tree& right) : left_(left), right_(right) {}
  bool same(int left, int right) const;

 private:
  const Tree& left_;
  const Tree& right_;
};

bool Comparison::same(int leftIndex, int rightIndex) const {
  if (leftIndex < 0 || rightIndex < 0) return leftIndex == rightIndex;
  const Node& left = left_.nodes[size_t(leftIndex)];
  const Node& right = right_.nodes[size_t(rightIndex)];
  if (left.kind != right.kind || left.modifier != right.modifier || left.function != right.function ||
      left.name != right.name || left.operators != right.operators ||
      left.children.size() != right.children.size() || !left.constant.identical(right.constant))
    return false;
  for (size_t i = 0; i < left.children.size(); ++i)
    if (!same(left.children[i], right.children[i])) return false;
  return true;
}

}  // namespace

bool sameTree(const Tree& left, const Tree& right) {
  if (left.statements.size() != right.statements.size()) return false;
  const Comparison comparison(left, right);
  for (size_t i = 0; i < left.statements.size(); ++i) {
    const Statement &a = left.statements[i], &b = right.statements[i];
    if (a.kind != b.kind || a.remark != b.remark || !comparison.same(a.root, b.root)) return false;
  }
  return true;
}

void findLine(QStringView source, CompileError& error) {
  const qsizetype place = qMin(qsizetype(error.offset), source.size());
  qsizetype start = 0;
  error.line = 0;
  for (qsizetype i = 0; i < place; ++i) {
    const bool halfBreak = source[i] == u'\r' && i + 1 < source.size() && source[i + 1] == u'\n';
    if (halfBreak || (source[i] != u'\r' && source[i] != u'\n')) continue;
    ++error.line;
    start = i + 1;
  }
  error.column = int(place - start);
}

}  // namespace lens::formula
