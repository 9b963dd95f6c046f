#include "embedded/formula/compiled/source_writer.h"

#include "embedded/formula/compiled/segments.h"
#include "embedded/formula/spelling.h"

namespace lens::formula {
namespace {

// What would be read as one word, were there nothing between the two characters.
bool joinsName(char16_t c) {
  return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_' ||
         c == u'$' || c == u'.' || c >= 0x80;
}

bool joinsSign(QStringView before, char16_t behind) {
  if (behind == u'+' || behind == u'-') return before == u"*";
  return behind == u'!' && before == u"=";
}

// Whole numbers in digits, as people write them; others in the shortest form that reads back as the same.
QString numberText(double number) {
  constexpr double kPlain = 1e15;
  if (number < kPlain && number == double(qint64(number))) return QString::number(qint64(number));
  return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

}  // namespace

QString unnamedFunction(quint32 code) {
  return u"@Function_%1"_s.arg(QString::number(code, 16).toUpper().rightJustified(3, u'0'));
}

QString unnamedKeyword(quint32 number) {
  return u"[#%1]"_s.arg(number);
}

// --- Words ---------------------------------------------------------------------------------------------

// White space that must be there whatever the layout says.
void SourceWriter::separate(char16_t first) {
  if (source_.isEmpty()) return;
  const QStringView before = QStringView(source_).sliced(wordStart_);
  if ((joinsName(before.back().unicode()) && joinsName(first)) || joinsSign(before, first)) source_ += u' ';
  wordStart_ = source_.size();
}

// What stands before the next word.
void SourceWriter::place() {
  if (blankDue_) source_ += u' ';
  blankDue_ = false;
  layout_->before(word_++, source_);
}

void SourceWriter::word(QStringView text) {
  place();
  separate(text[0].unicode());
  source_ += text;
}

void SourceWriter::word(QLatin1StringView text) {
  place();
  separate(quint8(text[0].toLatin1()));
  source_ += text;
}

void SourceWriter::text(QStringView text) {
  place();
  appendQuoted(source_, text);
}

void SourceWriter::remark(QStringView text) {
  place();
  source_ += u'{';
  for (const QChar c : text) {
    if (c == u'}' || c == u'\\') source_ += u'\\';
    source_ += c;
  }
  source_ += u'}';
}

void SourceWriter::modifier(Node::Modifier modifier) {
  if (modifier == Node::Modifier::None) return;
  word(modifierWord(modifier).trimmed());
  blank();
}

// --- Expressions ---------------------------------------------------------------------------------------

void SourceWriter::expression(int index) {
  const int pairs =
      tree_.nodes[std::size_t(index)].parentheses + (spellings_[std::size_t(index)].addParentheses ? 1 : 0);
  for (int i = 0; i < pairs; ++i) word(u"(");
  plain(index);
  for (int i = 0; i < pairs; ++i) word(u")");
}

void SourceWriter::plain(int index) {
  const Node& node = tree_.nodes[std::size_t(index)];
  switch (node.kind) {
    case Node::Kind::Constant:
      return constant(index);
    case Node::Kind::Name:
      return word(node.name);
    case Node::Kind::Chain:
      return chain(node);
    case Node::Kind::Unary:
      word(signOf(node.operators.front()));
      return expression(node.children.front());
    case Node::Kind::Subscript:
      expression(node.children.front());
      word(u"[");
      expression(node.children.back());
      return word(u"]");
    case Node::Kind::Call:
      return call(index);
    case Node::Kind::Assignment:
      modifier(node.modifier);
      word(node.name);
      blank();
      word(u":=");
      blank();
      return expression(node.children.front());
  }
}

void SourceWriter::constant(int index) {
  const Value& value = tree_.nodes[std::size_t(index)].constant;
  if (value.isNumber()) return word(numberText(value.number()));
  if (value.isText()) return text(value.text());
  if (value.isTime()) return word(timeConstant(value, environment_, &exact_));
  const quint32 number = spellings_[std::size_t(index)].number;
  const KeywordCode* const row = findKeyword(number);
  if (!row) return word(unnamedKeyword(number));
  word(u"[");
  source_ += QLatin1StringView(row->name);
  source_ += u']';
}

void SourceWriter::chain(const Node& node) {
  expression(node.children.front());
  for (std::size_t i = 1; i < node.children.size(); ++i) {
    blank();
    word(signOf(node.operators[i - 1]));
    blank();
    expression(node.children[i]);
  }
}

void SourceWriter::call(int index) {
  const Node& node = tree_.nodes[std::size_t(index)];
  const quint32 code = spellings_[std::size_t(index)].number;
  const FunctionCode* const row = findFunctionCode(quint16(code));
  if (row)
    word(QLatin1StringView(row->name));
  else
    word(unnamedFunction(code));
  if (node.children.empty()) return;
  word(u"(");
  for (std::size_t i = 0; i < node.children.size(); ++i) {
    if (i > 0) {
      word(u";");
      blank();
    }
    expression(node.children[i]);
  }
  word(u")");
}

// --- Statements ----------------------------------------------------------------------------------------

bool SourceWriter::isOneWord(const StoredStatement& statement) const {
  if (statement.root < 0 || !statement.name.isEmpty() || statement.showSelect) return false;
  const Node& root = tree_.nodes[std::size_t(statement.root)];
  return root.parentheses == 0 && (root.kind == Node::Kind::Constant || root.kind == Node::Kind::Name ||
                                   (root.kind == Node::Kind::Call && root.children.empty()));
}

void SourceWriter::add(StoredStatement& statement) {
  layout_ = &statement.layout;
  word_ = 0;
  blankDue_ = false;
  if (!source_.isEmpty()) {
    source_ += u';';
    // A single word without a layout had nothing before it; of others it is not known.
    if (!statement.layout.isKnown() && !isOneWord(statement)) source_ += u'\n';
  }
  if (statement.type == segment::Layout) {
    word(u"REM");
    blank();
    return remark(statement.remark);
  }
  if (statement.layout.hasSelect()) {
    word(u"SELECT");
  } else if (statement.showSelect) {
    source_ += u"SELECT ";
  }
  if (!statement.name.isEmpty()) {
    modifier(segment::modifierOf(statement.type));
    word(statement.name);
    blank();
    word(u":=");
    blank();
  }
  expression(statement.root);
}

}  // namespace lens::formula
