#include "embedded/formula/compiled/compiled_writer.h"

#include <algorithm>
#include <optional>

#include "embedded/format/source_formula.h"
#include "embedded/formula/compiled/code_writer.h"
#include "embedded/formula/compiled/layout.h"
#include "embedded/formula/compiled/segments.h"
#include "embedded/formula/token.h"

namespace lens::formula {
namespace {

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
  QByteArray& emptyData() {
    data_.resize(0);
    return data_;
  }
  bool addSegment(quint16 type);
  bool addRemark(const Statement& statement);
  bool addLayout(bool oneWord);
  std::size_t mainStatement() const;
  QByteArray layoutText(bool& oneWord);

  QStringView source_;
  std::vector<Token> tokens_;
  Parsed parsed_;
  std::size_t next_ = 0;  // token
  QByteArray out_;
  QByteArray data_;  // of the segment that is put together, in one memory for all
  bool usesFar_ = false;
  bool layoutLikeBehind_ = false;
};

bool FormulaWriter::addSegment(quint16 type) {
  if (data_.size() + data_.size() % 2 + segment::kHead > segment::kMostBytes) return false;
  appendSegment(out_, type, data_);
  return out_.size() <= segment::kMostBytes;
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
  if (text.size() > segment::kMostBytes) return false;
  appendCounted(emptyData(), text);
  return addSegment(segment::Layout);
}

bool FormulaWriter::addRemark(const Statement& statement) {
  return addText(emptyData(), statement.remark) && addSegment(segment::Layout) && addLayout(false);
}

bool FormulaWriter::addStatement(const Statement& statement, bool isMain, QStringView item) {
  if (statement.kind == Statement::Kind::Remark) return addRemark(statement);
  const Node& root = parsed_.tree.nodes[std::size_t(statement.root)];
  const bool assigns = statement.kind == Statement::Kind::Expression && root.kind == Node::Kind::Assignment &&
                       root.parentheses == 0;
  quint16 type = isMain ? segment::Main : segment::Expression;
  int value = statement.root;
  QByteArray& data = emptyData();
  if (assigns) {
    type = segment::typeOf(root.modifier);
    value = root.children.front();
    if (!addText(data, root.name)) return false;
  } else if (isMain && !item.isEmpty()) {
    type = segment::Column;
    if (!addText(data, item)) return false;
  }
  CodeWriter code(parsed_.tree, data);
  if (!code.write(value)) return false;
  usesFar_ = usesFar_ || code.usesFar();
  return addSegment(type) && addLayout(!assigns);
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
  if (!item.isEmpty() && tellsPlace(parsed_.tree)) item = {};
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

QByteArray storedFormula(QStringView source, const Environment& environment) {
  const QByteArray compiled = writeCompiled(source, environment).bytes;
  return compiled.isEmpty() ? sourceFormula(source) : compiled;
}

}  // namespace lens::formula
