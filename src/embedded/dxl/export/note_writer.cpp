#include "embedded/dxl/export/note_writer.h"

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/design_writer.h"
#include "embedded/dxl/export/kept_elements.h"
#include "embedded/dxl/export/note_parts.h"
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
    const QString word = className(base);
    // A class without a word of its own: other readers take the note for one that shows nowhere.
    out.attribute(u"class"_s, word.isEmpty() ? u"helpindex"_s : word);
    if (word.isEmpty()) out.mark(exactmark::kClass, QString::number(noteClass, 16));
    if (noteClass & noteclass::Default) out.flag(u"default"_s, true);
    if (noteClass & noteclass::Private) out.flag(u"private"_s, true);
  }
  if (base == noteclass::Document && noteClass != base)
    out.mark(exactmark::kClass, QString::number(noteClass, 16));
  if (note.header.parent != referredNote(note))
    out.mark(exactmark::kParent, note.header.parent.isNull() ? QString() : note.header.parent.text());
  out.layout();
}

// The language of texts stands before the items; false when the first item does not keep it.
bool writeTextProperties(DxlWriter& out, const Note& note) {
  const QString xml = note.items.isEmpty() ? QString() : keptElement(note.items.first(), u"textproperties");
  if (!xml.isEmpty()) out.verbatim(xml + u'\n');
  return !xml.isEmpty();
}

}  // namespace

void writeNote(ExportContext& context, const Note& note, const LargeValues& large) {
  if (large.isEmpty() && writeDesign(context, note)) return;
  DxlWriter& out = context.out;
  beginNote(out, note);
  writeNoteInfo(out, note.header);
  const qsizetype from = writeTextProperties(out, note) ? 1 : 0;
  try {
    writeItems(context, note, large, from);
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
