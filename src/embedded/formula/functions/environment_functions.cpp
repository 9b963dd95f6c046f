// The user, the machine and its settings.
#include <QSysInfo>

#include "embedded/formula/formula.h"
#include "embedded/formula/function.h"
#include "embedded/formula/functions/environment_entry.h"
#include "notes/literals.h"

namespace lens::formula {
namespace {

// --- notes.ini -----------------------------------------------------------------------------------------

Value setEnvironment(const Call& call) {
  if (call.evaluation().mayWrite())
    call.environment().setIniValue(environmentEntry(call[0].text()), call[1].text(0).toString());
  return call[1];
}

Value environmentValue(const Call& call) {
  if (call.has(1)) return setEnvironment(call);
  return Value::text(call.environment().iniValue(environmentEntry(call[0].text())));
}

Value configFile(const Call& call) {
  return Value::text(call.environment().iniPath());
}
Value domain(const Call& call) {
  return Value::text(call.environment().iniValue(u"Domain"_s));
}
Value mailDbName(const Call& call) {
  const Environment& environment = call.environment();
  return Value::texts({environment.iniValue(u"MailServer"_s), environment.iniValue(u"MailFile"_s)});
}
Value addressBooks(const Call& call) {
  return Value::texts(call.environment().addressBooks());
}

// --- The user ------------------------------------------------------------------------------------------

// 0 asks for the user's name, 1 for a second one in another language, which nobody has here.
bool asksForAlternate(const Call& call) {
  return call.has(0) && call[0].number() != 0;
}
Value userName(const Call& call) {
  return Value::text(asksForAlternate(call) ? QString() : call.environment().userName());
}
Value userNameLanguage(const Call& call) {
  return Value::text(asksForAlternate(call) ? QString() : call.environment().language());
}
Value userNamesList(const Call& call) {
  return Value::texts(call.environment().userNamesList());
}
Value language(const Call& call) {
  return Value::text(call.environment().language());
}

// --- Mail addresses ------------------------------------------------------------------------------------

// A route "name @ next to last @ first" visits the first domain, then the one before it. Where it comes
// through a domain twice, the way in between leads nowhere.
QStringList withoutLoops(const QStringList& domains) {
  QStringList route;
  for (const QString& domain : domains) {
    qsizetype seen = 0;
    while (seen < route.size() && route[seen].compare(domain, Qt::CaseInsensitive) != 0) ++seen;
    if (seen < route.size()) route.resize(seen);
    route.append(domain);
  }
  return route;
}

QString optimized(QStringView address) {
  QStringList parts;
  for (QStringView part : address.split(u'@')) parts.append(part.trimmed().toString());
  const QString name = parts.takeFirst();
  const QStringList domains = withoutLoops(parts);
  return domains.isEmpty() ? name : name + u'@' + domains.join(u'@');
}

Value optimizeMailAddress(const Call& call) {
  return eachText(call[0], [&](QStringView address) {
    call.charge(address.size());
    return Text(optimized(address));
  });
}

// --- The machine ---------------------------------------------------------------------------------------

QString platformName() {
#if defined(Q_OS_WIN)
  return QSysInfo::WordSize == 64 ? u"Windows/64"_s : u"Windows/32"_s;
#elif defined(Q_OS_MACOS)
  return u"Macintosh"_s;
#else
  return u"UNIX"_s;
#endif
}

Value platform(const Call& call) {
  if (!call.has(0)) return Value::text(platformName());
  return Value::texts({platformName(), QSysInfo::prettyProductName()});
}
Value clientType(const Call&) {
  return Value::text(u"None");
}
Value version(const Call&) {
  return Value::text(u"405");
}

// The directory of a path, its separator included; "" for a name alone.
Value fileDir(const Call& call) {
  return eachText(call[0], [&](QStringView path) {
    call.charge(path.size());
    return Text(path.first(qMax(path.lastIndexOf(u'\\'), path.lastIndexOf(u'/')) + 1));
  });
}

Value noRegistry(const Call&) {
  return Value::error(fault::NotInContext);
}

// -------------------------------------------------------------------------------------------------------

constexpr Function kEnvironmentFunctions[] = {
    {"@ClientType", 0, 0, "", "", "What the formula runs in: \"Notes\", \"Web\" or \"None\".", clientType, 0,
     Form::Call, nullptr, "Always \"None\": neither a client nor a browser is at hand."},
    {"@ConfigFile", 0, 0, "", "", "The path of notes.ini.", configFile},
    {"@Domain", 0, 0, "", "", "The user's mail domain, the entry Domain of notes.ini.", domain},
    {"@Environment", 1, 2, "t", "name; text",
     "An entry of notes.ini, which stands there with a $ before its name; the empty text when it is missing. "
     "With a second text it writes the entry, as @SetEnvironment does.",
     environmentValue},
    {"@FileDir", 1, 1, "t", "path",
     "The directory part of each path, up to and with its last separator; the empty text for a bare file "
     "name.",
     fileDir, trait::Pure},
    {"@GetAddressBooks", 0, 0, "", "", "Where the address books are, a text for each.", addressBooks},
    {"@LanguagePreference", 1, 1, "k", "[use]", "The language that the user prefers, as a code such as en.",
     language, 0, Form::Call, nullptr, "One language serves all uses."},
    {"@Locale", 1, 3, "kv", "[action]; options", "The language of the user's settings, as a code such as en.",
     language, 0, Form::Call, nullptr, "One answer for all actions."},
    {"@MailDbName", 0, 0, "", "",
     "Two texts: the server and the path of the user's mail, the entries MailServer and MailFile of "
     "notes.ini.",
     mailDbName},
    {"@OptimizeMailAddress", 1, 1, "t", "address",
     "Shortens each mail address whose way leads through the same domain twice.", optimizeMailAddress,
     trait::Pure, Form::Call, nullptr, "Loops are cut out; connections between domains are not known here."},
    {"@Platform", 0, 1, "k", "[Specific]",
     "The kind of machine: \"Windows/32\", \"Windows/64\", \"Macintosh\" or \"UNIX\"; with the keyword also "
     "the name of its system.",
     platform, 0, Form::Call, "SPECIFIC"},
    {"@RegQueryValue", 3, 3, "t", "key; subkey; name", "A value of the Windows registry.", noRegistry,
     trait::NeedsClient, Form::Call, nullptr,
     "An error on every machine: a formula must not read the registry, so that it gives the same "
     "everywhere."},
    {"@SetEnvironment", 2, 2, "t", "name; text",
     "Writes an entry of notes.ini, which stands there with a $ before its name. Gives the text.",
     setEnvironment},
    {"@UserName", 0, 1, "n", "which",
     "The user's name with all its parts; 0 is the name itself, 1 a second one in another language.",
     userName, 0, Form::Call, nullptr, "Nobody has a second name here; it is the empty text."},
    {"@UserNameLanguage", 0, 1, "n", "which", "The language of the user's name, or of the second one.",
     userNameLanguage, 0, Form::Call, nullptr, "Of a second name the empty text."},
    {"@UserNamesList", 0, 0, "", "",
     "The user's name with all groups and roles that count as that user; the empty text where there is no "
     "such list.",
     userNamesList},
    {"@V3UserName", 0, 0, "", "", "The user's name, as releases before the fourth gave it.", userName, 0,
     Form::Call, nullptr, "The same as @UserName."},
    {"@Version", 0, 0, "", "", "The build of the program, as a text.", version, 0, Form::Call, nullptr,
     "Always 405, the number of a late release, so that formulas take the newer of their ways."},
};

}  // namespace

std::span<const Function> environmentFunctions() {
  return kEnvironmentFunctions;
}

}  // namespace lens::formula
