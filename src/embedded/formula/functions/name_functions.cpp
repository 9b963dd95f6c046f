#include <algorithm>
#include <iterator>

#include "embedded/formula/functions/names.h"
#include "embedded/formula/functions/text_units.h"
#include "notes/literals.h"

namespace lens::formula {
namespace {

// Each word of @Name once; what it asks for is told by what it is compared with.
bool isOneOf(QStringView word, std::initializer_list<QStringView> words) {
  for (const QStringView one : words)
    if (word == one) return true;
  return false;
}

Text ofInternetName(const InternetName& name, QStringView part, const Text& whole) {
  if (part == u"ADDRESS821") return Text(name.address);
  if (part == u"LP") return Text(name.local);
  if (part == u"PHRASE") return Text(name.phrase);
  if (part == u"CN") return Text(name.phrase.isEmpty() ? name.local : name.phrase);
  if (isOneOf(part, {u"ABBREVIATE", u"CANONICALIZE"})) return whole;
  return Text();
}

// A flat name is a common name with all the rest missing.
Text completed(const Call& call, const HierarchicalName& name, const Text& whole) {
  if (whole.size() == 0 || (!name.isFlat() && !name.part(u"O").isEmpty())) return Text(name.canonical());
  const QString user = call.environment().userName();
  const HierarchicalName userName(user);
  if (!name.isFlat()) return Text(name.completedFrom(userName));
  if (userName.isFlat()) return whole;
  const QString labelled = u"CN="_s + whole.view().toString();
  return Text(HierarchicalName(labelled).completedFrom(userName));
}

// Parts that a label stands for, under their own name or a longer one.
QStringView knownLabel(QStringView part) {
  static constexpr QStringView kLabels[] = {u"CN", u"O", u"C", u"G", u"S", u"I", u"Q", u"A", u"P"};
  for (const QStringView label : kLabels)
    if (part == label) return label;
  return {};
}

Text ofHierarchicalName(const Call& call, const HierarchicalName& name, QStringView part, const Text& whole) {
  if (part == u"CANONICALIZE") return completed(call, name, whole);
  if (name.isFlat()) return isOneOf(part, {u"CN", u"ABBREVIATE"}) ? whole : Text();
  if (part == u"ABBREVIATE") return Text(name.abbreviated());
  if (part == u"HIERARCHYONLY") return Text(name.canonical(false));
  if (part == u"TOKEYWORD") return Text(name.keyword());
  if (part.size() == 3 && part.startsWith(u"OU")) return Text(name.unit(part[2].unicode() - u'0'));
  const QStringView label = knownLabel(part);
  return label.isNull() ? Text() : Text(name.part(label));
}

Value name(const Call& call) {
  const QStringView part = call[0].text();
  return mapTexts(call, call[1], [&](const Text& whole) {
    const QStringView text = whole.view();
    if (text.contains(u'@')) {
      const InternetName internet = readInternetName(text);
      if (!internet.address.isEmpty()) return ofInternetName(internet, part, whole);
    }
    return ofHierarchicalName(call, HierarchicalName(text), part, whole);
  });
}

// Words of letters, digits and signs with single points between them, or anything in quotes.
bool isLocalPart(QStringView text) {
  if (text.size() > 2 && text.startsWith(u'"') && text.endsWith(u'"'))
    return !text.sliced(1, text.size() - 2).contains(u'"');
  if (text.isEmpty() || text.startsWith(u'.') || text.endsWith(u'.') || text.contains(u"..")) return false;
  return std::all_of(text.begin(), text.end(), [](QChar c) {
    return c.isLetterOrNumber() || QStringView(u".!#$%&'*+-/=?^_`{|}~").contains(c);
  });
}

bool isDomain(QStringView text) {
  if (text.size() > 2 && text.startsWith(u'[') && text.endsWith(u']')) return true;
  for (const QStringView label : text.tokenize(u'.')) {
    if (label.isEmpty() || label.startsWith(u'-') || label.endsWith(u'-')) return false;
    if (!std::all_of(label.begin(), label.end(), [](QChar c) { return c.isLetterOrNumber() || c == u'-'; }))
      return false;
  }
  return true;
}

bool isMailbox(QStringView address) {
  const qsizetype at = address.lastIndexOf(u'@');
  return at > 0 && isLocalPart(address.first(at)) && isDomain(address.sliced(at + 1));
}

Value validateInternetAddress(const Call& call) {
  const bool bare = call[0].text() == u"ADDRESS821";
  return mapTexts(call, call[1], [&](const Text& whole) {
    const QStringView text = whole.view();
    const QString address = bare ? text.toString() : readInternetName(text).address.toString();
    return isMailbox(address) ? Text() : Text(u"%1 is no Internet address"_s.arg(text));
  });
}

constexpr Function kNameFunctions[] = {
    {.name = "@Name",
     .least = 2,
     .most = 2,
     .types = "kt",
     .arguments = "[part]; names",
     .help = "Gives a part or a form of each name: CANONICALIZE with all labels, ABBREVIATE without them, CN "
             "the person, OU1 to OU4 the units counted from the right, O the organization, C the country, "
             "TOKEYWORD the places from the largest down for categories, PHRASE, LP and ADDRESS821 the parts "
             "of an Internet address.",
     .run = name,
     .keywords = "ABBREVIATE CANONICALIZE CN O C OU1 OU2 OU3 OU4 HIERARCHYONLY TOKEYWORD G S I Q A P "
                 "ADDRESS821 LP PHRASE TOAT TODATATYPE TOFIELD TOOC TOSYNTAX",
     .note = "TOAT, TODATATYPE, TOFIELD, TOOC and TOSYNTAX need the schema of a directory and give the empty "
             "text here. Two letters at the end of an abbreviated name with three parts or more are taken "
             "for a country."},
    {.name = "@ValidateInternetAddress",
     .least = 2,
     .most = 2,
     .types = "kt",
     .arguments = "[form]; addresses",
     .help =
         "The empty text for each address that is one, and for others a sentence that says so. ADDRESS821 "
         "is an address alone, with ADDRESS822 a name may stand beside it.",
     .run = validateInternetAddress,
     .keywords = "ADDRESS821 ADDRESS822",
     .note = "The sentence is this program's own."},
};

}  // namespace

std::span<const Function> nameFunctions() {
  return kNameFunctions;
}

}  // namespace lens::formula
