// Times out of text.
#include <array>
#include <optional>

#include "embedded/formula/time_text.h"
#include "embedded/formula/zones.h"

namespace lens::formula {
namespace {

constexpr qsizetype kLongest = 200;  // characters; no time needs as many
constexpr int kCenturyTurn = 50;     // two digits from here on are of the 20th century

// Numbers with the marks between them: "01/02/2003", "10:30:45.25".
struct Group {
  static constexpr int kMost = 3;
  std::array<int, kMost> numbers{};
  std::array<int, kMost> digits{};
  std::array<QChar, kMost> marks{};  // behind each number but the last
  int count = 0;
};

class Reader {
 public:
  Reader(QStringView text, const TimeReading& reading) : text_(text), reading_(reading) {}

  // The whole text as one date, time or both.
  std::optional<TimeDate> read() {
    for (skipBlanks(); at_ < text_.size(); skipBlanks())
      if (!(text_[at_].isDigit() ? readGroup() : readWord())) return {};
    if (half_ != Half::None) {
      if (hour_ > 12) return {};
      hour_ = hour_ % 12 + (half_ == Half::Afternoon ? 12 : 0);
    }
    if (date_) civil_.hasDate = true, civil_.day = *date_;
    if (hour_ >= 0) civil_.hasTime = true, civil_.hundredths = hour_ * 360000 + belowHour_;
    if (civil_.isBlank() || (zoned_ && !civil_.hasTime)) return {};
    const TimeDate time = zoned_ ? inZone() : timeDateOf(civil_, reading_.zone);
    if (isClearedTime(time)) return {};
    return time;
  }

 private:
  enum class Half { None, Morning, Afternoon };

  void skipBlanks() {
    while (at_ < text_.size() && text_[at_].isSpace()) ++at_;
  }

  bool isMark(QChar character) const {
    return character == u'/' || character == u'-' || character == u'.' || character == u':' ||
           character == reading_.region.dateSeparator || character == reading_.region.timeSeparator;
  }

  bool readGroup() {
    Group group;
    for (;;) {
      if (group.count == Group::kMost) return false;
      int number = 0, digits = 0;
      for (; at_ < text_.size() && text_[at_].isDigit(); ++at_, ++digits) {
        if (digits == 4) return false;
        number = number * 10 + text_[at_].digitValue();
      }
      group.numbers[size_t(group.count)] = number;
      group.digits[size_t(group.count)] = digits;
      const bool more = at_ + 1 < text_.size() && isMark(text_[at_]) && text_[at_ + 1].isDigit();
      if (!more) break;
      group.marks[size_t(group.count++)] = text_[at_++];
    }
    ++group.count;
    return (!date_ && readDate(group)) || (hour_ < 0 && readClock(group));
  }

  bool readDate(const Group& group) {
    const auto& marks = group.marks;
    const bool ofDate =
        marks[0] == u'/' || marks[0] == u'-' || marks[0] == u'.' || marks[0] == reading_.region.dateSeparator;
    if (!ofDate || group.count < 2 || (group.count == 3 && marks[1] != marks[0])) return false;
    // A mark that separates hours from minutes too makes two numbers a time.
    const Region& region = reading_.region;
    const bool ofTime = marks[0] == region.timeSeparator;
    if (ofTime && (group.count == 2 || region.dateSeparator != region.timeSeparator)) return false;
    if (group.count == 2 && marks[0] == u'.' && region.dateSeparator != u'.') return false;
    int year = 0, month = 0, day = 0;
    if (!sortDate(group, year, month, day) || !dateExists(year, month, day)) return false;
    date_ = julianDay(year, month, day);
    return true;
  }

  // Which number is which. A year of three or four digits tells itself.
  bool sortDate(const Group& group, int& year, int& month, int& day) const {
    const auto& [first, second, third] = group.numbers;
    using Order = Region::DateOrder;
    Order order = reading_.region.dateOrder;
    if (group.count == 2) {
      const Civil now = civilOf(reading_.now, reading_.zone);
      if (!now.hasDate || group.digits[0] > 2 || group.digits[1] > 2) return false;
      year = yearMonthDay(now.day).year;
      const bool dayFirst = order == Order::DayMonthYear;
      day = dayFirst ? first : second, month = dayFirst ? second : first;
      return true;
    }
    if (group.digits[0] > 2)
      order = Order::YearMonthDay;
    else if (order == Order::YearMonthDay && group.digits[2] > 2)
      order = Order::MonthDayYear;
    const size_t yearPlace = order == Order::YearMonthDay ? 0 : 2;
    for (size_t i = 0; i < 3; ++i)
      if (i != yearPlace && group.digits[i] > 2) return false;
    year = group.numbers[yearPlace];
    if (group.digits[yearPlace] <= 2) year += year < kCenturyTurn ? 2000 : 1900;
    month = order == Order::MonthDayYear ? first : second;
    day = order == Order::MonthDayYear ? second : order == Order::DayMonthYear ? first : third;
    return true;
  }

  bool readClock(const Group& group) {
    const auto isTimeMark = [this](QChar mark) {
      return mark == u':' || mark == reading_.region.timeSeparator;
    };
    if (group.count > 1 && !isTimeMark(group.marks[0])) return false;
    if (group.count > 2 && !isTimeMark(group.marks[1])) return false;
    if (group.count == 1 && !halfFollows()) return false;
    const auto& [hour, minute, second] = group.numbers;
    if (group.digits[0] > 2 || group.digits[1] > 2 || group.digits[2] > 2) return false;
    if (hour > 23 || minute > 59 || second > 59) return false;
    hour_ = hour;
    belowHour_ = (minute * 60 + second) * 100;
    return true;
  }

  // A lone number is an hour when AM or PM stands behind it.
  bool halfFollows() const {
    Reader ahead(text_.sliced(at_), reading_);
    ahead.hour_ = 0;
    ahead.skipBlanks();
    return ahead.at_ < ahead.text_.size() && ahead.readHalf();
  }

  bool startsWith(QStringView word) const {
    const QStringView rest = text_.sliced(at_);
    return !word.isEmpty() && rest.startsWith(word, Qt::CaseInsensitive) &&
           (rest.size() == word.size() || !rest[word.size()].isLetter());
  }

  bool readHalf() {
    if (hour_ < 0 || half_ != Half::None) return false;
    const Region& region = reading_.region;
    const QStringView mornings[] = {region.am, u"AM", u"A"}, afternoons[] = {region.pm, u"PM", u"P"};
    for (int i = 0; i < 3; ++i)
      for (const bool afternoon : {false, true}) {
        const QStringView word = afternoon ? afternoons[i] : mornings[i];
        if (!startsWith(word)) continue;
        at_ += word.size();
        half_ = afternoon ? Half::Afternoon : Half::Morning;
        return true;
      }
    return false;
  }

  bool readWord() {
    if (readHalf()) return true;
    qsizetype end = at_;
    while (end < text_.size() && text_[end].isLetter()) ++end;
    const QStringView word = text_.sliced(at_, end - at_);
    at_ = end;
    return !word.isEmpty() && (readDay(word) || readZone(word));
  }

  bool readDay(QStringView word) {
    static constexpr std::pair<const char*, int> kDays[] = {{"today", 0}, {"tomorrow", 1}, {"yesterday", -1}};
    for (const auto& [name, days] : kDays) {
      if (word.compare(QLatin1String(name), Qt::CaseInsensitive) != 0) continue;
      const Civil now = civilOf(reading_.now, reading_.zone);
      if (date_ || !now.hasDate) return false;
      date_ = now.day + days;
      return true;
    }
    return false;
  }

  bool readZone(QStringView word) {
    if (hour_ < 0 || zoned_ || !zoneByName(word, zone_, summer_)) return false;
    zoned_ = true;
    const bool shifted = at_ + 1 < text_.size() && (text_[at_] == u'+' || text_[at_] == u'-') &&
                         text_[at_ + 1].isDigit() && zone_.offsetMinutes == 0 && !zone_.observesDst;
    return !shifted || readShift();
  }

  // "+2" or "-5:30" behind GMT.
  bool readShift() {
    const bool west = text_[at_++] == u'-';
    const auto number = [this] {
      int value = 0;
      for (int digits = 0; at_ < text_.size() && text_[at_].isDigit() && digits < 2; ++at_, ++digits)
        value = value * 10 + text_[at_].digitValue();
      return value;
    };
    const int hours = number();
    int minutes = 0;
    if (at_ + 1 < text_.size() && text_[at_] == u':' && text_[at_ + 1].isDigit()) ++at_, minutes = number();
    if (hours > 15 || minutes > 59 || minutes % 15) return false;
    zone_.offsetMinutes = (west ? -1 : 1) * (hours * 60 + minutes);
    return true;
  }

  // What a clock in the zone of the text showed. A time without a date is today's, and becomes local.
  TimeDate inZone() const {
    const int offset = zone_.offsetMinutes * 60 + (summer_ ? 3600 : 0);
    Civil civil = civil_;
    if (!civil.hasDate) civil.day = civilOf(reading_.now, reading_.zone).day;
    civil.hasDate = true;
    const qint64 instant = hundredthsOf(civil) - 100 * qint64(offset);
    const TimeDate time = timeDateAt(instant, zone_);
    if (civil_.hasDate) return time;
    Civil local = civilOf(time, reading_.zone);
    local.hasDate = false;
    return timeDateOf(local, reading_.zone);
  }

  QStringView text_;
  const TimeReading& reading_;
  qsizetype at_ = 0;
  Civil civil_;
  std::optional<qint32> date_;
  int hour_ = -1, belowHour_ = 0;  // hundredths of a second behind the full hour
  Half half_ = Half::None;
  bool zoned_ = false, summer_ = false;
  Zone zone_;
};

// "d1 - d2". An end that is a time only is of the first one's day.
bool readRange(QStringView text, const TimeReading& reading, TimePair& range) {
  for (qsizetype dash = text.indexOf(u'-'); dash >= 0; dash = text.indexOf(u'-', dash + 1)) {
    const auto from = Reader(text.first(dash), reading).read();
    if (!from) continue;
    const auto to = Reader(text.sliced(dash + 1), reading).read();
    if (!to) continue;
    Civil start = civilOf(*from, reading.zone), end = civilOf(*to, reading.zone);
    range = {*from, *to};
    if (start.hasDate && start.hasTime && !end.hasDate) {
      end.hasDate = true, end.day = start.day;
      range.to = timeDateOf(end, reading.zone);
    } else if (start.hasDate != end.hasDate) {
      continue;
    }
    return true;
  }
  return false;
}

}  // namespace

bool readTime(QStringView text, const TimeReading& reading, Value& time) {
  if (text.size() > kLongest) return false;
  if (const auto single = Reader(text, reading).read()) {
    time = Value::time(*single);
    return true;
  }
  TimePair range;
  if (!readRange(text, reading, range)) return false;
  time = Value::range(range);
  return true;
}

}  // namespace lens::formula
