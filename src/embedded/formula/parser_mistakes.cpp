// Which mistake it is when the parser cannot go on, and what of the source it marks.
#include "embedded/formula/parser.h"

namespace lens::formula {

// A value should stand here and does not.
void Parser::refuseMissingValue() const {
  const Token& found = token();
  switch (found.kind) {
    case Kind::Fault:
      refuse(found.fault, found);
    case Kind::End:
      if (place_ == Place::Subscript)
        throw Mistake{fault::UnterminatedConstant, opening_->offset, found.offset - opening_->offset};
      refuse(fault::Incomplete, found);
    case Kind::Operator:
      refuse(fault::BinaryUse, found);
    case Kind::Assign:
      refuse(fault::AssignmentNeedsName, found);
    case Kind::RightParenthesis:
      refuse(parentheses_ > 0 ? fault::InvalidStructure : fault::ExtraRightParenthesis, found);
    case Kind::RightBracket:
      refuse(brackets_ > 0 ? fault::InvalidStructure : fault::ExtraRightBracket, found);
    case Kind::Field:
    case Kind::Default:
    case Kind::Environment:
      // Behind an operator; elsewhere it begins an assignment.
      if (ahead(1).kind == Kind::Name && ahead(2).kind == Kind::Assign)
        refuse(fault::AssignmentAfterOperator, ahead(2));
      refuse(found.kind == Kind::Field ? fault::FieldNeedsName : fault::AssignmentNeedsModifier, found);
    default:
      refuse(fault::InvalidStructure, found);
  }
}

// Whether what follows a complete expression may follow it in the place where it stands.
void Parser::checkEnd(int root) const {
  const Token& found = token();
  switch (found.kind) {
    case Kind::Fault:
      refuse(found.fault, found);
    case Kind::End:
      if (place_ == Place::Statement) return;
      if (place_ == Place::Subscript)
        throw Mistake{fault::UnterminatedConstant, opening_->offset, found.offset - opening_->offset};
      refuse(fault::MissingRightParenthesis, found);
    case Kind::Semicolon:
      if (place_ == Place::Statement || place_ == Place::Arguments) return;
      refuse(place_ == Place::Group ? fault::MissingRightParenthesis : fault::InvalidStructure, found);
    case Kind::RightParenthesis:
      if (place_ == Place::Group || place_ == Place::Arguments) return;
      refuse(parentheses_ > 0 ? fault::InvalidStructure : fault::ExtraRightParenthesis, found);
    case Kind::RightBracket:
      if (place_ == Place::Subscript) return;
      refuse(brackets_ > 0 ? fault::MissingRightParenthesis : fault::ExtraRightBracket, found);
    case Kind::Operator:  // only a negation is left here
      refuse(fault::UnaryUse, found);
    default:
      break;
  }
  if (found.isReserved()) refuse(fault::MissingSemicolon, found);
  // "word name := value": the word was meant as FIELD or the like.
  const Token& before = tokens_[size_t(next_ - 1)];
  const Node& whole = tree_.nodes[size_t(root)];
  if (found.kind == Kind::Name && ahead(1).kind == Kind::Assign && whole.kind == Node::Kind::Name &&
      whole.offset == before.offset)
    refuse(fault::InvalidModifier, before);
  refuse(fault::OperatorExpected, found);
}

}  // namespace lens::formula
