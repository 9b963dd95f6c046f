#include "embedded/formula/functions/number_text.h"

#include <QVarLengthArray>
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace lens::formula {
namespace {

constexpr int kDigits = 15;          // what a double keeps of every number
constexpr int kExponentDigits = 11;  // shown in E notation
constexpr int kLeastExponent = -4;   // below it, E notation
constexpr int kMaxDecimals = 30;
constexpr int kDefaultDecimals = 2;
constexpr double kWholeLimit = 1e15;

// A number as people see it: its digits, and the power of ten of the first. What is shown is rounded from
// these, halves up, so that 1.005 with two decimals is 1.01.
struct Decimal {
  char digits[kDigits];
  int count = 0;  // 0 is zero
  int exponent = 0;

  explicit Decimal(double number) {  // not negative
    char buffer[40];
    const char* const end =
        std::to_chars(buffer, buffer + sizeof buffer, number, std::chars_format::scientific, kDigits - 1).ptr;
    digits[count++] = buffer[0];
    while (count < kDigits) digits[count] = buffer[count + 1], ++count;
    const char* power = buffer + kDigits + 2;
    if (*power == '+') ++power;
    std::from_chars(power, end, exponent);
    dropZeros();
  }
  void roundTo(int wanted) {
    if (wanted >= count) return;
    const bool up = wanted >= 0 && wanted < kDigits && digits[wanted] >= '5';
    count = qMax(0, wanted);
    if (up) addOne();
    dropZeros();
  }
  char digit(int place) const { return place >= 0 && place < count ? digits[place] : '0'; }

 private:
  void addOne() {
    while (count > 0 && digits[count - 1] == '9') --count;
    if (count > 0) {
      ++digits[count - 1];
      return;
    }
    digits[count++] = '1';
    ++exponent;
  }
  void dropZeros() {
    while (count > 0 && digits[count - 1] == '0') --count;
    if (count == 0) exponent = 0;
  }
};

// A number put together unit by unit.
class Writer {
 public:
  explicit Writer(const Region& region) : region_(region) {}
  void put(char16_t unit) { units_.append(unit); }
  void put(QStringView text) { units_.append(text.utf16(), text.size()); }
  void put(std::string_view ascii) {
    for (const char c : ascii) units_.append(char16_t(c));
  }
  // The digits in front of the mark; a zero where there are none.
  void putWhole(const Decimal& decimal, bool thousands) {
    const bool marked = thousands && !region_.thousandsMark.isNull();
    for (int left = qMax(0, decimal.exponent); left >= 0; --left) {
      put(char16_t(decimal.digit(decimal.exponent - left)));
      if (marked && left > 0 && left % 3 == 0) put(region_.thousandsMark.unicode());
    }
  }
  // The mark and that many digits, from a place on.
  void putDecimals(const Decimal& decimal, int place, int decimals) {
    if (decimals <= 0) return;
    put(region_.decimalMark.unicode());
    for (; decimals > 0; --decimals) put(char16_t(decimal.digit(place++)));
  }
  void putExponent(int exponent) {
    put(u'E');
    put(exponent < 0 ? u'-' : u'+');
    exponent = std::abs(exponent);
    if (exponent < 10) put(u'0');
    char buffer[8];
    put(std::string_view(buffer, size_t(std::to_chars(buffer, buffer + 8, exponent).ptr - buffer)));
  }
  const Region& region() const { return region_; }
  QStringView view() const { return QStringView(units_.constData(), units_.size()); }

 private:
  const Region& region_;
  QVarLengthArray<char16_t, 96> units_;
};

bool isPlainNumber(Writer& out, double number) {
  if (std::isfinite(number)) return true;
  out.put(std::isnan(number) ? u"NAN" : u"INF");
  return false;
}

// One digit, the mark and decimals; -1: as many as there are.
void putScientific(Writer& out, const Decimal& decimal, int decimals) {
  out.put(char16_t(decimal.digit(0)));
  out.putDecimals(decimal, 1, decimals < 0 ? decimal.count - 1 : decimals);
  out.putExponent(decimal.exponent);
}

void putPlain(Writer& out, const Decimal& decimal, int decimals, bool thousands) {
  if (decimal.exponent >= 0 || decimals <= 0 || out.region().leadingZero) out.putWhole(decimal, thousands);
  out.putDecimals(decimal, decimal.exponent + 1, decimals);
}

void putGeneral(Writer& out, Decimal decimal, int precision, bool thousands) {
  decimal.roundTo(precision);
  if (decimal.exponent < kDigits && decimal.exponent >= kLeastExponent)
    return putPlain(out, decimal, decimal.count - 1 - decimal.exponent, thousands);
  decimal.roundTo(kExponentDigits);
  putScientific(out, decimal, -1);
}

void putFixed(Writer& out, Decimal decimal, int decimals, bool thousands) {
  decimal.roundTo(decimal.exponent + 1 + decimals);
  putPlain(out, decimal, decimals, thousands);
}

// Whole numbers are most numbers; they need no rounding and no exponent.
bool putWholeNumber(Writer& out, double number) {
  if (!(std::fabs(number) < kWholeLimit)) return false;
  const qint64 whole = qint64(number);
  if (double(whole) != number) return false;
  char buffer[24];
  out.put(std::string_view(buffer, size_t(std::to_chars(buffer, buffer + 24, whole).ptr - buffer)));
  return true;
}

void putNumber(Writer& out, double number) {
  if (putWholeNumber(out, number) || !isPlainNumber(out, number)) return;
  if (number < 0) out.put(u'-');
  putGeneral(out, Decimal(std::fabs(number)), kDigits, false);
}

void putStyled(Writer& out, Decimal decimal, const NumberFormat& format) {
  const int decimals = format.digits < 0 ? kDefaultDecimals : qMin(format.digits, kMaxDecimals);
  switch (format.style) {
    case NumberFormat::Style::General:
      return putGeneral(out, decimal, format.digits < 0 ? kDigits : qBound(1, format.digits, kDigits),
                        format.thousands);
    case NumberFormat::Style::Scientific:
      decimal.roundTo(decimals + 1);
      return putScientific(out, decimal, decimals);
    case NumberFormat::Style::Fixed:
    case NumberFormat::Style::Currency:
      return putFixed(out, decimal, decimals, format.thousands);
  }
}

// "-0.00" is no number that anyone wants to see.
bool hasDigitsButZero(QStringView text) {
  for (const QChar c : text) {
    if (c == u'E') return false;
    if (c >= u'1' && c <= u'9') return true;
  }
  return false;
}

bool isDigit(QStringView text, qsizetype at) {
  return at < text.size() && text[at] >= u'0' && text[at] <= u'9';
}

// A mark of thousands stands between a digit and exactly three digits.
bool marksThousands(QStringView text, qsizetype at, const Region& region) {
  return text[at] == region.thousandsMark && region.thousandsMark != region.decimalMark && at > 0 &&
         isDigit(text, at - 1) && isDigit(text, at + 1) && isDigit(text, at + 2) && isDigit(text, at + 3) &&
         !isDigit(text, at + 4);
}

using Ascii = QVarLengthArray<char, 64>;

// The digits, mark and exponent from a place on, as the parser wants them; false without a digit.
bool collectNumber(QStringView text, qsizetype at, const Region& region, Ascii& ascii) {
  bool digits = false, marked = false;
  for (; at < text.size(); ++at) {
    if (isDigit(text, at)) {
      ascii.append(char(text[at].unicode()));
      digits = true;
    } else if (text[at] == region.decimalMark && !marked) {
      ascii.append('.');
      marked = true;
    } else if (marked || !marksThousands(text, at, region)) {
      break;
    }
  }
  if (!digits) return false;
  if (at >= text.size() || (text[at] != u'E' && text[at] != u'e')) return true;
  const qsizetype sign = at + 1;
  const bool hasSign = sign < text.size() && (text[sign] == u'+' || text[sign] == u'-');
  qsizetype digit = hasSign ? sign + 1 : sign;
  if (!isDigit(text, digit)) return true;
  ascii.append('e');
  if (hasSign) ascii.append(char(text[sign].unicode()));
  for (; isDigit(text, digit); ++digit) ascii.append(char(text[digit].unicode()));
  return true;
}

}  // namespace

Text numberAsText(double number, const Region& region) {
  Writer out(region);
  putNumber(out, number);
  return Text(out.view());
}

QString numberText(double number, const Region& region) {
  Writer out(region);
  putNumber(out, number);
  return out.view().toString();
}

NumberFormat readNumberFormat(QStringView letters) {
  NumberFormat format;
  bool styled = false;
  for (const QChar letter : letters) {
    const auto style = [&](NumberFormat::Style wanted) { format.style = wanted, styled = true; };
    switch (letter.toUpper().unicode()) {
      case u'G':
        style(NumberFormat::Style::General);
        break;
      case u'F':
        style(NumberFormat::Style::Fixed);
        break;
      case u'S':
        style(NumberFormat::Style::Scientific);
        break;
      case u'C':
        style(NumberFormat::Style::Currency);
        break;
      case u',':
        format.thousands = true;
        break;
      case u'%':
        format.percent = true;
        break;
      case u'(':
      case u')':
        format.parentheses = true;
        break;
      default:
        if (letter >= u'0' && letter <= u'9')
          format.digits = qMin(99, qMax(0, format.digits) * 10 + (letter.unicode() - u'0'));
    }
  }
  // Decimals alone say that they are wanted.
  if (!styled && format.digits >= 0) format.style = NumberFormat::Style::Fixed;
  return format;
}

QString numberText(double number, const NumberFormat& format, const Region& region) {
  if (format.percent) number *= 100;
  Writer digits(region);
  if (!isPlainNumber(digits, number)) return digits.view().toString();
  putStyled(digits, Decimal(std::fabs(number)), format);
  const bool negative = number < 0 && hasDigitsButZero(digits.view());
  const bool currency = format.style == NumberFormat::Style::Currency;

  Writer out(region);
  if (negative) out.put(format.parentheses ? u'(' : u'-');
  if (currency && !region.currencyBehind) out.put(QStringView(region.currency));
  out.put(digits.view());
  if (currency && region.currencyBehind) {
    out.put(u' ');
    out.put(QStringView(region.currency));
  }
  if (format.percent) out.put(u'%');
  if (negative && format.parentheses) out.put(u')');
  return out.view().toString();
}

bool readNumber(QStringView text, const Region& region, double& number) {
  qsizetype at = 0;
  const auto passBlanks = [&] {
    while (at < text.size() && text[at].isSpace()) ++at;
  };
  bool negative = false, hasSign = false;
  const auto passSign = [&] {
    if (hasSign || at >= text.size() || (text[at] != u'-' && text[at] != u'+')) return;
    negative = text[at++] == u'-';
    hasSign = true;
  };
  passBlanks();
  passSign();
  if (!region.currency.isEmpty() && text.sliced(at).startsWith(region.currency)) {
    at += region.currency.size();
    passBlanks();
    passSign();
  }
  Ascii ascii;
  if (!collectNumber(text, at, region, ascii)) return false;
  double value = 0;
  const char* const end = ascii.constData() + ascii.size();
  const std::from_chars_result read = std::from_chars(ascii.constData(), end, value);
  if (read.ec == std::errc::result_out_of_range) {
    // Too small is nothing; too large is no number.
    const char* const e = std::find(ascii.constData(), end, 'e');
    if (e == end || e + 1 == end || e[1] != '-') return false;
    value = 0;
  }
  number = negative ? -value : value;
  return true;
}

}  // namespace lens::formula
