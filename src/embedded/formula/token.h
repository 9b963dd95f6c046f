// The words and signs of a formula, each with its place in the source.
#pragma once

#include <QStringView>
#include <vector>

#include "embedded/formula/faults.h"
#include "embedded/formula/tree.h"

namespace lens::formula {

struct Token {
  enum class Kind : quint8 {
    End,  // always the last one, at the end of the source
    Name,
    Function,  // with its @
    Number,
    Text,      // with its delimiters
    Constant,  // [...] that is no subscript, with its brackets
    LeftParenthesis,
    RightParenthesis,
    LeftBracket,  // of a subscript
    RightBracket,
    Semicolon,
    Assign,
    Operator,
    Select,
    Remark,
    Field,
    Default,
    Environment,
    Fault,  // what is no part of the language
  };
  Kind kind = Kind::End;
  Operator op = Operator::Not;  // Operator: + and - as Add and Subtract, ! as Not
  FaultCode fault = 0;          // Fault
  int offset = 0, length = 0;   // characters of the source

  int end() const { return offset + length; }
  bool isPrefix() const {
    return kind == Kind::Operator && (op == Operator::Add || op == Operator::Subtract || op == Operator::Not);
  }
  bool isReserved() const { return kind >= Kind::Select && kind <= Kind::Environment; }
  bool startsValue() const {
    return (kind >= Kind::Name && kind <= Kind::LeftParenthesis) || kind == Kind::LeftBracket;
  }
};

// The whole source in one pass. Nothing is refused here: what cannot be read is a token too, so that the
// parser reports the first mistake in reading order.
std::vector<Token> readTokens(QStringView source);

// What a text token says, without delimiters and with its escapes resolved.
QString unquoted(QStringView token);

// Whether the text between brackets is a keyword rather than a time: a letter, then letters, digits, _, $
// and -.
bool isKeyword(QStringView word);

// Whether the text is one name, and no reserved word.
bool isName(QStringView text);

// As parse in tree.h; the tokens of a source without a mistake are handed out too.
Parsed parse(QStringView source, const Environment& environment, std::vector<Token>* tokens);

}  // namespace lens::formula
