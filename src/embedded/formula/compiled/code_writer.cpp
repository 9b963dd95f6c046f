#include "embedded/formula/compiled/code_writer.h"

#include <QtEndian>
#include <algorithm>

#include "embedded/format/byte_reader.h"
#include "embedded/format/lmbcs.h"
#include "embedded/formula/compiled/codes.h"
#include "embedded/formula/compiled/segments.h"

namespace lens::formula {
namespace {

constexpr qsizetype kMostArguments = 255;
constexpr qsizetype kMostCode = 0xFFFF;

// A guess is never written: another program would compute something else.
bool isSure(Sureness sureness) {
  return sureness <= Sureness::Context;
}

// Printable ASCII, which nearly all texts are, is stored as it is.
bool isPlain(QStringView text) {
  return std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u' ' && c < u'\x7F'; });
}

quint16 operation(quint8 code, qsizetype operands) {
  return quint16(code | operands << 8);
}

}  // namespace

bool addText(QByteArray& data, QStringView text) {
  QByteArray stored;
  if (isPlain(text)) {
    stored = text.toLatin1();
  } else {
    const QString lines = text.toString().replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    stored = toLmbcs(withStoredBreaks(lines));
    if (textFromStored(stored) != lines) return false;
  }
  if (stored.size() > segment::kMostBytes) return false;
  appendCounted(data, stored);
  return true;
}

// Half a line break in a value would come back as a whole one.
void CodeWriter::text(QStringView text) {
  for (qsizetype at = text.indexOf(u'\r'); at >= 0 && fits_; at = text.indexOf(u'\r', at + 1))
    fits_ = text.sliced(at).startsWith(u"\r\n");
  counted(code::Text, text);
}

void CodeWriter::word(quint16 word) {
  appendU16(bytes_, word);
}

void CodeWriter::counted(quint16 code, QStringView text) {
  word(code);
  fits_ = addText(bytes_, text) && fits_;
}

void CodeWriter::constant(const Value& value) {
  switch (value.type()) {
    case Type::Number:
      word(code::Number);
      return appendF64(bytes_, value.number());
    case Type::Text:
      return text(value.text());
    case Type::Time:
      word(code::Time);
      return appendTimeDate(bytes_, value.time());
    case Type::Keyword: {
      const KeywordCode* const row = keywordCodeOf(value.text());
      if (!row || !isSure(row->sureness)) {
        fits_ = false;
        return;
      }
      word(code::Time);
      appendU32(bytes_, row->number);
      return appendU32(bytes_, 0);
    }
    default:
      // How a range is stored was not found.
      fits_ = false;
  }
}

void CodeWriter::setWord(qsizetype at, qsizetype value) {
  if (value > kMostCode)
    fits_ = false;
  else
    qToLittleEndian(quint16(value), bytes_.data() + at);
}

// Behind each condition a jump to where the next one begins, behind each value one to the end.
void CodeWriter::ifCall(const Node& call) {
  std::vector<qsizetype> jumps;
  qsizetype condition = -1;
  for (std::size_t i = 0; i < call.children.size(); ++i) {
    const bool isCondition = i % 2 == 0 && i + 1 < call.children.size();
    if (i % 2 == 0 && condition >= 0) setWord(condition + 4, bytes_.size() - (condition + 4));
    node(call.children[i]);
    jumps.push_back(bytes_.size());
    if (isCondition) condition = bytes_.size();
    word(isCondition ? code::JumpUnless : code::Jump);
    word(0);
    if (isCondition) word(0);
  }
  for (const qsizetype jump : jumps) setWord(jump + 2, bytes_.size() - jump);
}

void CodeWriter::call(const Node& node) {
  const FunctionCode* const row = functionCodeOf(*node.function);
  const qsizetype count = qsizetype(node.children.size());
  if (!row || !isSure(row->sureness) || count > kMostArguments) {
    fits_ = false;
    return;
  }
  if (row->code == code::If)
    ifCall(node);
  else
    for (const int child : node.children) this->node(child);
  if (row->code < code::FirstFar) return word(operation(quint8(row->code), count));
  usesFar_ = true;
  word(operation(code::Far, count));
  word(row->code);
}

void CodeWriter::node(int index) {
  // Everything there is, is written into one segment: beyond it nothing is worth the while.
  if (bytes_.size() > kMostCode) fits_ = false;
  if (!fits_) return;
  const Node& node = tree_.nodes[std::size_t(index)];
  switch (node.kind) {
    case Node::Kind::Constant:
      constant(node.constant);
      break;
    case Node::Kind::Name:
      counted(code::Name, node.name);
      break;
    case Node::Kind::Chain:
      this->node(node.children.front());
      for (std::size_t i = 1; i < node.children.size(); ++i) {
        this->node(node.children[i]);
        const OperatorCode& row = operatorCodeOf(node.operators[i - 1]);
        fits_ = fits_ && isSure(row.sureness);
        word(operation(row.code, 2));
      }
      break;
    case Node::Kind::Unary: {
      this->node(node.children.front());
      const OperatorCode& row = operatorCodeOf(node.operators.front());
      fits_ = fits_ && isSure(row.sureness);
      word(operation(row.code, 1));
      break;
    }
    case Node::Kind::Subscript:
      for (const int child : node.children) this->node(child);
      fits_ = fits_ && isSure(kSubscriptSureness);
      word(operation(code::Subscript, 2));
      break;
    case Node::Kind::Call:
      call(node);
      break;
    case Node::Kind::Assignment: {
      const bool field = node.modifier == Node::Modifier::Field;
      // The others stand at the beginning of a statement only.
      if (!field && node.modifier != Node::Modifier::None) fits_ = false;
      counted(code::Name, node.name);
      this->node(node.children.front());
      fits_ = fits_ && isSure(field ? kAssignFieldSureness : kAssignSureness);
      word(operation(field ? code::AssignField : code::Assign, 2));
      break;
    }
  }
  for (int i = 0; i < node.parentheses; ++i) word(code::Parentheses);
}

bool CodeWriter::write(int root) {
  node(root);
  word(code::End);
  return fits_ && bytes_.size() <= kMostCode;
}

}  // namespace lens::formula
