#include "embedded/formula/region.h"

namespace lens::formula {
namespace {

// A format without its quoted words.
QString bareFormat(const QString& format) {
  QString bare;
  bool quoted = false;
  for (const QChar character : format) {
    if (character == u'\'')
      quoted = !quoted;
    else if (!quoted)
      bare += character;
  }
  return bare;
}

// The first mark between two fields; some locales put blanks or direction marks around it.
QChar separatorIn(const QString& format, QChar otherwise) {
  bool field = false;
  for (const QChar character : format) {
    if (character.isLetter())
      field = true;
    else if (field && (character.isPunct() || character.isSymbol()))
      return character;
  }
  return otherwise;
}

Region::DateOrder orderIn(const QString& format) {
  const qsizetype day = format.indexOf(u'd'), month = format.indexOf(u'M'), year = format.indexOf(u'y');
  if (year >= 0 && year < day && year < month) return Region::DateOrder::YearMonthDay;
  return month < day ? Region::DateOrder::MonthDayYear : Region::DateOrder::DayMonthYear;
}

}  // namespace

Region regionOf(const QLocale& locale) {
  Region region;
  const QString date = bareFormat(locale.dateFormat(QLocale::ShortFormat));
  const QString time = bareFormat(locale.timeFormat(QLocale::ShortFormat));
  region.dateOrder = orderIn(date);
  region.dateSeparator = separatorIn(date, u'/');
  region.timeSeparator = separatorIn(time, u':');
  region.twelveHours = time.contains(u'a', Qt::CaseInsensitive);
  if (!locale.amText().isEmpty()) region.am = locale.amText();
  if (!locale.pmText().isEmpty()) region.pm = locale.pmText();
  if (!locale.decimalPoint().isEmpty()) region.decimalMark = locale.decimalPoint().front();
  if (!locale.groupSeparator().isEmpty()) region.thousandsMark = locale.groupSeparator().front();
  const QString currency = locale.currencySymbol(QLocale::CurrencySymbol);
  if (!currency.isEmpty()) region.currency = currency;
  region.currencyBehind = locale.toCurrencyString(1.0).indexOf(region.currency) > 0;
  return region;
}

}  // namespace lens::formula
