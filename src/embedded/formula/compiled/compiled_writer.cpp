#include "embedded/formula/compiled/compiled_writer.h"

#include <algorithm>
#include <optional>

#include "embedded/format/byte_reader.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/code_writer.h"
#include "embedded/formula/compiled/codes.h"
#include "embedded/formula/compiled/layout.h"
#include "embedded/formula/compiled/segments.h"
#include "embedded/formula/token.h"

namespace lens::formula {
namespace {

constexpr qsizetype kMostBytes = 0xFFFE;  // of a formula and of a segment: an even number of 16 bits

void appendCounted(QByteArray& bytes, QByteArrayView text) {
  appendU16(bytes, quint16(text.size()));
  bytes += text;
  if (text.size() % 2 != 0) bytes += '\0';
}

// What tells where a document stands in a view. A column of it is stored in no item.
bool tellsPlace(const Tree& tree) {
  constexpr const char* kPlaces[] = {"@DocNumber",   "@DocParentNumber", "@DocLevel",
                                     "@DocChildren", "@DocDescendants",  "@DocSiblings",
                                     "@IsCategory",  "@IsExpandable",    "@Responses"};
  return std::any_of(tree.nodes.begin(), tree.nodes.end(), [&](const Node& node) {
    return node.kind == Node::Kind::Call &&
           std::any_of(std::begin(kPlaces), std::end(kPlaces),
                       [&](const char* name) { return qstrcmp(node.function->name, name) == 0; });
  });
}

class FormulaWriter {
 public:
  FormulaWriter(QStringView source, const Environment& environment) : source_(source) {
    if (source.size() > kMaxBytes)
      parsed_.error.reason = fault::CodeTooLong;
    else
      parsed_ = parse(source, environment, &tokens_);
  }
  const CompileError& error() const { return parsed_.error; }
  // The segments of all statements; nothing when there is no form for one. The main expression is stored
  // under the item's name when there is one and the value is stored at all.
  std::optional<QByteArray> segments(QStringView item = {});
  bool usesFar() const { return usesFar_; }

 private:
  bool addStatement(const Statement& statement, bool isMain, QStringView item);
  bool addSegment(quint16 type, QByteArrayView data);
  bool addRemark(const Statement& statement);
  bool addLayout(bool oneWord);
  std::size_t mainStatement() const;
  QByteArray layoutText(bool& oneWord);

  QStringView source_;
  std::vector<Token> tokens_;
  Parsed parsed_;
  std::size_t next_ = 0;  // token
  QByteArray out_;
  bool usesFar_ = false;
  bool layoutLikeBehind_ = false;
};

bool FormulaWriter::addSegment(quint16 type, QByteArrayView data) {
  const qsizetype padded = data.size() + data.size() % 2;
  if (padded + segment::kHead > kMostBytes) return false;
  appendU16(out_, type);
  appendU16(out_, quint16(padded + segment::kHead));
  out_ += data;
  if (data.size() % 2 != 0) out_ += '\0';
  return out_.size() <= kMostBytes;
}

// From the white space between the tokens of the next statement.
QByteArray FormulaWriter::layoutText(bool& oneWord) {
  LayoutWriter layout;
  int word = 0, depth = 0;
  qsizetype end = next_ == 0 ? 0 : tokens_[next_ - 1].end();
  for (;; ++next_) {
    const Token& token = tokens_[next_];
    if (token.kind == Token::Kind::End || (token.kind == Token::Kind::Semicolon && depth == 0)) break;
    if (token.kind == Token::Kind::LeftParenthesis) ++depth;
    if (token.kind == Token::Kind::RightParenthesis) --depth;
    layout.add(word, source_.sliced(end, token.offset - end));
    end = token.end();
    if (token.kind == Token::Kind::Select) layout.addSelect();
    ++word;
    // A call with nothing in its parentheses has none in the code.
    const bool isCall =
        token.kind == Token::Kind::Function && tokens_[next_ + 1].kind == Token::Kind::LeftParenthesis;
    if (isCall && tokens_[next_ + 2].kind == Token::Kind::RightParenthesis) {
      next_ += 2;
      end = tokens_[next_].end();
    }
  }
  if (tokens_[next_].kind == Token::Kind::Semicolon) ++next_;
  oneWord = word == 1 && layout.isEmpty();
  return layout.text();
}

bool FormulaWriter::addLayout(bool oneWord) {
  bool bare = false;
  const QByteArray text = layoutText(bare);
  // Nothing is kept of a statement that is one word. A remark behind it may look like a layout.
  if (oneWord && bare && !layoutLikeBehind_) return true;
  QByteArray data;
  if (text.size() > kMostBytes) return false;
  appendCounted(data, text);
  return addSegment(segment::Layout, data);
}

bool FormulaWriter::addRemark(const Statement& statement) {
  QByteArray data;
  const QByteArray text = codeText(statement.remark);
  if (text.size() > kMostBytes || statement.remark.contains(u'\0')) return false;
  appendCounted(data, text);
  return addSegment(segment::Layout, data) && addLayout(false);
}

bool FormulaWriter::addStatement(const Statement& statement, bool isMain, QStringView item) {
  if (statement.kind == Statement::Kind::Remark) return addRemark(statement);
  const Node& root = parsed_.tree.nodes[std::size_t(statement.root)];
  const bool assigns = statement.kind == Statement::Kind::Expression && root.kind == Node::Kind::Assignment &&
                       root.parentheses == 0;
  quint16 type = isMain ? segment::Main : segment::Expression;
  int value = statement.root;
  QByteArray data;
  if (assigns) {
    type = root.modifier == Node::Modifier::Field         ? segment::Field
           : root.modifier == Node::Modifier::Default     ? segment::Column
           : root.modifier == Node::Modifier::Environment ? segment::Environment
                                                          : segment::Variable;
    value = root.children.front();
    appendCounted(data, toLmbcs(root.name));
  } else if (isMain && !item.isEmpty()) {
    type = segment::Column;
    const QByteArray name = toLmbcs(item);
    if (name.size() > kMostBytes) return false;
    appendCounted(data, name);
  }
  CodeWriter code(parsed_.tree);
  if (!code.write(value)) return false;
  usesFar_ = usesFar_ || code.usesFar();
  data += code.bytes();
  return addSegment(type, data) && addLayout(!assigns);
}

// The selection, or the last expression that is computed.
std::size_t FormulaWriter::mainStatement() const {
  const std::vector<Statement>& statements = parsed_.tree.statements;
  std::size_t main = statements.size();
  for (std::size_t i = 0; i < statements.size(); ++i) {
    if (statements[i].kind == Statement::Kind::Select) return i;
    if (statements[i].kind == Statement::Kind::Remark) continue;
    const Node& root = parsed_.tree.nodes[std::size_t(statements[i].root)];
    if (root.kind != Node::Kind::Assignment || root.parentheses > 0) main = i;
  }
  return main;
}

std::optional<QByteArray> FormulaWriter::segments(QStringView item) {
  if (tellsPlace(parsed_.tree)) item = {};
  // There DEFAULT would be told from the main expression by its place only.
  const auto isDefault = [](const Node& node) { return node.modifier == Node::Modifier::Default; };
  if (!item.isEmpty() && std::any_of(parsed_.tree.nodes.begin(), parsed_.tree.nodes.end(), isDefault))
    return {};
  const std::size_t main = mainStatement();
  const std::vector<Statement>& statements = parsed_.tree.statements;
  for (std::size_t i = 0; i < statements.size(); ++i) {
    layoutLikeBehind_ = i + 1 < statements.size() && statements[i + 1].remark.startsWith(QChar(kLayoutMark));
    if (!addStatement(statements[i], i == main, item)) return {};
  }
  return std::move(out_);
}

// The size word in front; empty when it is too large.
QByteArray framed(QByteArrayView segments, bool usesFar) {
  QByteArray bytes;
  const qsizetype size = 2 + (usesFar ? segment::kHead : 0) + segments.size();
  if (size > kMostBytes) return {};
  bytes.reserve(size);
  appendU16(bytes, quint16(size));
  if (usesFar) {
    appendU16(bytes, segment::FarFunctions);
    appendU16(bytes, segment::kHead);
  }
  bytes += segments;
  return bytes;
}

// Whether a column's code is one number, text or time.
bool isConstant(QByteArrayView column) {
  ByteReader reader(column);
  const qsizetype name = reader.u16();
  reader.skip(name + name % 2);
  const quint16 kind = reader.u16();
  if (kind == code::Text) {
    const qsizetype size = reader.u16();
    reader.skip(size + size % 2);
  } else if (kind == code::Number || kind == code::Time) {
    reader.skip(8);
  } else {
    return false;
  }
  return reader.u16() == code::End && !reader.failed();
}

// What a column's formula leaves in the formula of its view: no layouts, and nothing of one that computes a
// constant or a place in the view.
QByteArray columnProgram(QByteArrayView formula, bool& usesFar) {
  ByteReader reader(formula);
  reader.skip(2);
  QByteArray program;
  bool stored = false;
  while (reader.left() >= segment::kHead) {
    const qsizetype at = reader.position();
    const quint16 type = reader.u16(), size = reader.u16();
    if (size < segment::kHead) break;
    const QByteArrayView data = reader.take(size - segment::kHead);
    if (type == segment::FarFunctions) usesFar = true;
    if (type == segment::Layout || type == segment::FarFunctions) continue;
    if (type == segment::Column) stored = !isConstant(data);
    program += formula.sliced(at, reader.position() - at);
  }
  return stored ? program : QByteArray();
}

// The names of the items in which a view finds its columns' values.
QByteArray columnTable(const QStringList& items) {
  QByteArray lengths, names;
  for (const QString& item : items) {
    const QByteArray name = toLmbcs(item);
    appendU16(lengths, quint16(name.size()));
    names += name;
  }
  QByteArray table;
  appendU16(table, quint16(2 + 2 + lengths.size() + names.size()));
  appendU16(table, quint16(items.size()));
  table += lengths + names;
  if (table.size() % 2 != 0) table += '\0';
  return table;
}

void appendSegment(QByteArray& bytes, quint16 type, QByteArrayView data) {
  appendU16(bytes, type);
  appendU16(bytes, quint16(data.size() + segment::kHead));
  bytes += data;
}

Written written(QStringView source, QStringView item, const Environment& environment) {
  Written result;
  FormulaWriter writer(source, environment);
  result.error = writer.error();
  if (result.error.reason != 0) return result;
  if (const auto segments = writer.segments(item)) result.bytes = framed(*segments, writer.usesFar());
  return result;
}

}  // namespace

Written writeCompiled(QStringView source, const Environment& environment) {
  return written(source, {}, environment);
}

Written writeCompiledColumn(QStringView source, QStringView item, const Environment& environment) {
  return written(source, item, environment);
}

Written writeCompiledSelection(QStringView source, const QVector<WrittenColumn>& columns,
                               const Environment& environment) {
  Written result;
  FormulaWriter writer(source, environment);
  result.error = writer.error();
  if (result.error.reason != 0) return result;
  const auto selection = writer.segments();
  if (!selection) return result;
  bool usesFar = writer.usesFar();
  QByteArray segments;
  QStringList items;
  for (const WrittenColumn& column : columns) {
    const QByteArray program = columnProgram(column.formula, usesFar);
    if (!column.formula.isEmpty() && program.isEmpty()) continue;
    segments += program;
    items += column.item;
  }
  items << u"$Conflict"_s << u"$REF"_s;
  const QByteArray table = columnTable(items);
  if (table.size() + segment::kHead > kMostBytes) return result;
  appendSegment(segments, segment::Columns, table);
  appendSegment(segments, segment::Divider, {});
  result.bytes = framed(segments + *selection, usesFar);
  return result;
}

QByteArray storedFormula(QStringView source, const Environment& environment) {
  const QByteArray compiled = writeCompiled(source, environment).bytes;
  return compiled.isEmpty() ? sourceFormula(source) : compiled;
}

}  // namespace lens::formula
