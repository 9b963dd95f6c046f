#include "embedded/dxl/dxl_exporter.h"

#include "embedded/dxl/database_elements.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/acl_writer.h"
#include "embedded/dxl/export/kept_elements.h"
#include "embedded/dxl/export/note_writer.h"
#include "notes/literals.h"

namespace lens {

namespace {

// Notes that stand, as a whole or in parts, in elements of the database before all others.
struct Foremost {
  Note acl, icon;  // their IDs are null where they are not among the notes of the file
  KeptSettings settings;
};

Note namedNote(const Database& database, const QVector<NoteId>& ids, quint16 noteClass) {
  Note note;
  const NoteId id = database.notes().specialNote(noteClass);
  if (!id || !ids.contains(id) || !database.notes().read(id, note)) return {};
  return note;
}

Foremost foremost(const Database& database, const QVector<NoteId>& ids) {
  Foremost notes{namedNote(database, ids, noteclass::Acl), namedNote(database, ids, noteclass::Icon), {}};
  notes.settings = keptSettings(notes.icon);
  return notes;
}

void writeProperties(DxlWriter& out, const DatabaseInfo& info) {
  out.attribute(u"version"_s, u"9.0"_s);
  out.attribute(u"maintenanceversion"_s, u"1.0"_s);
  if (!info.replicaId.isEmpty()) out.attribute(u"replicaid"_s, info.replicaId);
  out.exactAttribute(u"title"_s, info.title);
  if (!info.templateName.isEmpty()) out.exactAttribute(u"templatename"_s, info.templateName);
  if (!info.inheritsFrom.isEmpty()) out.exactAttribute(u"fromtemplate"_s, info.inheritsFrom);
  if (!info.categories.isEmpty()) out.exactAttribute(u"categories"_s, info.categories);
  if (info.publicAddressBook != isAddressBookTemplate(info))
    out.mark(exactmark::kAddressBook, info.publicAddressBook ? u"true"_s : u"false"_s);
}

void writeDatabaseInfo(DxlWriter& out, const Database& database) {
  out.begin(u"databaseinfo"_s);
  out.attribute(u"numberofdocuments"_s, QString::number(database.notes().noteCount(noteclass::Document)));
  out.end();
  out.layout();
}

// What a note that is no longer there means: nothing when all are wanted, a fault when this one is.
enum class Missing { PassOver, Raise };

void writeNotes(ExportContext& context, const QVector<NoteId>& ids, const Foremost& first, Missing missing,
                int& done) {
  NoteReader reader(context.database);
  for (const NoteId id : ids) {
    if (!context.goOn()) throw ExportCancelled();
    Note note;
    LargeValues large;
    if (id == first.acl.header.id) {
      // It stands before the notes.
    } else if (reader.read(id, note, large)) {
      if (id == first.icon.header.id) note.items.resize(note.items.size() - first.settings.items);
      writeNote(context, note, large);
    } else if (missing == Missing::Raise) {
      throw RuntimeError(
          enginefault::UnknownNote,
          u"%1: there is no note %2 (it may have been deleted)"_s.arg(context.database.path(), id.hexText()));
    }
    ++done;
  }
}

bool write(const Database& database, const QVector<NoteId>& ids, bool whole, QIODevice& target,
           const ExportProgress& progress) {
  DxlWriter out(target);
  int done = 0;
  const int all = int(ids.size());
  ExportContext context{database, out, [&] { return !progress || progress(done, all); }};
  out.startDocument();
  out.beginRoot(u"database"_s);
  Foremost first = foremost(database, ids);
  writeProperties(out, database.info());
  for (const QString& word : std::as_const(first.settings.attributes))
    out.attribute(word.section(u'=', 0, 0), word.section(u'=', 1));
  if (whole && !first.icon.header.id) out.mark(exactmark::kWhole, u"true"_s);
  out.layout();
  if (whole) writeDatabaseInfo(out, database);
  if (first.acl.header.id && !writeAcl(out, first.acl)) first.acl = {};
  for (const QString& xml : std::as_const(first.settings.elements)) out.verbatim(xml + u'\n');
  try {
    writeNotes(context, ids, first, whole ? Missing::PassOver : Missing::Raise, done);
    if (!context.goOn()) return false;
  } catch (const ExportCancelled&) {
    return false;
  }
  out.end();
  out.endDocument();
  return true;
}

QVector<NoteId> allNotes(const Database& database) {
  constexpr quint16 kAnyClass = 0xFFFF;
  const QVector<NoteSummary> notes = database.notes().list(kAnyClass);
  QVector<NoteId> ids;
  ids.reserve(notes.size());
  for (const NoteSummary& note : notes) ids.push_back(note.id);
  return ids;
}

}  // namespace

bool exportDatabase(const Database& database, QIODevice& target, const ExportProgress& progress) {
  return write(database, allNotes(database), true, target, progress);
}

bool exportNotes(const Database& database, const QVector<NoteId>& noteIds, QIODevice& target,
                 const ExportProgress& progress) {
  return write(database, noteIds, false, target, progress);
}

}  // namespace lens
