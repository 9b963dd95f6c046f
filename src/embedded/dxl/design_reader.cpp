#include "embedded/dxl/design_reader.h"

#include <array>

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/item_elements.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr std::array<DesignKind, 23> kKinds = {{
    {u"form", noteclass::Form, u"", u""},
    {u"subform", noteclass::Form, u"U", u""},
    {u"page", noteclass::Form, u"W", u""},
    {u"frameset", noteclass::Form, u"#", u""},
    {u"view", noteclass::View, u"", u""},
    {u"folder", noteclass::View, u"F", u""},
    {u"sharedfield", noteclass::SharedField, u"", u""},
    {u"sharedactions", noteclass::Form, u"y", u"$ACTIONS"},
    {u"sharedcolumn", noteclass::View, u"^", u""},
    {u"imageresource", noteclass::Form, u"i", u""},
    {u"fileresource", noteclass::Form, u"g", u""},
    {u"stylesheetresource", noteclass::Form, u"=", u""},
    {u"appletresource", noteclass::Form, u"@", u""},
    {u"agent", noteclass::Filter, u"f", u""},
    {u"agentdata", noteclass::Filter, u"X", u""},
    {u"webservice", noteclass::Filter, u"{", u""},
    {u"scriptlibrary", noteclass::Filter, u"", u""},
    {u"databasescript", noteclass::Filter, u"t", u"Database Script"},
    {u"helpusingdocument", noteclass::Using, u"", u""},
    {u"helpaboutdocument", noteclass::About, u"", u""},
    {u"dataconnection", noteclass::Filter, u"k", u""},
    {u"outline", noteclass::Filter, u"m", u""},
    {u"db2accessview", noteclass::Form, u"z", u""},
}};

struct Letter {
  const char16_t* attribute;
  const char16_t* letter;
};
constexpr std::array<Letter, 9> kLetters = {{{u"noreplace", u"P"},
                                             {u"propagatenoreplace", u"r"},
                                             {u"readonly", u"&"},
                                             {u"nocompose", u"C"},
                                             {u"noquery", u"D"},
                                             {u"insertdialog", u"A"},
                                             {u"newinsertdialog", u"N"},
                                             {u"otherdialog", u"H"},
                                             {u"norenderv3", u"x"}}};
constexpr std::array<Letter, 3> kWebLetters = {
    {{u"useapplet", u"B"}, {u"treatashtml", u"H"}, {u"htmlallfields", u"F"}}};
constexpr std::array<Letter, 11> kHideLetters = {{{u"v3", u"3"},
                                                  {u"v4", u"4"},
                                                  {u"v5", u"5"},
                                                  {u"v6", u"6"},
                                                  {u"v7", u"7"},
                                                  {u"v8", u"8"},
                                                  {u"v9", u"9"},
                                                  {u"notes", u"n"},
                                                  {u"web", u"w"},
                                                  {u"mobile", u"1"},
                                                  {u"design", u"~"}}};

// Attributes of every design element.
constexpr std::array<const char16_t*, 9> kCommon = {
    u"name",     u"alias",   u"comment", u"designerversion", u"fromtemplate",
    u"language", u"default", u"private", u"publicaccess"};

bool isCommon(QStringView attribute) {
  for (const char16_t* const known : kCommon) {
    if (attribute == QStringView(known)) return true;
  }
  for (const Letter& known : kLetters) {
    if (attribute == QStringView(known.attribute)) return true;
  }
  for (const Letter& known : kWebLetters) {
    if (attribute == QStringView(known.attribute)) return true;
  }
  return false;
}

}  // namespace

const DesignKind* findDesignKind(QStringView element) {
  for (const DesignKind& kind : kKinds) {
    if (element == QStringView(kind.element)) return &kind;
  }
  return nullptr;
}

const DesignKind* designKindOf(quint16 baseClass, QStringView flags) {
  const DesignKind* plain = nullptr;
  for (const DesignKind& kind : kKinds) {
    if (kind.noteClass != baseClass) continue;
    const QStringView letters(kind.letters);
    if (letters.isEmpty())
      plain = &kind;
    else if (flags.startsWith(letters))
      return &kind;
  }
  return plain;
}

QStringList letterAttributes(QStringView flags, QStringView webFlags) {
  QStringList words, hidden;
  for (const Letter& known : kLetters) {
    if (flags.contains(QStringView(known.letter)))
      words << QStringView(known.attribute).toString() + u"=true"_s;
  }
  for (const Letter& known : kHideLetters) {
    if (flags.contains(QStringView(known.letter))) hidden << QStringView(known.attribute).toString();
  }
  if (!hidden.isEmpty()) words << u"hide="_s + hidden.join(u' ');
  for (const Letter& known : kWebLetters) {
    if (webFlags.contains(QStringView(known.letter)))
      words << QStringView(known.attribute).toString() + u"=true"_s;
  }
  return words;
}

DesignReader::DesignReader(const DesignKind& kind, ReadContext& context, Note& note)
    : context_(context),
      in_(context.in),
      note_(note),
      kind_(kind),
      attributes_(context.in.attributes()),
      flags_(QStringView(kind.letters).toString()) {
  in_.markAllRead();  // keepAttributes() sees to those that the kind does not use
  note_.header.noteClass = kind.noteClass;
  if (flag(u"default")) note_.header.noteClass |= noteclass::Default;
  if (flag(u"private")) note_.header.noteClass |= noteclass::Private;
}

QString DesignReader::attribute(QStringView name) const {
  const QXmlStreamAttribute* const found = findAttribute(attributes_, name);
  return found ? found->value().toString() : QString();
}

bool DesignReader::flag(QStringView name, bool otherwise) const {
  const QString value = attribute(name);
  return value.isEmpty() ? otherwise : value == u"true";
}

void DesignReader::uses(std::initializer_list<QStringView> attributes) {
  for (const QStringView name : attributes) used_.push_back(name.toString());
}

void DesignReader::add(const QString& name, quint16 flags, const QByteArray& value) {
  if (!note_.has(name)) note_.add(name, flags, value);
}

void DesignReader::addText(const QString& name, const QString& text, quint16 flags) {
  add(name, flags, storedTextValue(text));
}

void DesignReader::readEventFormula(const QString& item, const QString& what) {
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  while (in_.nextChild()) {
    if (in_.is(u"formula") && !note_.has(item))
      add(item, itemflag::Summary, readFormula(context_, what));
    else
      in_.passOver();
  }
  keepUnlessRead(context_, note_, u"code"_s, records);
}

void DesignReader::addTitle() {
  QString title = attribute(u"name");
  if (title.isEmpty()) title = QStringView(kind_.title).toString();
  if (!attribute(u"alias").isEmpty()) title += u'|' + attribute(u"alias");
  const bool untitled = kind_.noteClass == noteclass::About || kind_.noteClass == noteclass::Using;
  if (!title.isEmpty() || !untitled) addText(u"$TITLE"_s, title);
}

void DesignReader::addVisibility() {
  for (const Letter& known : kLetters) {
    if (flag(known.attribute)) flags_ += QStringView(known.letter);
  }
  QStringList hidden = attribute(u"hide").split(u' ', Qt::SkipEmptyParts);
  for (const Letter& known : kHideLetters) {
    if (hidden.removeAll(QStringView(known.attribute)) > 0) flags_ += QStringView(known.letter);
  }
  if (hidden.isEmpty()) uses({u"hide"});
  QString web;
  for (const Letter& known : kWebLetters) {
    if (flag(known.attribute)) web += QStringView(known.letter);
  }
  addText(u"$Flags"_s, flags_);
  if (!web.isEmpty()) addText(u"$WebFlags"_s, web);
}

void DesignReader::keepAttributes() {
  QStringList kept;
  const QString element = QStringView(kind_.element).toString();
  for (const QXmlStreamAttribute& a : std::as_const(attributes_)) {
    if (a.namespaceUri() == exactmark::kNamespace) continue;
    if (FileFindings::tellsOrigin(element, a.name()))
      context_.findings.unreadAttribute(element, a.name());
    else if (!isCommon(a.name()) && !used_.contains(a.name()))
      kept.push_back(u"%1=%2"_s.arg(a.qualifiedName(), a.value()));
  }
  if (kept.isEmpty()) return;
  note_.add(u"$DXL_attributes"_s, 0, storedTextListValue(kept));
  for (const QString& one : std::as_const(kept))
    context_.findings.keptRaw(u"attribute \"%1\" of %2"_s.arg(one.section(u'=', 0, 0), element));
}

void DesignReader::finish() {
  addTitle();
  addVisibility();
  const auto addAttribute = [this](const QString& item, QStringView name) {
    if (findAttribute(attributes_, name)) addText(item, attribute(name));
  };
  addAttribute(u"$Comment"_s, u"comment");
  addAttribute(u"$DesignerVersion"_s, u"designerversion");
  addAttribute(u"$Class"_s, u"fromtemplate");
  addAttribute(u"$Language"_s, u"language");
  if (flag(u"publicaccess")) addText(u"$PublicAccess"_s, u"1"_s);
  keepAttributes();
}

void ScriptText::add(const QString& event, const QString& source) {
  QString part = event;
  const bool head = event == u"options" || event == u"declarations";
  if (head)
    part = event == u"options" ? u"(Options)"_s : u"(Declarations)"_s;
  else if (!part.isEmpty())
    part[0] = part[0].toUpper();
  const qsizetype lines = source.count(u'\n') + 1;
  text_ += u"'++LotusScript Development Environment:2:%1:%2:0:%3\n"_s.arg(QString::number(head ? 5 : 1), part,
                                                                          QString::number(lines));
  text_ += source;
  if (!text_.endsWith(u'\n')) text_ += u'\n';
}

}  // namespace lens
