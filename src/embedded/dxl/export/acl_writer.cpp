#include "embedded/dxl/export/acl_writer.h"

#include <algorithm>

#include "embedded/dxl/acl_element.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/read_back.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/stored_lists.h"
#include "notes/literals.h"

namespace lens {

namespace {

// Words of an attribute; none for a text.
struct AclAttribute {
  QStringView name;
  std::initializer_list<QStringView> words = {};
};
constexpr std::initializer_list<QStringView> kTruth = {u"true", u"false"};
constexpr std::initializer_list<QStringView> kLevels = {u"noaccess", u"depositor", u"reader", u"author",
                                                        u"editor",   u"designer",  u"manager"};
constexpr std::initializer_list<QStringView> kEntryTypes = {u"unspecified", u"person",      u"server",
                                                            u"mixedgroup",  u"persongroup", u"servergroup"};
constexpr std::initializer_list<QStringView> kModifications = {u"none", u"authorreaderfields",
                                                               u"namesfields"};
constexpr std::initializer_list<AclAttribute> kOfList = {{u"adminserver"},
                                                         {u"adminservermaymodify", kModifications},
                                                         {u"adminreaderauthor", kTruth},
                                                         {u"consistentacl", kTruth},
                                                         {u"maxinternetaccess", kLevels},
                                                         {u"version"},
                                                         {u"maintenanceversion"},
                                                         {u"milestonebuild"},
                                                         {u"replicaid"}};
constexpr std::initializer_list<AclAttribute> kOfEntry = {{u"level", kLevels},
                                                          {u"default", kTruth},
                                                          {u"type", kEntryTypes},
                                                          {u"createdocs", kTruth},
                                                          {u"deletedocs", kTruth},
                                                          {u"createpersonalagents", kTruth},
                                                          {u"createpersonalviews", kTruth},
                                                          {u"createsharedviews", kTruth},
                                                          {u"createlsjavaagents", kTruth},
                                                          {u"readpublicdocs", kTruth},
                                                          {u"writepublicdocs", kTruth}};

// Whether "name=value" is an attribute of the element with a value that it may have.
bool isAclAttribute(QStringView word, std::initializer_list<AclAttribute> known) {
  const qsizetype equals = word.indexOf(u'=');
  if (equals < 0) return false;
  for (const AclAttribute& one : known) {
    if (word.first(equals) != one.name) continue;
    const QStringView value = word.sliced(equals + 1);
    return one.words.size() == 0 || std::find(one.words.begin(), one.words.end(), value) != one.words.end();
  }
  return false;
}

bool writeAclAttributes(DxlWriter& out, const QStringList& words, std::initializer_list<AclAttribute> known) {
  QStringList seen;
  for (const QString& word : words) {
    const QString name = word.section(u'=', 0, 0);
    if (!isAclAttribute(word, known) || seen.contains(name)) return false;
    seen.push_back(name);
    out.attribute(name, word.section(u'=', 1));
  }
  return true;
}

void writeTextElements(DxlWriter& out, const QString& element, const QStringList& texts) {
  for (const QString& text : texts) {
    out.begin(element);
    out.literal(text);
    out.end();
    out.layout();
  }
}

// "name; level=manager; ...; roles=[A],[B]": what stands before the attributes is the name.
bool writeAclEntry(DxlWriter& out, const QString& entry) {
  QStringList parts = entry.split(u"; "_s);
  QStringList roles, attributes;
  if (parts.size() > 1 && parts.last().startsWith(u"roles=")) roles = parts.takeLast().mid(6).split(u',');
  while (parts.size() > 1 && isAclAttribute(parts.last(), kOfEntry)) attributes.prepend(parts.takeLast());
  out.begin(u"aclentry"_s);
  out.attribute(u"name"_s, parts.join(u"; "_s));
  const bool levelled = std::any_of(attributes.cbegin(), attributes.cend(),
                                    [](const QString& word) { return word.startsWith(u"level="); });
  if (!levelled || !writeAclAttributes(out, attributes, kOfEntry)) return false;
  for (const QString& role : std::as_const(roles)) {
    out.begin(u"role"_s);
    out.literal(role);
    out.end();
  }
  out.end();
  out.layout();
  return true;
}

QString headerMark(const NoteHeader& header) {
  QStringList words = {header.unid.text(), QString::number(header.sequence),
                       QString::number(header.noteClass, 16)};
  for (const TimeDate& time :
       {header.sequenceTime, header.created, header.modified, header.accessed, header.added})
    words.push_back(timeDateHex(time));
  return words.join(u' ');
}

QStringList textsOf(const Note& note, QStringView name) {
  QStringList texts;
  if (const Item* const item = note.find(name)) {
    StoredTexts(item->data()).forEach([&](QByteArrayView bytes, bool) { texts.push_back(fromLmbcs(bytes)); });
  }
  return texts;
}

bool writeAclContent(DxlWriter& out, const Note& note, bool noteFollows) {
  const QStringList entries = textsOf(note, u"$ACLEntries");
  if (entries.isEmpty()) return false;
  out.begin(u"acl"_s);
  if (!writeAclAttributes(out, textsOf(note, u"$ACLAttributes"), kOfList)) return false;
  if (noteFollows)
    out.mark(exactmark::kNoteFollows, u"true"_s);
  else
    out.mark(exactmark::kHeader, headerMark(note.header));
  out.layout();
  writeTextElements(out, u"role"_s, textsOf(note, u"$ACLRoles"));
  for (const QString& entry : entries) {
    if (!writeAclEntry(out, entry)) return false;
  }
  writeTextElements(out, u"logentry"_s, textsOf(note, u"$ACLLog"));
  out.end();
  out.layout();
  return true;
}

bool isOfAcl(const Item& item) {
  const auto names = {u"$ACLEntries", u"$ACLRoles", u"$ACLLog", u"$ACLAttributes"};
  return std::any_of(names.begin(), names.end(),
                     [&](QStringView name) { return sameItemName(item.name, name); });
}

// Whether an import makes the same note of what would be written.
bool aclGivesBack(const Note& note) {
  Note again;
  const auto write = [&](DxlWriter& writer) {
    writer.beginRoot(u"database"_s);
    const bool written = writeAclContent(writer, note, false);
    writer.end();
    return written;
  };
  const auto read = [&](ReadContext& context) {
    context.in.next();
    if (!context.in.nextChild()) return false;
    readAcl(context, again);
    return true;
  };
  return comesBack(write, read) && std::equal(note.items.cbegin(), note.items.cend(), again.items.cbegin(),
                                              again.items.cend(), isSameItem);
}

}  // namespace

bool writeAcl(DxlWriter& out, const Note& note) {
  Note list = note;
  list.items.removeIf([](const Item& item) { return !isOfAcl(item); });
  if (!aclGivesBack(list)) return false;
  const bool isAll = list.items.size() == note.items.size();
  return writeAclContent(out, list, !isAll) && isAll;
}

}  // namespace lens
