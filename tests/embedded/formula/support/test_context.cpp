#include "embedded/formula/support/test_context.h"

#include "embedded/format/case_key.h"

namespace lens::formula {
namespace {
using namespace Qt::StringLiterals;

const LocalZone& newYork() {
  static const LocalZone zone{QTimeZone("America/New_York")};
  return zone;
}

QVector<double> numbersOf(std::initializer_list<double> numbers) {
  return QVector<double>(numbers);
}

QString twoDigits(int number) {
  return u"%1"_s.arg(number, 2, 10, QChar(u'0'));
}

QString dateText(qint32 day) {
  const YearMonthDay date = yearMonthDay(day);
  return u"%1-%2-%3"_s.arg(date.year, 4, 10, QChar(u'0')).arg(twoDigits(date.month), twoDigits(date.day));
}

QString clockText(qint32 hundredths) {
  const int seconds = hundredths / 100;
  QString text =
      twoDigits(seconds / 3600) + u':' + twoDigits(seconds / 60 % 60) + u':' + twoDigits(seconds % 60);
  if (hundredths % 100) text += u'.' + twoDigits(hundredths % 100);
  return text;
}

QString timeText(const TimeDate& time, const LocalZone& zone) {
  const Civil civil = civilOf(time, zone);
  QStringList halves;
  if (civil.hasDate) halves.append(dateText(civil.day));
  if (civil.hasTime) halves.append(clockText(civil.hundredths));
  return halves.join(u' ');
}

QString quoted(QStringView text) {
  QString inner = text.toString();
  inner.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
  return u'"' + inner + u'"';
}

QString printElement(const Value& value, qsizetype i, const LocalZone& zone) {
  switch (value.type()) {
    case Type::Number:
      // A negative zero prints as zero: formulas cannot tell them apart.
      return QString::number(value.number(i) + 0.0, 'g', 15);
    case Type::Time:
      return u'[' + timeText(value.time(i), zone) + u']';
    case Type::TimeRange: {
      const TimePair range = value.range(i);
      return u'[' + timeText(range.from, zone) + u" - "_s + timeText(range.to, zone) + u']';
    }
    case Type::Text:
      return quoted(value.text(i));
    default:
      return value.text(i).toString();
  }
}

}  // namespace

TimeDate testTime(int year, int month, int day, int hour, int minute, int second) {
  return timeDateOf(
      Civil{true, true, julianDay(year, month, day), ((hour * 60 + minute) * 60 + second) * 100}, newYork());
}

TimeDate testDate(int year, int month, int day) {
  return timeDateOf(Civil{true, false, julianDay(year, month, day), 0}, newYork());
}

QString TestEnvironment::userName() const {
  return u"CN=Ada Byron/OU=East/OU=Sales/O=Acme/C=US"_s;
}
QStringList TestEnvironment::userNamesList() const {
  return {userName(), u"Clerks"_s, u"[Billing]"_s};
}
TimeDate TestEnvironment::now() const {
  return testTime(2024, 3, 15, 10, 30, 45);
}
const LocalZone& TestEnvironment::zone() const {
  return newYork();
}
QString TestEnvironment::iniPath() const {
  return u"C:\\Notes\\notes.ini"_s;
}
QStringList TestEnvironment::addressBooks() const {
  return {u"names.nsf"_s};
}

TestDocument::TestDocument() {
  put(u"Form"_s, Value::text(u"Memo"));
  put(u"Subject"_s, Value::text(u"Quarterly report"));
  put(u"Empty"_s, Value::text(u""));
  put(u"Names"_s, Value::texts({u"Ada"_s, u"Bob"_s, u"Cy"_s}));
  put(u"Numbers"_s, Value::numbers(numbersOf({3, 1, 2})));
  put(u"Amount"_s, Value::number(12.5));
  put(u"Zero"_s, Value::number(0.0));
  put(u"Due"_s, Value::time(testDate(2024, 3, 20)));
  put(u"Meeting"_s, Value::time(testTime(2024, 3, 18, 14, 30)));
  put(u"Clock"_s, Value::time(timeDateOf(Civil{false, true, 0, (9 * 60 + 15) * 60 * 100}, newYork())));
  put(u"Span"_s, Value::range({testDate(2024, 3, 1), testDate(2024, 3, 5)}));
  put(u"Dates"_s, Value::times({testDate(2024, 1, 31), testDate(2024, 2, 29)}));
  putRichText(u"Body"_s, u"The pump station is late.\nSecond paragraph."_s);
  put(u"From"_s, Value::text(u"CN=Ada Byron/OU=East/OU=Sales/O=Acme/C=US"));
}

DocumentProperties TestDocument::properties() const {
  DocumentProperties properties;
  properties.created = testTime(2024, 1, 2, 8, 0);
  properties.modified = testTime(2024, 3, 1, 9, 30);
  properties.accessed = testTime(2024, 3, 14, 12, 0);
  properties.unid = Unid::fromText(u"0123456789ABCDEF0123456789ABCDEF");
  properties.noteId = NoteId(0x8F6);
  properties.size = 4096;
  return properties;
}

QVector<Attachment> TestDocument::attachments() const {
  return {{u"plan.pdf"_s, 2048, testTime(2024, 2, 1, 10, 0)},
          {u"notes.txt"_s, 10, testTime(2024, 2, 2, 11, 0)}};
}

DatabaseProperties TestDatabase::properties() const {
  DatabaseProperties properties;
  properties.server = u"CN=Hub/O=Acme"_s;
  properties.path = u"Sales\\orders.nsf"_s;
  properties.title = u"Orders"_s;
  properties.replicaId = u"85255CEB:0032AC04"_s;
  properties.templateVersion = u"8.5"_s;
  properties.viewTitle = u"By article"_s;
  properties.managers = {u"CN=Eve Moss/O=Acme"_s};
  properties.userRoles = {u"[Billing]"_s, u"[Clerk]"_s};
  return properties;
}

bool TestDatabase::documentItem(const Unid& unid, const Name& name, Value& value) const {
  const QMap<QString, Value> items = written_.value(unid.text().toLower());
  if (unid != Unid::fromText(u"FEDCBA9876543210FEDCBA9876543210")) throw Fault{fault::NoDocument};
  if (items.contains(name.key())) {
    value = items.value(name.key());
    return true;
  }
  if (name.text().compare(u"Subject", Qt::CaseInsensitive) == 0) return value = Value::text(u"Other"), true;
  if (name.text().compare(u"Amount", Qt::CaseInsensitive) == 0) return value = Value::number(7.0), true;
  return false;
}

void TestDatabase::setDocumentItem(const Unid& unid, const QString& name, const Value& value) {
  Value unused;
  documentItem(unid, Name(name), unused);  // refuses documents that do not exist
  written_[unid.text().toLower()].insert(caseKey(name), value);
}

bool TestDatabase::profileItem(const QString& profile, const QString& key, const Name& name,
                               Value& value) const {
  const QMap<QString, Value> items = written_.value(profile.toLower() + u'/' + key.toLower());
  if (items.contains(name.key())) {
    value = items.value(name.key());
    return true;
  }
  if (profile.compare(u"Settings", Qt::CaseInsensitive) != 0 || name.key() != caseKey(u"Color")) return false;
  if (!key.isEmpty() && key.compare(u"Ada", Qt::CaseInsensitive) != 0) return false;
  value = Value::text(key.isEmpty() ? u"blue" : u"red");
  return true;
}

void TestDatabase::setProfileItem(const QString& profile, const QString& key, const QString& name,
                                  const Value& value) {
  written_[profile.toLower() + u'/' + key.toLower()].insert(caseKey(name), value);
}

bool TestDatabase::exists(const QString& server, const QString& path) const {
  return (server.isEmpty() || server == properties().server) &&
         path.compare(properties().path, Qt::CaseInsensitive) == 0;
}

const QVector<TestDatabase::Row>& TestDatabase::rows() {
  static const QVector<Row> all{{u"apple"_s, 3, u"00000000000000000000000000000001"_s},
                                {u"banana"_s, 5, u"00000000000000000000000000000002"_s},
                                {u"banana"_s, 7, u"00000000000000000000000000000003"_s},
                                {u"cherry"_s, 11, u"00000000000000000000000000000004"_s}};
  return all;
}

void TestDatabase::checkPlace(const ViewPlace& place) const {
  if (!place.path.isEmpty() && !exists(place.server, place.path)) throw Fault{fault::CannotCompute};
  if (place.view.compare(u"Stock", Qt::CaseInsensitive) != 0) throw Fault{fault::CannotCompute};
}

Value TestDatabase::column(const ViewPlace& place, int column) const {
  checkPlace(place);
  if (column < 1 || column > 2) throw Fault{fault::CannotCompute};
  ListBuilder list;
  for (const Row& row : rows()) {
    if (column == 1)
      list.addText(row.article);
    else
      list.addNumber(row.amount);
  }
  return list.take();
}

bool TestDatabase::lookup(const ViewPlace& place, const Lookup& lookup, Value& value) const {
  checkPlace(place);
  ListBuilder list;
  for (const Row& row : rows()) {
    const bool found = lookup.partial ? row.article.startsWith(lookup.key, Qt::CaseInsensitive)
                                      : row.article.compare(lookup.key, Qt::CaseInsensitive) == 0;
    if (!found) continue;
    if (lookup.unids)
      list.addText(row.unid);
    else if (lookup.column == 2 || lookup.item.compare(u"Amount", Qt::CaseInsensitive) == 0)
      list.addNumber(row.amount);
    else
      list.addText(row.article);
  }
  if (list.count() == 0) return false;
  value = list.take();
  return true;
}

QString printValue(const Value& value, const LocalZone& zone) {
  switch (value.type()) {
    case Type::Unset:
      return u"unset"_s;
    case Type::Nothing:
      return u"nothing"_s;
    case Type::Missing:
      return u"missing"_s;
    case Type::Unavailable:
      return u"unavailable"_s;
    case Type::Error:
      return u"error %1"_s.arg(value.errorCode(), 4, 16, QChar(u'0'))
          .toUpper()
          .replace(u"ERROR"_s, u"error"_s);
    default:
      break;
  }
  QStringList elements;
  for (qsizetype i = 0; i < value.count(); ++i) elements.append(printElement(value, i, zone));
  return (value.type() == Type::Keyword ? u"keyword "_s : QString()) + elements.join(u" : "_s);
}

}  // namespace lens::formula
