#include "embedded/dxl/export/note_writer.h"

#include <QSet>

#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/export/item_writer.h"
#include "embedded/dxl/note_elements.h"
#include "embedded/store/case_key.h"
#include "embedded/store/profile_name.h"

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
  if (!form.isEmpty() && isXmlText(form)) out.attribute(QStringLiteral("form"), form);
  const Unid referred = referredNote(note);
  if (!referred.isNull()) {
    out.attribute(QStringLiteral("parent"), referred.text());
    out.flag(QStringLiteral("response"), true);
  }
  if (note.has(u"$Conflict")) out.flag(QStringLiteral("conflict"), true);
}

void beginNote(DxlWriter& out, const Note& note) {
  const quint16 noteClass = note.header.noteClass, base = noteclass::base(noteClass);
  QString name, user;
  if (base == noteclass::Document && profileParts(note, name, user)) {
    out.begin(QStringLiteral("profiledocument"));
    out.attribute(QStringLiteral("name"), name);
    if (!user.isEmpty()) out.attribute(QStringLiteral("username"), user);
  } else if (base == noteclass::Document) {
    out.begin(QStringLiteral("document"));
    writeDocumentAttributes(out, note);
  } else {
    out.begin(QStringLiteral("note"));
    out.attribute(QStringLiteral("class"), className(base));
  }
  if (noteClass & noteclass::Default) out.flag(QStringLiteral("default"), true);
  if (noteClass & noteclass::Private) out.flag(QStringLiteral("private"), true);
  if (note.header.parent != referredNote(note))
    out.mark(exactmark::kParent, note.header.parent.isNull() ? QString() : note.header.parent.text());
  out.layout();
}

void writeNoteInfo(DxlWriter& out, const NoteHeader& header) {
  out.begin(QStringLiteral("noteinfo"));
  out.attribute(QStringLiteral("noteid"), QString::number(header.id, 16));
  out.attribute(QStringLiteral("unid"), header.unid.text());
  out.attribute(QStringLiteral("sequence"), QString::number(header.sequence));
  out.layout();
  out.time(QStringLiteral("created"), header.created);
  out.time(QStringLiteral("modified"), header.modified);
  out.time(QStringLiteral("revised"), header.sequenceTime);
  out.time(QStringLiteral("lastaccessed"), header.accessed);
  out.time(QStringLiteral("addedtofile"), header.added);
  out.end();
  out.layout();
}

void writeItems(ExportContext& context, const Note& note) {
  QSet<QString> richTexts;
  for (const Item& item : note.items) {
    bool joined = false;
    if (item.type() == itemtype::RichText) {
      const QString name = caseKey(item.name);
      joined = richTexts.contains(name);
      richTexts.insert(name);
    }
    writeItem(context, item, joined);
  }
}

}  // namespace

void writeNote(ExportContext& context, const Note& note) {
  DxlWriter& out = context.out;
  beginNote(out, note);
  writeNoteInfo(out, note.header);
  try {
    writeItems(context, note);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    throw RuntimeError(error.number(),
                       QStringLiteral("%1 (in note %2)")
                           .arg(error.description(), QString::number(note.header.id, 16).toUpper()));
  }
  out.end();
  out.layout();
  out.check();
}

}  // namespace lens
