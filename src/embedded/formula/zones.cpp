#include "embedded/formula/zones.h"

#include <map>
#include <memory>

#include "notes/literals.h"

namespace lens::formula {
namespace {

struct ZoneRow {
  int offsetMinutes;
  const char* standard;
  const char* summer;  // null: none
  const char* rules;   // a place whose clocks change like most of the zone's
};

// The first row of an offset names it when a time is written; later ones are read only.
constexpr ZoneRow kZoneRows[] = {
    {-720, "IDLW", nullptr, nullptr},
    {-660, "SST", nullptr, nullptr},
    {-600, "HST", nullptr, "America/Adak"},
    {-540, "AKST", "AKDT", "America/Anchorage"},
    {-540, "YST", "YDT", "America/Anchorage"},
    {-480, "PST", "PDT", "America/Los_Angeles"},
    {-420, "MST", "MDT", "America/Denver"},
    {-360, "CST", "CDT", "America/Chicago"},
    {-300, "EST", "EDT", "America/New_York"},
    {-240, "AST", "ADT", "America/Halifax"},
    {-210, "NST", "NDT", "America/St_Johns"},
    {-180, "BRT", nullptr, "America/Miquelon"},
    {-60, "AZOT", "AZOST", "Atlantic/Azores"},
    {0, "GMT", "BST", "Europe/London"},
    {0, "UTC", nullptr, nullptr},
    {0, "WET", "WEST", "Europe/Lisbon"},
    {60, "CET", "CEST", "Europe/Berlin"},
    {60, "MEZ", "MESZ", "Europe/Berlin"},
    {60, "CET", "CEDT", "Europe/Berlin"},
    {120, "EET", "EEST", "Europe/Helsinki"},
    {180, "MSK", nullptr, nullptr},
    {540, "JST", nullptr, nullptr},
    {570, "ACST", "ACDT", "Australia/Adelaide"},
    {600, "AEST", "AEDT", "Australia/Sydney"},
    {720, "NZST", "NZDT", "Pacific/Auckland"},
};

// The rules of a zone that is not the machine's; null where no place is known.
const LocalZone* rulesAt(int offsetMinutes) {
  thread_local std::map<int, std::unique_ptr<LocalZone>> loaded;
  const auto found = loaded.find(offsetMinutes);
  if (found != loaded.end()) return found->second.get();
  std::unique_ptr<LocalZone> rules;
  for (const ZoneRow& row : kZoneRows) {
    if (row.offsetMinutes != offsetMinutes || !row.rules) continue;
    const QTimeZone zone{QByteArray(row.rules)};
    if (zone.isValid()) rules = std::make_unique<LocalZone>(zone);
    break;
  }
  return loaded.emplace(offsetMinutes, std::move(rules)).first->second.get();
}

bool isLocal(Zone zone, const LocalZone& local) {
  return zone.offsetMinutes == local.standard().offsetMinutes &&
         zone.observesDst == local.standard().observesDst;
}

}  // namespace

// Before zones were agreed on each town had an offset of its own, which is neither standard nor summer time.
static int agreed(int offset, int standard) {
  return offset == standard || offset == standard + 3600 ? offset : standard;
}

int offsetIn(Zone zone, qint64 instant, const LocalZone& local) {
  if (isLocal(zone, local)) return local.offsetAt(instant);
  const int standard = zone.offsetMinutes * 60;
  if (!zone.observesDst) return standard;
  if (const LocalZone* rules = rulesAt(zone.offsetMinutes)) return agreed(rules->offsetAt(instant), standard);
  return agreed(standard + local.offsetAt(instant) - local.standard().offsetMinutes * 60, standard);
}

int offsetInAtLocal(Zone zone, qint64 localHundredths, const LocalZone& local) {
  if (isLocal(zone, local)) return local.offsetAtLocal(localHundredths);
  const int standard = zone.offsetMinutes * 60;
  if (!zone.observesDst) return standard;
  if (const LocalZone* rules = rulesAt(zone.offsetMinutes))
    return agreed(rules->offsetAtLocal(localHundredths), standard);
  return offsetIn(zone, localHundredths - 100 * qint64(standard), local);
}

bool zoneByName(QStringView name, Zone& zone, bool& summer) {
  for (const ZoneRow& row : kZoneRows) {
    const bool isStandard = name.compare(QLatin1String(row.standard), Qt::CaseInsensitive) == 0;
    const bool isSummer = row.summer && name.compare(QLatin1String(row.summer), Qt::CaseInsensitive) == 0;
    if (!isStandard && !isSummer) continue;
    // GMT is the time of reference, not Britain's clock.
    const bool changes = row.summer && name.compare(QLatin1String("GMT"), Qt::CaseInsensitive) != 0;
    zone = {row.offsetMinutes, changes};
    summer = isSummer;
    return true;
  }
  return false;
}

QString zoneName(Zone zone, bool summer) {
  for (const ZoneRow& row : kZoneRows) {
    if (row.offsetMinutes != zone.offsetMinutes) continue;
    if (!summer) return QString::fromLatin1(row.standard);
    if (row.summer) return QString::fromLatin1(row.summer);
    break;
  }
  return {};
}

QString offsetName(int minutesEast) {
  if (minutesEast == 0) return u"GMT"_s;
  const int minutes = qAbs(minutesEast);
  QString name = u"GMT"_s + (minutesEast < 0 ? u'-' : u'+') + QString::number(minutes / 60);
  if (minutes % 60) name += u':' + QString::number(minutes % 60).rightJustified(2, u'0');
  return name;
}

}  // namespace lens::formula
