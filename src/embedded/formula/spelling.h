// How the pieces of a formula are written, for everything that makes source.
#pragma once

#include "embedded/formula/tree.h"

namespace lens::formula {

// "*+", "!="; a sign in front of a value looks as the same sign between two.
QStringView signOf(Operator op);
// "FIELD " and the like, with its blank; "" for none.
QStringView modifierWord(Node::Modifier modifier);
// The text between quotes, with a backslash before quotes and backslashes inside.
void appendQuoted(QString& source, QStringView text);
// A time or range between brackets, in the order of the environment's region. A zone is named only where
// the time would not read back without it. Exact is set to false when it does not read back at all, such as
// a time with hundredths of a second.
QString timeConstant(const Value& value, const Environment& environment, bool* exact = nullptr);

}  // namespace lens::formula
