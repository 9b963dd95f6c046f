#include "host/regional.h"

#include <QRegularExpression>

#include "notes/literals.h"

namespace lens {
namespace {

// Later locale data puts narrow and no-break blanks where a person types a plain one.
QString plainBlanks(QString text) {
  for (QChar& c : text)
    if (c == u'\u00A0' || c == u'\u202F') c = u' ';
  return text;
}

// Day, month and year in the region's order, the year with four digits, all of it one word: the first
// blank of a date-and-time text parts date and time.
QString dateFormatOf(const QLocale& locale) {
  if (locale.language() == QLocale::C) return u"MM/dd/yyyy"_s;
  QString format = plainBlanks(locale.dateFormat(QLocale::ShortFormat));
  format.remove(u' ');
  if (format.contains(u"MMM")) return u"yyyy-MM-dd"_s;
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

// Reads the three numbers of a date in the order of the format ("dd.MM.yyyy", "M/d/yyyy", ...).
QDate numericDate(const QString& text, const QString& format) {
  static const QRegularExpression numbers(u"^(\\d{1,4})\\D{1,3}(\\d{1,4})\\D{1,3}(\\d{1,4})\\D{0,3}$"_s);
  const QRegularExpressionMatch match = numbers.match(text);
  if (!match.hasMatch() || format.contains(u"MMM")) return {};
  int day = 0, month = 0, year = 0, place = 0;
  bool twoDigits = false;
  QChar last;
  for (QChar c : format) {
    if (c == last || !(c == u'd' || c == u'M' || c == u'y')) continue;
    last = c;
    const QString digits = match.captured(++place);
    (c == u'd' ? day : c == u'M' ? month : year) = digits.toInt();
    if (c == u'y') twoDigits = digits.size() <= 2;
    if (place == 3) break;
  }
  return QDate(fullYear(year, twoDigits), month, day);
}

QDate readDate(const QLocale& locale, const QString& text, const QString& format) {
  if (const QDate date = numericDate(text, format); date.isValid()) return date;
  const QDate named = locale.toDate(text, format);  // formats with the name of the month
  return named;
}

QTime readTime(const QLocale& locale, const QString& text, const QString& format) {
  if (const QTime time = locale.toTime(text, format); time.isValid()) return time;
  static const QRegularExpression plain(u"^(\\d{1,2})[:.](\\d{2})(?:[:.](\\d{2}))?$"_s);
  const QRegularExpressionMatch match = plain.match(text);
  if (!match.hasMatch()) return {};
  return QTime(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt());
}

}  // namespace

Regional::Regional(const QLocale& locale)
    : locale_(locale),
      dateFormat_(dateFormatOf(locale)),
      timeFormat_(plainBlanks(withSeconds(locale.timeFormat(QLocale::ShortFormat)))) {
  // Text and back must agree for digits too, so no grouping and no digits of the region's own script.
  locale_.setNumberOptions(QLocale::OmitGroupSeparator);
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

DateTime Regional::dateTime(QStringView raw) const {
  const QString text = plainBlanks(withoutEndBlanks(raw).toString());
  if (const QDate date = readDate(locale_, text, dateFormat_); date.isValid()) return {date, QTime()};
  if (const QTime time = readTime(locale_, text, timeFormat_); time.isValid()) return {QDate(), time};
  // A date may hold blanks itself, and so may a time: try each blank as the border between the two.
  for (qsizetype blank = text.indexOf(u' '); blank > 0; blank = text.indexOf(u' ', blank + 1)) {
    const QDate date = readDate(locale_, text.left(blank), dateFormat_);
    const QTime time = readTime(locale_, text.mid(blank + 1), timeFormat_);
    if (date.isValid() && time.isValid()) return {date, time};
  }
  throw RuntimeError(err::TypeMismatch);
}

QString textOf(const Value& value, const Regional& regional) {
  if (value.kind() == Value::Kind::DateTime) return regional.text(value.dateTime());
  return value.text();
}

}  // namespace lens
