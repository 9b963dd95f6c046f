#include "embedded/formula/compiled/compiled_formula.h"

#include <algorithm>

#include "embedded/format/byte_reader.h"
#include "embedded/format/lmbcs.h"
#include "embedded/formula/compiled/segments.h"
#include "embedded/formula/compiled/source_writer.h"
#include "embedded/formula/spelling.h"
#include "embedded/formula/token.h"

namespace lens::formula {
namespace {

// White space that all layouts of a formula may ask for together, in characters.
constexpr qsizetype kMostBlanks = 1024 * 1024;

class FormulaReader {
 public:
  FormulaReader(const Environment& environment, ShownSelect select)
      : environment_(environment), select_(select), code_(reading_.tree, spellings_) {}
  CompiledReading read(QByteArrayView bytes);

 private:
  void readStatements(QByteArrayView bytes);
  void readStatement(const Segment& segment);
  void readLayout(const Segment& segment);
  void findMain();
  void writeSource();
  void describe();
  QString nameOf(const Spelling& spelling) const;

  const Environment& environment_;
  ShownSelect select_;
  QByteArrayView bytes_;
  CompiledReading reading_;
  std::vector<Spelling> spellings_;
  CodeReader code_;
  std::vector<StoredStatement> statements_;
  // Whether the next layout belongs to the last statement, and whether that can have one.
  bool layoutDue_ = false, layoutTaken_ = false;
  qsizetype blanks_ = kMostBlanks;
};

void FormulaReader::readStatements(QByteArrayView bytes) {
  bytes_ = bytes;
  // The smallest operand with its operator.
  constexpr qsizetype kNodeBytes = 10;
  reading_.tree.nodes.reserve(std::size_t(bytes.size() / kNodeBytes) + 1);
  spellings_.reserve(reading_.tree.nodes.capacity());
  const std::vector<Segment> segments = readSegments(bytes);
  const auto is = [](quint16 type) { return [type](const Segment& one) { return one.type == type; }; };
  if (std::any_of(segments.begin(), segments.end(), is(segment::Hidden))) {
    reading_.state = CompiledReading::State::Hidden;
    return;
  }
  const auto divider = std::find_if(segments.begin(), segments.end(), is(segment::Divider));
  const bool isView = divider != segments.end();
  if (isView && std::any_of(divider + 1, segments.end(), is(segment::Divider)))
    throw Unreadable{"it has two dividers"};
  if (isView) select_ = ShownSelect::Always;
  // A view's columns stand before the divider; they are kept with the columns too, and are read there.
  for (auto one = isView ? divider + 1 : segments.begin(); one != segments.end(); ++one) {
    if (segment::hasCode(one->type))
      readStatement(*one);
    else if (one->type == segment::Layout)
      readLayout(*one);
  }
  if (statements_.empty()) throw Unreadable{"it has no statement"};
  reading_.state = CompiledReading::State::Source;
}

void FormulaReader::readStatement(const Segment& segment) {
  StoredStatement statement;
  statement.type = segment.type;
  QByteArrayView data = segment.data;
  if (segment::hasName(segment.type)) {
    const QByteArrayView name = takeCounted(data);
    // What a column's item is called is not part of its formula, and follows no rules of names.
    statement.name = segment.type == segment::Column ? textFromStored(name) : storedName(name);
  }
  try {
    statement.root = code_.read(data);
  } catch (Unreadable& unreadable) {
    unreadable.at += data.data() - bytes_.data();
    throw;
  }
  layoutTaken_ = code_.added();
  layoutDue_ = true;
  statements_.push_back(std::move(statement));
}

// The layout of the statement before it, or a remark.
void FormulaReader::readLayout(const Segment& segment) {
  QByteArrayView data = segment.data;
  const QByteArrayView text = takeCounted(data);
  const bool isLayout = !text.isEmpty() && text[0] == kLayoutMark;
  if (isLayout && layoutDue_) {
    // With parentheses that the author did not write the words would be miscounted.
    if (!layoutTaken_) statements_.back().layout = LayoutReader(text, blanks_);
    layoutDue_ = false;
    return;
  }
  StoredStatement remark;
  remark.type = segment::Layout;
  remark.remark = textFromStored(text);
  statements_.push_back(std::move(remark));
  layoutDue_ = true;
  layoutTaken_ = false;
}

// The main expression; of a column it is stored under the name of the column's item.
void FormulaReader::findMain() {
  const auto is = [](quint16 type) {
    return [type](const StoredStatement& one) { return one.type == type; };
  };
  const auto mains = std::count_if(statements_.begin(), statements_.end(), is(segment::Main));
  if (mains > 1) throw Unreadable{"it has two main expressions"};
  if (mains == 0) {
    const auto column = std::find_if(statements_.rbegin(), statements_.rend(), is(segment::Column));
    if (column != statements_.rend()) {
      column->type = segment::Main;
      column->name.clear();
    }
  }
  for (StoredStatement& one : statements_) {
    if (one.type == segment::Main) {
      one.showSelect = select_ == ShownSelect::Always && !one.layout.hasSelect();
    } else if (one.layout.hasSelect()) {
      one.layout = {};
    }
    if (one.type == segment::Column && !isName(one.name)) throw Unreadable{"a name that no formula can have"};
    const bool bare = one.type == segment::Main || one.type == segment::Expression;
    if (!bare || one.root < 0) continue;
    const Node& root = reading_.tree.nodes[std::size_t(one.root)];
    if (root.kind == Node::Kind::Assignment && root.parentheses == 0)
      throw Unreadable{"an assignment stands where a value has to"};
  }
}

void FormulaReader::writeSource() {
  SourceWriter writer(reading_.tree, spellings_, environment_);
  for (StoredStatement& one : statements_) writer.add(one);
  reading_.source = writer.take();
  reading_.exact = writer.isExact();
  if (reading_.sureness == Sureness::Unnamed) {
    reading_.tree = {};
    return;
  }
  for (const StoredStatement& one : statements_) {
    Statement statement;
    statement.root = one.root;
    if (one.type == segment::Layout) {
      statement.kind = Statement::Kind::Remark;
      statement.remark = one.remark;
    } else if (one.layout.hasSelect() || one.showSelect) {
      statement.kind = Statement::Kind::Select;
    }
    if (segment::hasName(one.type)) {
      Node assignment;
      assignment.kind = Node::Kind::Assignment;
      assignment.modifier = segment::modifierOf(one.type);
      assignment.name = one.name;
      assignment.children = {one.root};
      reading_.tree.nodes.push_back(std::move(assignment));
      statement.root = int(reading_.tree.nodes.size()) - 1;
    }
    reading_.tree.statements.push_back(std::move(statement));
  }
}

QString FormulaReader::nameOf(const Spelling& spelling) const {
  switch (spelling.kind) {
    case Spelling::Kind::Function: {
      const FunctionCode* const row = findFunctionCode(quint16(spelling.number));
      return row ? QString::fromLatin1(row->name) : unnamedFunction(spelling.number);
    }
    case Spelling::Kind::Keyword: {
      const KeywordCode* const row = findKeyword(spelling.number);
      return row ? u"[%1]"_s.arg(QLatin1StringView(row->name)) : unnamedKeyword(spelling.number);
    }
    case Spelling::Kind::None:
      break;
  }
  const OperatorCode* const row = findOperator(quint8(spelling.number));
  return row ? signOf(row->op).toString() : u"FIELD :="_s;
}

void FormulaReader::describe() {
  reading_.sureness = code_.sureness();
  for (const Spelling& spelling : code_.unproven()) reading_.unproven += nameOf(spelling);
  if (reading_.sureness != Sureness::Unnamed) return;
  QStringList nameless;
  for (const Spelling& spelling : code_.unproven()) {
    if (spelling.kind == Spelling::Kind::Function && !findFunctionCode(quint16(spelling.number)))
      nameless += u"function %1"_s.arg(QString::number(spelling.number, 16).toUpper());
    if (spelling.kind == Spelling::Kind::Keyword && !findKeyword(spelling.number))
      nameless += u"keyword %1"_s.arg(spelling.number);
  }
  reading_.problem = u"it uses codes without a known name: "_s + nameless.join(u", "_s);
}

CompiledReading FormulaReader::read(QByteArrayView bytes) {
  const auto refuse = [this](const char* reason, qsizetype at) {
    reading_ = {};
    reading_.problem = u"%1 (byte %2)"_s.arg(QLatin1StringView(reason)).arg(at);
  };
  try {
    readStatements(bytes);
    if (reading_.state == CompiledReading::State::Hidden) {
      reading_.problem = faultText(fault::Hidden);
      return std::move(reading_);
    }
    findMain();
    describe();
    writeSource();
  } catch (const Unreadable& unreadable) {
    refuse(unreadable.reason, unreadable.at);
  } catch (const Fault&) {
    refuse("a text is too long", 0);
  }
  return std::move(reading_);
}

}  // namespace

CompiledReading readCompiled(QByteArrayView bytes, const Environment& environment, ShownSelect select) {
  return FormulaReader(environment, select).read(bytes);
}

qsizetype compiledSize(QByteArrayView bytes) {
  ByteReader reader(bytes);
  const qsizetype size = reader.u16();
  return !reader.failed() && size > 0 && size <= bytes.size() ? size : 0;
}

}  // namespace lens::formula
