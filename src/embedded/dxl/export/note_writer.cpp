#include "embedded/dxl/export/note_writer.h"

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/item_writer.h"
#include "embedded/dxl/note_elements.h"
#include "embedded/format/profile_name.h"
#include "notes/literals.h"

namespace lens {

namespace {

// The two halves of the "$Name" of a profile document, or false for a name that does not come from them.
bool profileParts(const Note& note, QString& name, QString& user) {
  const QString whole = note.text(u"$Name");
  const auto parts = profileNameParts(whole);
  if (!parts) return false;
  name = parts->profile.toString();
  user = parts->user.toString();
  return isXmlText(whole) && profileName(name, user) == whole;
}

// Form and reference stand among the items, too: the attributes are for other readers.
void writeDocumentAttributes(DxlWriter& out, const Note& note) {
  const QString form = note.text(u"Form");
  if (!form.isEmpty() && isXmlText(form)) out.attribute(u"form"_s, form);
  const Unid referred = referredNote(note);
  if (!referred.isNull()) {
    out.attribute(u"parent"_s, referred.text());
    out.flag(u"response"_s, true);
  }
  if (note.has(u"$Conflict")) out.flag(u"conflict"_s, true);
}

void beginNote(DxlWriter& out, const Note& note) {
  const quint16 noteClass = note.header.noteClass, base = noteclass::base(noteClass);
  QString name, user;
  if (base == noteclass::Document && profileParts(note, name, user)) {
    out.begin(u"profiledocument"_s);
    out.attribute(u"name"_s, name);
    if (!user.isEmpty()) out.attribute(u"username"_s, user);
  } else if (base == noteclass::Document) {
    out.begin(u"document"_s);
    writeDocumentAttributes(out, note);
  } else {
    out.begin(u"note"_s);
    out.attribute(u"class"_s, className(base));
  }
  if (noteClass & noteclass::Default) out.flag(u"default"_s, true);
  if (noteClass & noteclass::Private) out.flag(u"private"_s, true);
  if (note.header.parent != referredNote(note))
    out.mark(exactmark::kParent, note.header.parent.isNull() ? QString() : note.header.parent.text());
  out.layout();
}

void writeNoteInfo(DxlWriter& out, const NoteHeader& header) {
  out.begin(u"noteinfo"_s);
  out.attribute(u"noteid"_s, QString::number(header.id.value(), 16));
  out.attribute(u"unid"_s, header.unid.text());
  out.attribute(u"sequence"_s, QString::number(header.sequence));
  out.layout();
  out.time(u"created"_s, header.created);
  out.time(u"modified"_s, header.modified);
  out.time(u"revised"_s, header.sequenceTime);
  out.time(u"lastaccessed"_s, header.accessed);
  out.time(u"addedtofile"_s, header.added);
  out.end();
  out.layout();
}

void writeItems(ExportContext& context, const Note& note, const LargeValues& large) {
  for (qsizetype place = 0; place < note.items.size(); ++place) writeItem(context, large.whole(note, place));
}

}  // namespace

void writeNote(ExportContext& context, const Note& note, const LargeValues& large) {
  DxlWriter& out = context.out;
  beginNote(out, note);
  writeNoteInfo(out, note.header);
  try {
    writeItems(context, note, large);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    throw RuntimeError(error.number(),
                       u"%1 (in note %2)"_s.arg(error.description(), note.header.id.hexText()));
  }
  out.end();
  out.layout();
  out.check();
}

}  // namespace lens
