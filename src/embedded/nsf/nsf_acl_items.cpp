#include "embedded/nsf/nsf_acl_items.h"

#include <array>

#include "notes/literals.h"

namespace lens {
namespace {

namespace aclflag {
constexpr quint16 NoCreation = 0x0001, Server = 0x0002, NoDeletion = 0x0004, PersonalAgents = 0x0008,
                  PersonalViews = 0x0010, Person = 0x0020, Group = 0x0040, SharedViews = 0x0080,
                  Scripts = 0x0100, ReadsPublic = 0x0200, WritesPublic = 0x0400;
}
enum Level { kDepositor = 1, kAuthor = 3 };

constexpr std::array<QStringView, 7> kLevels = {u"noaccess", u"depositor", u"reader", u"author",
                                                u"editor",   u"designer",  u"manager"};
struct GrantedFlag {
  quint16 flag;
  QStringView word;
};
constexpr GrantedFlag kGranted[] = {
    {aclflag::PersonalAgents, u"createpersonalagents"}, {aclflag::PersonalViews, u"createpersonalviews"},
    {aclflag::SharedViews, u"createsharedviews"},       {aclflag::Scripts, u"createlsjavaagents"},
    {aclflag::ReadsPublic, u"readpublicdocs"},          {aclflag::WritesPublic, u"writepublicdocs"}};

QString wordOf(QStringView name, bool truth) {
  return name.toString() + (truth ? u"=true"_s : u"=false"_s);
}

// A group of servers has both marks; so a group of persons has, and one of either has its own alone.
QString typeWord(quint16 flags) {
  const bool isGroup = flags & aclflag::Group;
  if (flags & aclflag::Server) return isGroup ? u"servergroup"_s : u"server"_s;
  if (flags & aclflag::Person) return isGroup ? u"persongroup"_s : u"person"_s;
  return isGroup ? u"mixedgroup"_s : u"unspecified"_s;
}

// What the level does not allow is not allowed, whatever the flags say.
QString entryText(const NsfAcl& acl, const NsfAclEntry& entry) {
  const quint16 flags = entry.flags;
  const int level = qBound(0, entry.level, int(kLevels.size()) - 1);
  const bool isAuthor = level == kAuthor;
  QStringList words{entry.name};
  if (entry.name == u"-Default-") words += u"default=true"_s;
  words += u"level="_s + kLevels[size_t(level)].toString();
  words += u"type="_s + typeWord(flags);
  words += wordOf(u"createdocs",
                  level == kDepositor || level > kAuthor || (isAuthor && !(flags & aclflag::NoCreation)));
  words += wordOf(u"deletedocs", level >= kAuthor && !(flags & aclflag::NoDeletion));
  for (const GrantedFlag& granted : kGranted) words += wordOf(granted.word, flags & granted.flag);
  const QStringList roles = acl.rolesOf(entry);
  if (!roles.isEmpty()) words += u"roles="_s + roles.join(u',');
  return words.join(u"; "_s);
}

}  // namespace

void addAclItems(const NsfAcl& acl, Note& note) {
  QStringList entries, roles;
  for (const NsfAclEntry& entry : acl.entries) entries += entryText(acl, entry);
  for (qsizetype i = 0; i < acl.roleNames.size(); ++i)
    if (!acl.roleNames[i].isEmpty()) roles += acl.role(i);
  note.add(u"$ACLEntries"_s, itemflag::Summary, textListValue(entries));
  note.add(u"$ACLRoles"_s, itemflag::Summary, textListValue(roles));
  note.add(u"$ACLLog"_s, 0, textListValue(acl.history));
  note.add(u"$ACLAttributes"_s, 0, textListValue({}));
}

}  // namespace lens
