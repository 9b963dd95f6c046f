#include "embedded/formula/token.h"

namespace lens::formula {
namespace {

constexpr int kMaxNameLength = 255;  // characters

struct Sign {
  char16_t text[4];
  Operator op;
};

// Longest first, so that "*<>" is never read as "*<" and ">".
constexpr Sign kSigns[] = {
    {u"*<>", Operator::PermutedNotEqual},
    {u"*!=", Operator::PermutedNotEqual},
    {u"*<=", Operator::PermutedLessEqual},
    {u"*>=", Operator::PermutedGreaterEqual},
    {u"**", Operator::PermutedMultiply},
    {u"*/", Operator::PermutedDivide},
    {u"*+", Operator::PermutedAdd},
    {u"*-", Operator::PermutedSubtract},
    {u"*=", Operator::PermutedEqual},
    {u"*<", Operator::PermutedLess},
    {u"*>", Operator::PermutedGreater},
    {u"<>", Operator::NotEqual},
    {u"><", Operator::NotEqual},
    {u"!=", Operator::NotEqual},
    {u"=!", Operator::NotEqual},
    {u"<=", Operator::LessEqual},
    {u">=", Operator::GreaterEqual},
    {u"*", Operator::Multiply},
    {u"/", Operator::Divide},
    {u"+", Operator::Add},
    {u"-", Operator::Subtract},
    {u"=", Operator::Equal},
    {u"<", Operator::Less},
    {u">", Operator::Greater},
    {u"!", Operator::Not},
    {u"&", Operator::And},
    {u"|", Operator::Or},
    {u":", Operator::Concatenate},
};

struct Reserved {
  QStringView word;
  Token::Kind kind;
};
constexpr Reserved kReserved[] = {
    {u"SELECT", Token::Kind::Select},
    {u"REM", Token::Kind::Remark},
    {u"FIELD", Token::Kind::Field},
    {u"DEFAULT", Token::Kind::Default},
    {u"ENVIRONMENT", Token::Kind::Environment},
};

bool isBlank(char16_t c) {
  return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}
bool isDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}

// Designs in use have variables that are called by one of these signs alone.
bool isStraySign(char16_t c) {
  return c == u'.' || c == u'\\' || c == u'}';
}

const Reserved* reservedWord(QStringView word) {
  for (const Reserved& reserved : kReserved)
    if (word.size() == reserved.word.size() && word.compare(reserved.word, Qt::CaseInsensitive) == 0)
      return &reserved;
  return nullptr;
}

class Lexer {
 public:
  explicit Lexer(QStringView source) : source_(source), size_(int(source.size())) {}
  std::vector<Token> read();
  bool isOneName() const;

 private:
  char16_t at(int place) const { return place < size_ ? source_[place].unicode() : u'\0'; }
  // Units of the letter at the place (two beyond the basic plane); 0 when there is none.
  int letterAt(int place) const;
  int nameUnitAt(int place) const;
  int nameEnd(int place) const;
  int dottedNameEnd(int place) const;
  bool expectsValue() const;
  void readName(int from);
  void readNumber(int from);
  void readText(int from);
  void readBracket(int from);
  void readSign(int from);
  void add(Token::Kind kind, int from, int end) { tokens_.push_back({kind, {}, 0, from, end - from}); }
  void addFault(FaultCode fault, int from, int end) {
    tokens_.push_back({Token::Kind::Fault, {}, fault, from, end - from});
  }

  QStringView source_;
  int size_;
  std::vector<Token> tokens_;
};

std::vector<Token> Lexer::read() {
  tokens_.reserve(size_t(size_ / 3 + 2));
  for (int i = 0; i < size_; i = tokens_.back().end()) {
    while (i < size_ && isBlank(at(i))) ++i;
    if (i == size_) break;
    const char16_t c = at(i);
    if (isDigit(c) || (c == u'.' && isDigit(at(i + 1))))
      readNumber(i);
    else if (c == u'@')
      add(Token::Kind::Function, i, nameEnd(i + 1));
    else if (c == u'"' || c == u'{')
      readText(i);
    else if (c == u'[')
      readBracket(i);
    else if (c == u'_' || c == u'$' || letterAt(i))
      readName(i);
    else
      readSign(i);
  }
  add(Token::Kind::End, size_, size_);
  return std::move(tokens_);
}

// Whatever lies beyond ASCII may stand in a name, but for spaces: names come in many character sets, and
// one that was read in the wrong set must not break a formula.
int Lexer::letterAt(int place) const {
  const char16_t c = at(place);
  if (c < 0x80) return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
  if (!QChar::isSurrogate(c)) return !QChar::isSpace(c);
  return QChar::isHighSurrogate(c) && QChar::isLowSurrogate(at(place + 1)) ? 2 : 0;
}

int Lexer::nameUnitAt(int place) const {
  const char16_t c = at(place);
  return isDigit(c) || c == u'_' || c == u'$' ? 1 : letterAt(place);
}

int Lexer::nameEnd(int place) const {
  while (const int units = nameUnitAt(place)) place += units;
  return place;
}

// Points stand inside names only.
int Lexer::dottedNameEnd(int place) const {
  int end = nameEnd(place);
  while (at(end) == u'.' && nameUnitAt(end + 1)) end = nameEnd(end + 1);
  return end;
}

bool Lexer::isOneName() const {
  if (size_ == 1 && isStraySign(at(0))) return true;
  const char16_t first = at(0);
  if (first != u'_' && first != u'$' && !letterAt(0)) return false;
  return size_ <= kMaxNameLength && dottedNameEnd(0) == size_ && !reservedWord(source_);
}

void Lexer::readName(int from) {
  const int end = dottedNameEnd(from);
  if (end - from > kMaxNameLength) return addFault(fault::NameTooLong, from, end);
  const Reserved* const reserved = reservedWord(source_.sliced(from, end - from));
  add(reserved ? reserved->kind : Token::Kind::Name, from, end);
}

// Whether a value may stand behind what was read so far.
bool Lexer::expectsValue() const {
  if (tokens_.empty()) return true;
  switch (tokens_.back().kind) {
    case Token::Kind::Name:
    case Token::Kind::Function:
    case Token::Kind::Number:
    case Token::Kind::Text:
    case Token::Kind::Constant:
    case Token::Kind::RightParenthesis:
    case Token::Kind::RightBracket:
    case Token::Kind::Fault:
      return false;
    default:
      return true;
  }
}

void Lexer::readNumber(int from) {
  int end = from;
  while (isDigit(at(end))) ++end;
  if (at(end) == u'.') ++end;
  while (isDigit(at(end))) ++end;
  if (at(end) == u'E' || at(end) == u'e') {
    int exponent = end + 1;
    if (at(exponent) == u'+' || at(exponent) == u'-') ++exponent;
    if (isDigit(at(exponent))) {
      end = exponent;
      while (isDigit(at(end))) ++end;
    }
  }
  add(Token::Kind::Number, from, end);
}

void Lexer::readText(int from) {
  const char16_t close = at(from) == u'"' ? u'"' : u'}';
  for (int i = from + 1; i < size_; ++i) {
    if (at(i) == u'\\')
      ++i;
    else if (at(i) == close)
      return add(Token::Kind::Text, from, i + 1);
  }
  addFault(fault::UnterminatedConstant, from, size_);
}

// Behind something that has elements a bracket picks one of them; everywhere else it opens a constant.
void Lexer::readBracket(int from) {
  if (!tokens_.empty()) {
    switch (tokens_.back().kind) {
      case Token::Kind::Name:
      case Token::Kind::Function:
      case Token::Kind::RightParenthesis:
      case Token::Kind::RightBracket:
        return add(Token::Kind::LeftBracket, from, from + 1);
      default:
        break;
    }
  }
  const qsizetype close = source_.indexOf(u']', from);
  if (close < 0)
    addFault(fault::UnterminatedConstant, from, size_);
  else
    add(Token::Kind::Constant, from, int(close) + 1);
}

void Lexer::readSign(int from) {
  switch (at(from)) {
    case u'(':
      return add(Token::Kind::LeftParenthesis, from, from + 1);
    case u')':
      return add(Token::Kind::RightParenthesis, from, from + 1);
    case u']':
      return add(Token::Kind::RightBracket, from, from + 1);
    case u';':
      return add(Token::Kind::Semicolon, from, from + 1);
    case u':':
      if (at(from + 1) == u'=') return add(Token::Kind::Assign, from, from + 2);
      break;
    default:
      break;
  }
  const QStringView rest = source_.sliced(from);
  for (const Sign& sign : kSigns) {
    if (sign.text[0] != rest[0]) continue;
    const QStringView text(sign.text);
    if (!rest.startsWith(text)) continue;
    tokens_.push_back({Token::Kind::Operator, sign.op, 0, from, int(text.size())});
    return;
  }
  if (isStraySign(at(from)) && expectsValue()) return add(Token::Kind::Name, from, from + 1);
  const bool pair = QChar::isHighSurrogate(at(from)) && QChar::isLowSurrogate(at(from + 1));
  addFault(fault::InvalidOperator, from, from + (pair ? 2 : 1));
}

}  // namespace

bool isName(QStringView text) {
  return Lexer(text).isOneName();
}

std::vector<Token> readTokens(QStringView source) {
  return Lexer(source).read();
}

QString unquoted(QStringView token) {
  const QStringView inside = token.sliced(1, token.size() - 2);
  if (!inside.contains(u'\\')) return inside.toString();
  QString text;
  text.reserve(inside.size());
  for (qsizetype i = 0; i < inside.size(); ++i) {
    if (inside[i] == u'\\') ++i;
    text += inside[i];
  }
  return text;
}

bool isKeyword(QStringView word) {
  if (word.isEmpty() || !word[0].isLetter()) return false;
  for (const QChar c : word)
    if (!c.isLetterOrNumber() && c != u'_' && c != u'$' && c != u'-') return false;
  return true;
}

}  // namespace lens::formula
