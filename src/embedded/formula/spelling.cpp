#include "embedded/formula/spelling.h"

#include "embedded/formula/time_text.h"

namespace lens::formula {

QStringView signOf(Operator op) {
  switch (op) {
    case Operator::Concatenate:
      return u":";
    case Operator::Plus:
    case Operator::Add:
      return u"+";
    case Operator::Minus:
    case Operator::Subtract:
      return u"-";
    case Operator::Not:
      return u"!";
    case Operator::Multiply:
      return u"*";
    case Operator::Divide:
      return u"/";
    case Operator::PermutedMultiply:
      return u"**";
    case Operator::PermutedDivide:
      return u"*/";
    case Operator::PermutedAdd:
      return u"*+";
    case Operator::PermutedSubtract:
      return u"*-";
    case Operator::Equal:
      return u"=";
    case Operator::NotEqual:
      return u"!=";
    case Operator::Less:
      return u"<";
    case Operator::Greater:
      return u">";
    case Operator::LessEqual:
      return u"<=";
    case Operator::GreaterEqual:
      return u">=";
    case Operator::PermutedEqual:
      return u"*=";
    case Operator::PermutedNotEqual:
      return u"*!=";
    case Operator::PermutedLess:
      return u"*<";
    case Operator::PermutedGreater:
      return u"*>";
    case Operator::PermutedLessEqual:
      return u"*<=";
    case Operator::PermutedGreaterEqual:
      return u"*>=";
    case Operator::And:
      return u"&";
    case Operator::Or:
      return u"|";
  }
  return {};
}

QStringView modifierWord(Node::Modifier modifier) {
  switch (modifier) {
    case Node::Modifier::Field:
      return u"FIELD ";
    case Node::Modifier::Default:
      return u"DEFAULT ";
    case Node::Modifier::Environment:
      return u"ENVIRONMENT ";
    case Node::Modifier::None:
      break;
  }
  return {};
}

void appendQuoted(QString& source, QStringView text) {
  source += u'"';
  for (const QChar c : text) {
    if (c == u'"' || c == u'\\') source += u'\\';
    source += c;
  }
  source += u'"';
}

QString timeConstant(const Value& value, const Environment& environment, bool* exact) {
  const TimeReading reading{environment.region(), environment.zone(), environment.now()};
  QString shown;
  for (const TimeFormat::Zone zone : {TimeFormat::Zone::Foreign, TimeFormat::Zone::Always}) {
    TimeFormat format;
    format.zone = zone;
    const QString text = value.type() == Type::TimeRange ? rangeText(value.range(), format, reading)
                                                         : timeText(value.time(), format, reading);
    if (shown.isEmpty()) shown = text;
    Value back;
    if (!readTime(text, reading, back) || !back.identical(value)) continue;
    return u'[' + text + u']';
  }
  if (exact) *exact = false;
  return u'[' + shown + u']';
}

}  // namespace lens::formula
