// The database at hand, its views, and who may do what in it.
#include "embedded/format/lmbcs.h"
#include "embedded/formula/formula.h"
#include "embedded/formula/function.h"
#include "notes/literals.h"

namespace lens::formula {
namespace {

// --- Reading views -------------------------------------------------------------------------------------

// "server" : "path", or one text: "server!!path", a path of the same machine, or a replica ID. Empty: this
// database.
ViewPlace placeOf(const Value& place) {
  if (place.count() > 1) return {place.text(0).toString(), place.text(1).toString(), QString()};
  const QStringView one = place.text(0);
  const qsizetype mark = one.indexOf(u"!!");
  if (mark < 0) return {QString(), one.toString(), QString()};
  return {one.first(mark).toString(), one.sliced(mark + 2).toString(), QString()};
}

// Other classes than the document store's ("ODBC") need a driver of the client.
void checkClass(const Value& classAndCache) {
  const QStringView kind = classAndCache.text(0);
  if (!kind.isEmpty() && kind.compare(u"Notes", Qt::CaseInsensitive) != 0) throw Fault{fault::NotInContext};
}

// A column's place counts from 1; 0 for anything else.
int columnNumber(const Value& value) {
  const double number = value.number();
  return number >= 1 && number < 65536 ? int(number) : 0;
}

qsizetype storedSize(const Value& value, qsizetype i) {
  if (value.isText()) return toLmbcs(value.text(i)).size() + 2;
  return value.type() == Type::TimeRange ? 16 : 8;
}

// As many elements as fit into a result, with its type word and its counts.
Value cutToLimit(const Value& value) {
  constexpr qsizetype kHead = 6;
  if (value.count() < 2 || value.storedSizeBound() + 2 * value.count() + kHead <= kMaxBytes) return value;
  ListBuilder kept(value.type(), value.count());
  qsizetype size = kHead;
  for (qsizetype i = 0; i < value.count(); ++i) {
    size += storedSize(value, i);
    if (size > kMaxBytes) break;
    kept.addElement(value, i);
  }
  return kept.take();
}

Value dbColumn(const Call& call) {
  checkClass(call[0]);
  ViewPlace place = placeOf(call[1]);
  place.view = call[2].text(0).toString();
  if (!call[3].isNumber()) return Value::error(fault::NumberExpected);
  const int column = columnNumber(call[3]);
  if (column == 0) return Value::error(fault::OutOfBounds);
  const Value values = call.database().column(place, column);
  call.charge(values.count());
  return cutToLimit(values);
}

struct LookupOptions {
  bool failSilent = false, partial = false, unids = false;
};

LookupOptions lookupOptions(const Call& call) {
  LookupOptions options;
  if (!call.has(5)) return options;
  for (qsizetype i = 0; i < call[5].count(); ++i) {
    const QStringView word = call[5].text(i);
    options.failSilent |= word == u"FAILSILENT";
    options.partial |= word == u"PARTIALMATCH";
    options.unids |= word == u"RETURNDOCUMENTUNIQUEID";
  }
  return options;
}

// What is found for each key of the list, one after the other; keys without a row add nothing.
Value lookupKeys(const Call& call, const ViewPlace& place, Database::Lookup lookup, const Value& keys) {
  ListBuilder found;
  Value value;
  for (qsizetype i = 0; i < keys.count(); ++i) {
    lookup.key = keys.text(i).toString();
    if (call.database().lookup(place, lookup, value)) found.add(value);
    call.charge(1 + value.count());
  }
  return found.count() > 0 ? found.take() : Value();
}

Value dbLookup(const Call& call) {
  checkClass(call[0]);
  ViewPlace place = placeOf(call[1]);
  place.view = call[2].text(0).toString();
  const LookupOptions options = lookupOptions(call);
  Database::Lookup lookup;
  lookup.partial = options.partial;
  lookup.unids = options.unids;
  if (call[4].isNumber()) {
    lookup.column = columnNumber(call[4]);
    if (lookup.column == 0) return Value::error(fault::OutOfBounds);
  } else if (call[4].isText()) {
    lookup.item = call[4].text(0).toString();
  } else {
    return Value::error(fault::TextExpected);
  }
  const Value found = lookupKeys(call, place, lookup, call[3]);
  if (!found.isUnset()) return cutToLimit(found);
  return options.failSilent ? Value::text(u"") : Value::error(fault::NoDocument);
}

// --- The database itself -------------------------------------------------------------------------------

Value dbName(const Call& call) {
  const DatabaseProperties properties = call.database().properties();
  return Value::texts({properties.server, properties.path});
}
Value dbTitle(const Call& call) {
  return Value::text(call.database().properties().title);
}
Value replicaId(const Call& call) {
  return Value::text(call.database().properties().replicaId);
}
Value templateVersion(const Call& call) {
  return Value::text(call.database().properties().templateVersion);
}
Value dbManager(const Call& call) {
  return Value::texts(call.database().properties().managers);
}
Value userRoles(const Call& call) {
  return Value::texts(call.database().properties().userRoles);
}
Value userPrivileges(const Call& call) {
  call.database();
  return Value::text(u"");
}

Value dbExists(const Call& call) {
  const ViewPlace place = placeOf(call[0]);
  return Value::truth(call.database().exists(place.server, place.path));
}

Value serverName(const Call& call) {
  const QString server = call.database().properties().server;
  return Value::text(server.isEmpty() ? call.environment().userName() : server);
}

Value webDbName(const Call& call) {
  QString path = call.database().properties().path;
  path.replace(u'\\', u'/');
  path.replace(u' ', u"%20"_s);
  return Value::text(path);
}

Value viewTitle(const Call& call) {
  const QString title = call.database().properties().viewTitle;
  if (title.isEmpty()) return Value::error(fault::NotInContext);
  return Value::texts(title.split(u'|'));
}

// --- Access --------------------------------------------------------------------------------------------

enum Level { Depositor = 1, Reader, Author, Editor, Designer };

struct Right {
  QStringView keyword;
  int least;
};

// From which level on a user has a right, as a new entry of an access list has them.
constexpr Right kRights[] = {
    {u"CREATEDOCUMENTS", Author},
    {u"DELETEDOCUMENTS", Author},
    {u"CREATEPERSONALAGENTS", Reader},
    {u"CREATEPERSONALFOLDERSANDVIEWS", Reader},
    {u"CREATESHAREDFOLDERSANDVIEWS", Designer},
    {u"CREATELOTUSSCRIPTJAVAAGENTS", Designer},
    {u"READPUBLICDOCUMENTS", Reader},
    {u"WRITEPUBLICDOCUMENTS", Author},
    {u"REPLICATEORCOPYDOCUMENTS", Reader},
};
constexpr const char* kAccessKeywords =
    "ACCESSLEVEL CREATEDOCUMENTS DELETEDOCUMENTS CREATEPERSONALAGENTS CREATEPERSONALFOLDERSANDVIEWS "
    "CREATESHAREDFOLDERSANDVIEWS CREATELOTUSSCRIPTJAVAAGENTS READPUBLICDOCUMENTS WRITEPUBLICDOCUMENTS "
    "REPLICATEORCOPYDOCUMENTS";

bool hasRight(QStringView keyword, int level) {
  if (keyword == u"CREATEDOCUMENTS" && level == Depositor) return true;
  for (const Right& right : kRights)
    if (right.keyword == keyword) return level >= right.least;
  throw Fault{fault::WrongKeyword};
}

Value isSoftDeleteEnabled(const Call&) {
  return Value::truth(false);
}

bool isThisDatabase(const ViewPlace& place, const DatabaseProperties& own) {
  if (place.path.isEmpty()) return true;
  return place.path.compare(own.path, Qt::CaseInsensitive) == 0 &&
         place.server.compare(own.server, Qt::CaseInsensitive) == 0;
}

Value userAccess(const Call& call) {
  const DatabaseProperties own = call.database().properties();
  if (!isThisDatabase(placeOf(call[0]), own)) return Value::error(fault::NotInContext);
  const int level = own.accessLevel;
  if (call.has(1)) {
    const QStringView keyword = call[1].text(0);
    return keyword == u"ACCESSLEVEL" ? Value::number(double(level)) : Value::truth(hasRight(keyword, level));
  }
  const auto flag = [&](QStringView keyword) { return hasRight(keyword, level) ? u"1"_s : u"0"_s; };
  return Value::texts({QString::number(level), flag(u"CREATEDOCUMENTS"), flag(u"DELETEDOCUMENTS")});
}

// -------------------------------------------------------------------------------------------------------

constexpr const char* kClassNote =
    "An error for \"ODBC\" and other sources outside, and where no database is at hand, as in the formulas "
    "of "
    "a view. A column whose formula is there in compiled form only gives the items of its name. Nothing is "
    "kept between two calls, whatever the second text of the class says. "
    "Arguments that only other classes have are taken and not looked at.";

constexpr Function kDatabaseFunctions[] = {
    {"@DbColumn", 4, 7, "tttv", "class : cache; server : path; view; column",
     "The values of one column of a view, counted from 1; an empty place is this database. Not more than "
     "64 KB of them are read.",
     dbColumn, 0, Form::Call, nullptr, kClassNote},
    {"@DbExists", 1, 1, "t", "server : path", "1 when there is a database at that place.", dbExists},
    {"@DbLookup", 5, 10, "ttttvk", "class : cache; server : path; view; key; column or item; [options]",
     "Finds the rows of a view whose first sorted column holds the key, and gives the values of a column or "
     "of an item. Finding none is an error, or with [FailSilent] the empty text.",
     dbLookup, 0, Form::Call, "FAILSILENT PARTIALMATCH RETURNDOCUMENTUNIQUEID", kClassNote},
    {"@DbManager", 0, 0, "", "", "The names that may manage the database.", dbManager},
    {"@DbName", 0, 0, "", "",
     "Two texts: the server of the database, empty on this machine, and its path there.", dbName},
    {"@DbTitle", 0, 0, "", "", "The title of the database.", dbTitle},
    {"@IsSoftDeleteEnabled", 0, 0, "", "", "1 when deleted documents of the database can be brought back.",
     isSoftDeleteEnabled, 0, Form::Call, nullptr, "Always 0: what is deleted here is gone."},
    {"@ReplicaID", 0, 0, "", "",
     "The number that all replicas of the database share, such as 85255CEB:0032AC04.", replicaId},
    {"@ServerName", 0, 0, "", "", "The server of the database; on this machine the name of the user.",
     serverName},
    {"@TemplateVersion", 0, 0, "", "", "The version of the template that the database was made from.",
     templateVersion},
    {"@UserAccess", 1, 2, "tk", "server : path; [right]",
     "The user's level in the database, 0 none to 6 manager, with 1 or 0 for the right to create and to "
     "delete documents, as texts; with a keyword the level or that one right as a number.",
     userAccess, 0, Form::Call, kAccessKeywords,
     "Of the database at hand only. Rights follow from the level, since access lists are not enforced "
     "here."},
    {"@UserPrivileges", 0, 0, "", "", "The user's privileges in the database, of its oldest kind of list.",
     userPrivileges, 0, Form::Call, nullptr, "Always the empty text: databases here have roles only."},
    {"@UserRoles", 0, 0, "", "", "The roles that the user has in the database.", userRoles},
    {"@ViewTitle", 0, 0, "", "", "The name of the view at hand and, behind it, its aliases.", viewTitle, 0,
     Form::Call, nullptr, "An error where no view is at hand."},
    {"@WebDbName", 0, 0, "", "", "The path of the database as an address on the web has it.", webDbName},
};

}  // namespace

std::span<const Function> databaseFunctions() {
  return kDatabaseFunctions;
}

}  // namespace lens::formula
