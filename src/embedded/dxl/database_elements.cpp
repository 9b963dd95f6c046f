#include "embedded/dxl/database_elements.h"

#include "embedded/dxl/acl_element.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/note_elements.h"
#include "embedded/format/unid.h"
#include "notes/literals.h"

namespace lens {

namespace {

void importAcl(ImportContext& context) {
  QString mark;
  if (readMark(context.in, exactmark::kNoteFollows, mark)) return context.in.skip();
  Note note;
  const bool hasHeader = readAcl(context, note);
  saveImported(context, note, hasHeader ? UnidOf::File : UnidOf::Present);
}

}  // namespace

bool isAddressBookTemplate(const DatabaseInfo& info) {
  const QString addressBook = u"StdR4PublicAddressBook"_s;
  return info.templateName.compare(addressBook, Qt::CaseInsensitive) == 0 ||
         info.inheritsFrom.compare(addressBook, Qt::CaseInsensitive) == 0;
}

namespace {

// What somebody else has set meanwhile stays, unless the file says something else.
DatabaseInfo withChanges(DatabaseInfo info, const DatabaseInfo& before, const DatabaseInfo& after) {
  for (const auto part : {&DatabaseInfo::title, &DatabaseInfo::replicaId, &DatabaseInfo::templateName,
                          &DatabaseInfo::inheritsFrom, &DatabaseInfo::categories})
    if (after.*part != before.*part) info.*part = after.*part;
  if (after.publicAddressBook != before.publicAddressBook) info.publicAddressBook = after.publicAddressBook;
  return info;
}

void applyInfo(ImportContext& context, DatabaseInfo& info) {
  const DxlReader& in = context.in;
  const DatabaseInfo before = info;
  const auto take = [&in](QString& place, QStringView name) {
    if (hasExactAttribute(in, name)) place = exactAttribute(in, name);
  };
  take(info.title, u"title");
  take(info.templateName, u"templatename");
  take(info.inheritsFrom, u"fromtemplate");
  take(info.categories, u"categories");
  const QString replica = in.attribute(u"replicaid").toUpper();
  quint64 number = 0;
  if (!replica.isEmpty() && !parseHexId(replica, number))
    in.fail(u"\"%1\" is no replica ID"_s.arg(replica.left(64)));
  if (!replica.isEmpty()) info.replicaId = replica;
  info.publicAddressBook = info.publicAddressBook || isAddressBookTemplate(info);
  QString marked;
  if (readMark(in, exactmark::kAddressBook, marked)) info.publicAddressBook = marked == u"true";
  context.atEnd(
      [&target = context.target, before, info] { target.setInfo(withChanges(target.info(), before, info)); });
}

// Switches and settings that have no place among the properties: they stand in the icon note, and go out
// with an export again.
void keepAttributes(ImportContext& context, Note& icon) {
  QStringList kept;
  for (const QString& word : context.in.takeUnread()) {
    const QString name = word.section(u'=', 0, 0);
    if (FileFindings::tellsOrigin(u"database", name)) {
      context.findings.unreadAttribute(u"database", name);
      continue;
    }
    kept.push_back(word);
    context.findings.keptRaw(u"attribute \"%1\" of database"_s.arg(name));
  }
  if (!kept.isEmpty()) icon.add(u"$DXL_attributes"_s, 0, storedTextListValue(kept));
}

// The title as the icon note holds it: title and categories, then the template's own name and the one
// it inherits from.
QString informationBuffer(const DatabaseInfo& info) {
  QString text = info.title;
  if (!info.categories.isEmpty()) text += u'\n' + info.categories;
  if (!info.templateName.isEmpty()) text += u"\n#1"_s + info.templateName;
  if (!info.inheritsFrom.isEmpty()) text += u"\n#2"_s + info.inheritsFrom;
  return text;
}

// Items that nothing interprets go to the icon note; it is made where the file brings none.
void completeIconNote(ImportContext& context, const DatabaseInfo& info, const QVector<Item>& kept,
                      bool inFile) {
  Note icon;
  const NoteId id = context.target.notes().specialNote(noteclass::Icon);
  const bool present = id && context.target.notes().read(id, icon);
  if (inFile && kept.isEmpty()) return;
  icon.header.noteClass = present ? icon.header.noteClass : noteclass::Icon;
  if (!inFile && (context.applyProperties || !present)) {
    icon.items.removeIf([](const Item& item) { return sameItemName(item.name, u"$TITLE"); });
    icon.add(u"$TITLE"_s, itemflag::Summary, storedTextValue(informationBuffer(info)));
    if (!icon.has(u"$Flags")) icon.add(u"$Flags"_s, itemflag::Summary, textValue(u""));
  }
  for (const Item& item : kept) {
    icon.items.removeIf([&item](const Item& old) { return sameItemName(old.name, item.name); });
  }
  icon.items += kept;
  context.target.notes().saveAsGiven(icon);
}

}  // namespace

void importDatabase(ImportContext& context) {
  DxlReader& in = context.in;
  DatabaseInfo info = context.target.info();
  Note loose;  // collects what has no note of its own
  // A database that had no icon note gets none.
  QString mark;
  context.wholeDatabase = readMark(in, exactmark::kWhole, mark);
  if (context.applyProperties) {
    applyInfo(context, info);
    keepAttributes(context, loose);
  } else {
    context.findings.ignored(u"properties of the database, as was asked"_s);
    in.markAllRead();
  }
  bool iconInFile = context.wholeDatabase;
  while (in.nextChild()) {
    if (in.is(u"acl")) {
      importAcl(context);
    } else if (in.is(u"databaseinfo")) {
      context.findings.ignored(u"databaseinfo: sizes and counts of the original"_s);
      in.skip();
    } else if (isNoteElement(in.name())) {
      iconInFile = iconInFile || classOfNote(in) == noteclass::Icon;
      importNote(context);
    } else {
      keepElement(context, loose);
    }
  }
  context.atEnd([&context, info, kept = loose.items, iconInFile] {
    completeIconNote(context, info, kept, iconInFile);
  });
}

}  // namespace lens
