#include "embedded/formula/functions/names.h"

#include "embedded/format/case_key.h"

namespace lens::formula {
namespace {

bool isUnit(const NamePart& part) {
  return part.label.size() >= 2 && part.label.size() <= 3 && sameCaseKey(part.label.first(2), u"OU") &&
         (part.label.size() == 2 || (part.label[2] >= u'1' && part.label[2] <= u'4'));
}

bool isLetters(QStringView text) {
  for (const QChar c : text)
    if (!c.isLetter()) return false;
  return true;
}

// What stands in front of "=".
QStringView labelOf(QStringView component) {
  return component.first(qMax<qsizetype>(0, component.indexOf(u'='))).trimmed();
}

template <typename Each>
void eachComponent(QStringView name, Each&& each) {
  for (qsizetype at = 0; at <= name.size();) {
    const qsizetype slash = name.indexOf(u'/', at);
    const qsizetype end = slash < 0 ? name.size() : slash;
    each(name.sliced(at, end - at));
    at = end + 1;
  }
}

void append(QString& text, const NamePart& part) {
  if (!text.isEmpty()) text.append(u'/');
  text.append(part.label).append(u'=').append(part.value);
}

// Without the blanks and quotes around.
QStringView unquoted(QStringView text) {
  text = text.trimmed();
  if (text.size() >= 2 && text.front() == u'"' && text.back() == u'"') text = text.sliced(1).chopped(1);
  return text;
}

}  // namespace

HierarchicalName::HierarchicalName(QStringView name) {
  const qsizetype slash = name.indexOf(u'/');
  if (!labelOf(slash < 0 ? name : name.first(slash)).isEmpty())
    readLabelled(name);
  else if (slash >= 0)
    readAbbreviated(name);
}

// A component without a label belongs to the one before it: a value may hold a "/".
void HierarchicalName::readLabelled(QStringView name) {
  eachComponent(name, [&](QStringView component) {
    const QStringView label = labelOf(component);
    if (!label.isEmpty()) {
      parts_.append({label, component.sliced(component.indexOf(u'=') + 1).trimmed()});
    } else {
      QStringView& value = parts_.last().value;
      value = QStringView(value.begin(), component.end());
    }
  });
}

// Person, units, organization; two letters at the end of three components or more are a country.
void HierarchicalName::readAbbreviated(QStringView name) {
  eachComponent(name, [&](QStringView component) { parts_.append({u"OU", component.trimmed()}); });
  qsizetype last = parts_.size() - 1;
  parts_[0].label = u"CN";
  if (last >= 2 && parts_[last].value.size() == 2 && isLetters(parts_[last].value))
    parts_[last--].label = u"C";
  if (last >= 1) parts_[last].label = u"O";
}

QStringView HierarchicalName::part(QStringView label) const {
  for (const NamePart& part : parts_)
    if (sameCaseKey(part.label, label)) return part.value;
  return u"";
}

QStringView HierarchicalName::unit(int fromRight) const {
  for (qsizetype i = parts_.size() - 1; i >= 0; --i)
    if (isUnit(parts_[i]) && --fromRight == 0) return parts_[i].value;
  return u"";
}

QString HierarchicalName::canonical(bool withCommonName) const {
  QString text;
  for (const NamePart& part : parts_)
    if (withCommonName || !sameCaseKey(part.label, u"CN")) append(text, part);
  return text;
}

QString HierarchicalName::abbreviated() const {
  QString text;
  for (qsizetype i = 0; i < parts_.size(); ++i) {
    if (i > 0) text.append(u'/');
    text.append(parts_[i].value);
  }
  return text;
}

QString HierarchicalName::keyword() const {
  QString text;
  const auto add = [&](QStringView value) {
    if (value.isEmpty()) return;
    if (!text.isEmpty()) text.append(u'\\');
    text.append(value);
  };
  add(part(u"C"));
  add(part(u"O"));
  for (qsizetype i = parts_.size() - 1; i >= 0; --i)
    if (isUnit(parts_[i])) add(parts_[i].value);
  return text;
}

QString HierarchicalName::completedFrom(const HierarchicalName& user) const {
  QString text = canonical();
  if (!part(u"O").isEmpty()) return text;
  const bool hasUnits = !unit(1).isEmpty(), hasCountry = !part(u"C").isEmpty();
  for (const NamePart& other : user.parts_) {
    const bool isPlace = sameCaseKey(other.label, u"O") || (sameCaseKey(other.label, u"C") && !hasCountry);
    if (isPlace || (!hasUnits && isUnit(other))) append(text, other);
  }
  return text;
}

InternetName readInternetName(QStringView name) {
  InternetName result;
  name = name.trimmed();
  const qsizetype open = name.lastIndexOf(u'<');
  if (open >= 0 && name.endsWith(u'>')) {
    result.address = name.sliced(open + 1).chopped(1).trimmed();
    result.phrase = unquoted(name.first(open));
  } else if (const qsizetype comment = name.indexOf(u'('); comment > 0 && name.endsWith(u')')) {
    result.address = name.first(comment).trimmed();
    result.phrase = unquoted(name.sliced(comment + 1).chopped(1));
  } else {
    result.address = name;
  }
  const qsizetype at = result.address.lastIndexOf(u'@');
  if (at <= 0 || at + 1 == result.address.size() || result.address.contains(u'/')) return {};
  result.local = result.address.first(at);
  return result;
}

}  // namespace lens::formula
