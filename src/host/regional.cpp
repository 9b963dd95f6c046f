#include "host/regional.h"

#include <QRegularExpression>
#include <QVarLengthArray>

#include "notes/literals.h"

namespace lens {
namespace {

// Marks that turn the direction of writing: they are seen by no reader of a number.
bool isDirectionMark(char32_t c) {
  return c == 0x200E || c == 0x200F || c == 0x061C;
}

// Later locale data puts narrow and no-break blanks where a person types a plain one.
QString plainBlanks(QString text) {
  for (QChar& c : text)
    if (c == u'\u00A0' || c == u'\u202F' || c == u'\u2009') c = u' ';
  return text;
}

// As readers compare: plain blanks, digits of every script as 0 to 9, small letters, no marks of direction.
QString plain(QStringView text) {
  QString result;
  result.reserve(text.size());
  for (const char32_t c : plainBlanks(text.toString()).toUcs4()) {
    if (isDirectionMark(c)) continue;
    if (const int digit = QChar::digitValue(c); digit >= 0 && digit <= 9)
      result += QChar(u'0' + digit);
    else
      result += QChar::fromUcs4(QChar::toCaseFolded(c));
  }
  return result;
}

// Day, month and year in the region's order, the year with four digits, all of it one word: the first
// blank of a date-and-time text parts date and time.
QString dateFormatOf(const QLocale& locale) {
  if (locale.language() == QLocale::C) return u"MM/dd/yyyy"_s;
  QString format = plainBlanks(locale.dateFormat(QLocale::ShortFormat));
  format.remove(u' ');
  static const QRegularExpression touching(u"([dMy])(?!\\1)[dMy]"_s);
  if (format.contains(u"MMM") || touching.match(format).hasMatch()) return u"yyyy-MM-dd"_s;
  if (!format.contains(u"yyyy")) format.replace(u"yy"_s, u"yyyy"_s);
  if (!format.contains(u"yyyy")) format.replace(u"y"_s, u"yyyy"_s);
  return format;
}

// The short time format lacks seconds; they follow the minutes behind the same separator.
QString withSeconds(QString format) {
  if (format.contains(u's')) return format;
  const qsizetype minutes = format.indexOf(u"mm");
  if (minutes < 0) return u"HH:mm:ss"_s;
  const QString separator =
      minutes > 0 && !format[minutes - 1].isLetter() ? QString(format[minutes - 1]) : u":"_s;
  return format.insert(minutes + 2, separator + u"ss");
}

bool isEndBlank(QChar c) {
  return c == u' ' || c == u'\r' || c == u'\n';
}

QStringView withoutEndBlanks(QStringView text) {
  while (!text.isEmpty() && isEndBlank(text.front())) text = text.mid(1);
  while (!text.isEmpty() && isEndBlank(text.back())) text.chop(1);
  return text;
}

// A year that was typed with two digits.
int fullYear(int year, bool twoDigits) {
  return twoDigits ? (year < 50 ? 2000 + year : 1900 + year) : year;
}

// The letters of the format in their order, each once: "dMy".
QString orderOf(const QString& dateFormat) {
  QString order;
  for (const QChar c : dateFormat)
    if (QStringView(u"dMy").contains(c) && !order.contains(c)) order += c;
  return order;
}

// A time format as Qt has them: letters outside of quotes are fields, everything else is written as it
// stands.
struct TimeFormat {
  QStringList literals;    // before, between and behind the fields, as readers compare them
  bool isKnown = true;     // no field that Qt would write as its letter
  bool hasHalves = false;  // forenoon and afternoon
};
TimeFormat timeFormatOf(const QString& format) {
  TimeFormat parts;
  QString literal;
  const auto endLiteral = [&] {
    if (const QString found = plain(literal).trimmed(); !found.isEmpty()) parts.literals.append(found);
    literal.clear();
  };
  bool quoted = false;
  for (const QChar c : format) {
    if (c == u'\'') {
      quoted = !quoted;
    } else if (quoted || !((c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'))) {
      literal += c;
    } else {
      endLiteral();
      parts.isKnown = parts.isKnown && QStringView(u"hHmsAaPp").contains(c);
      parts.hasHalves = parts.hasHalves || c == u'A' || c == u'a';
    }
  }
  endLiteral();
  return parts;
}

// A text as numbers and what stands between them: one more text than there are numbers.
struct Numbers {
  QVarLengthArray<QStringView, 8> digits;
  QVarLengthArray<QStringView, 8> between;
};
Numbers numbersOf(QStringView text) {
  const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
  Numbers numbers;
  qsizetype at = 0;
  for (;;) {
    qsizetype end = at;
    while (end < text.size() && !isDigit(text[end])) ++end;
    numbers.between.append(text.sliced(at, end - at));
    if (end == text.size()) return numbers;
    at = end;
    while (end < text.size() && isDigit(text[end])) ++end;
    numbers.digits.append(text.sliced(at, end - at));
    at = end;
  }
}

// Reads the three numbers of a date in the region's order; four digits in front are a year in every region.
QDate readDate(QStringView text, const QString& regionalOrder) {
  const Numbers numbers = numbersOf(text);
  if (numbers.digits.size() != 3 || !numbers.between[0].isEmpty()) return {};
  for (int part = 1; part <= 3; ++part) {
    // A colon is a clock's; it parts no date in any region.
    if (numbers.between[part].size() > 3 || numbers.between[part].contains(u':')) return {};
    if (part < 3 && numbers.between[part].isEmpty()) return {};
  }
  const bool yearFirst = numbers.digits[0].size() == 4 && regionalOrder[0] != u'y';
  const QStringView order = yearFirst ? QStringView(u"yMd") : regionalOrder;
  int day = 0, month = 0, year = 0;
  for (int part = 0; part < 3; ++part) {
    const QStringView digits = numbers.digits[part];
    if (digits.size() > 4) return {};
    if (order[part] == u'y')
      year = fullYear(digits.toInt(), digits.size() <= 2);
    else
      (order[part] == u'd' ? day : month) = digits.toInt();
  }
  return QDate(year, month, day);
}

// Takes a word off one of the ends of the text; blanks around it go too.
bool takeWord(QStringView& text, QStringView word) {
  if (word.isEmpty()) return false;
  if (text.startsWith(word))
    text = text.sliced(word.size()).trimmed();
  else if (text.endsWith(word))
    text = text.chopped(word.size()).trimmed();
  else
    return false;
  return true;
}

}  // namespace

Regional::Regional(const QLocale& locale)
    : locale_(locale),
      dateFormat_(dateFormatOf(locale)),
      timeFormat_(plainBlanks(withSeconds(locale.timeFormat(QLocale::ShortFormat)))),
      dateOrder_(orderOf(dateFormat_)) {
  const auto half = [&](int hour) { return plain(locale_.toString(QTime(hour, 0), u"AP"_s)).trimmed(); };
  forenoon_ = half(1);
  afternoon_ = half(13);
  TimeFormat parts = timeFormatOf(timeFormat_);
  // Halves of the day that cannot be told apart would come back as the wrong one.
  if (!parts.isKnown || (parts.hasHalves && (forenoon_.isEmpty() || forenoon_ == afternoon_))) {
    timeFormat_ = u"HH:mm:ss"_s;
    parts = timeFormatOf(timeFormat_);
  }
  timeLiterals_ = parts.literals << u":"_s;
  if (dateOrder_.size() != 3) {
    dateFormat_ = u"yyyy-MM-dd"_s;
    dateOrder_ = u"yMd"_s;
  }
}

QString Regional::timeText(const QTime& time) const {
  return plainBlanks(locale_.toString(time, timeFormat_));
}

QString Regional::text(const DateTime& moment) const {
  if (!moment.date.isValid()) return moment.time.isValid() ? timeText(moment.time) : QString();
  const QString date = plainBlanks(locale_.toString(moment.date, dateFormat_));
  if (!moment.time.isValid() || moment.time == QTime(0, 0)) return date;
  return date + u' ' + timeText(moment.time);
}

QString Regional::stampText(const QDateTime& moment) const {
  return text(DateTime{moment.date(), moment.time()});
}

QTime Regional::readTime(QStringView text, const QStringList& literals) const {
  // The longer word first: the shorter one may be its beginning or its end.
  const bool longAfternoon = afternoon_.size() >= forenoon_.size();
  const bool longFirst = takeWord(text, longAfternoon ? afternoon_ : forenoon_);
  const bool shortThen = !longFirst && takeWord(text, longAfternoon ? forenoon_ : afternoon_);
  bool isAfternoon = longFirst == longAfternoon, hasHalf = longFirst || shortThen;
  if (!hasHalf) {
    isAfternoon = takeWord(text, u"pm");
    hasHalf = isAfternoon || takeWord(text, u"am");
  }
  const Numbers numbers = numbersOf(text);
  const qsizetype count = numbers.digits.size();
  if (count < 2 || count > 3 || numbers.digits[0].size() > 2) return {};
  for (qsizetype part = 0; part <= count; ++part) {
    const QStringView literal = numbers.between[part].trimmed();
    const bool isOutside = part == 0 || part == count;
    const bool isBlank = literal.isEmpty() && (isOutside || !numbers.between[part].isEmpty());
    if (!isBlank && !literals.contains(literal)) return {};
    // Behind a colon one digit is enough, as some regions write it; elsewhere it would be a date's.
    const qsizetype fewest = literal == u":" ? 1 : 2;
    if (part > 0 && part < count && (numbers.digits[part].size() < fewest || numbers.digits[part].size() > 2))
      return {};
  }
  int hour = numbers.digits[0].toInt();
  if (hasHalf) {
    if (hour < 1 || hour > 12) return {};
    hour = hour % 12 + (isAfternoon ? 12 : 0);
  }
  return QTime(hour, numbers.digits[1].toInt(), count == 3 ? numbers.digits[2].toInt() : 0);
}

DateTime Regional::dateTime(QStringView raw) const {
  const QString written = plain(withoutEndBlanks(raw));
  const QStringView text = written;
  // What the region writes as a time is one, also where a date looks like it. What a person types may be a
  // date as well, and that comes first then: "21.11.49".
  if (const QTime time = readTime(text, timeLiterals_); time.isValid()) return {QDate(), time};
  if (const QDate date = readDate(text, dateOrder_); date.isValid()) return {date, QTime()};
  const QStringList typedLiterals = timeLiterals_ + QStringList{u"."_s};
  if (const QTime time = readTime(text, typedLiterals); time.isValid()) return {QDate(), time};
  // A date may hold blanks itself, and so may a time: try each blank as the border between the two.
  for (qsizetype blank = text.indexOf(u' '); blank > 0; blank = text.indexOf(u' ', blank + 1)) {
    const QDate date = readDate(text.first(blank), dateOrder_);
    if (!date.isValid()) continue;
    if (const QTime time = readTime(text.sliced(blank + 1), typedLiterals); time.isValid())
      return {date, time};
  }
  throw RuntimeError(err::TypeMismatch);
}

QString Regional::plainText(const DateTime& moment) const {
  QString date;
  if (moment.date.isValid()) {
    const QString year = QString::number(moment.date.year()).rightJustified(4, u'0');
    for (const QChar part : dateOrder_) {
      if (!date.isEmpty()) date += u'/';
      date += part == u'y'   ? year
              : part == u'M' ? QString::number(moment.date.month()).rightJustified(2, u'0')
                             : QString::number(moment.date.day()).rightJustified(2, u'0');
    }
    if (!moment.time.isValid() || moment.time == QTime(0, 0)) return date;
    date += u' ';
  }
  return moment.time.isValid() ? date + moment.time.toString(u"HH:mm:ss"_s) : date;
}

QString textOf(const Value& value, const Regional& regional) {
  if (value.kind() == Value::Kind::DateTime) return regional.text(value.dateTime());
  return value.text();
}

}  // namespace lens
