#include "embedded/dxl/note_elements.h"

#include "embedded/dxl/datetime_element.h"
#include "embedded/dxl/design_reader.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/item_elements.h"
#include "embedded/format/profile_name.h"
#include "embedded/format/single_notes.h"
#include "embedded/format/stored_lists.h"
#include "embedded/formula_context/note_formulas.h"
#include "embedded/store/large_note.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr QStringView kNamespace = u"http://www.lotus.com/dxl";

[[noreturn]] void noDxl(const DxlReader& in, const QString& reason) {
  try {
    in.fail(reason);
  } catch (const DxlFault& fault) {
    throw DxlFault(enginefault::NoDxl, fault.line, fault.column, u"this is no DXL file: %1"_s.arg(reason));
  }
}

struct ClassName {
  const char16_t* name;
  quint16 value;
};
constexpr ClassName kClasses[] = {{u"document", noteclass::Document},
                                  {u"data", noteclass::Document},
                                  {u"helpaboutdocument", noteclass::About},
                                  {u"form", noteclass::Form},
                                  {u"view", noteclass::View},
                                  {u"icon", noteclass::Icon},
                                  {u"designcollection", noteclass::Design},
                                  {u"acl", noteclass::Acl},
                                  {u"helpindex", noteclass::HelpIndex},
                                  {u"helpusingdocument", noteclass::Using},
                                  {u"help", noteclass::Using},
                                  {u"filter", noteclass::Filter},
                                  {u"sharedfield", noteclass::SharedField},
                                  {u"replicationformula", noteclass::ReplicationFormula}};

quint16 numberedClass(const DxlReader& in, const QString& text) {
  bool number = false;
  const uint value = text.toUInt(&number, 16);
  if (!number || value == 0 || value > 0xFFFF) in.fail(u"\"%1\" is no class of notes"_s.arg(text));
  return quint16(value);
}

quint16 classOf(const DxlReader& in) {
  const QString name = in.attribute(u"class");
  for (const ClassName& known : kClasses) {
    if (name == QStringView(known.name)) return known.value;
  }
  return numberedClass(in, name);
}

// What stands before the content of a note, and becomes items only at its end.
struct Prolog {
  QStringList updatedBy;
  QVector<TimeDate> revisions;
};

TimeDate readTimeOf(ImportContext& context) {
  const QString what = context.in.name().toString();
  TimeDate time;
  while (context.in.nextChild()) time = readDatetime(context, what);
  return time;
}

void readNoteInfo(ImportContext& context, NoteHeader& header) {
  DxlReader& in = context.in;
  readUnid(in, header.unid);
  header.sequence = in.attribute(u"sequence").toUInt();
  while (in.nextChild()) {
    if (in.is(u"created"))
      header.created = readTimeOf(context);
    else if (in.is(u"modified"))
      header.modified = readTimeOf(context);
    else if (in.is(u"revised"))
      header.sequenceTime = readTimeOf(context);
    else if (in.is(u"lastaccessed"))
      header.accessed = readTimeOf(context);
    else if (in.is(u"addedtofile"))
      header.added = readTimeOf(context);
    else {
      context.findings.ignored(u"noteinfo/%1"_s.arg(in.name()));
      in.skip();
    }
  }
}

bool readProlog(ImportContext& context, Note& note, Prolog& prolog) {
  DxlReader& in = context.in;
  if (in.is(u"noteinfo")) {
    readNoteInfo(context, note.header);
  } else if (in.is(u"updatedby")) {
    prolog.updatedBy = readTexts(context);
  } else if (in.is(u"revisions")) {
    while (in.nextChild()) prolog.revisions.push_back(readDatetime(context, u"revisions"_s));
  } else if (in.is(u"wassignedby")) {
    context.findings.ignored(u"wassignedby: information only"_s);
    in.skip();
  } else {
    return false;
  }
  return true;
}

void addUnlessThere(Note& note, const QString& name, quint16 flags, const QByteArray& value) {
  if (!note.has(name)) note.add(name, flags, value);
}

void addProlog(Note& note, const Prolog& prolog) {
  if (!prolog.updatedBy.isEmpty())
    addUnlessThere(note, u"$UpdatedBy"_s, itemflag::Summary | itemflag::Names,
                   storedTextListValue(prolog.updatedBy));
  if (!prolog.revisions.isEmpty())
    addUnlessThere(note, u"$Revisions"_s, itemflag::Summary, timeListValue(prolog.revisions));
}

// Attributes of "document" that stand for items.
struct DocumentAttributes {
  QString form, parent;
  bool response = false, conflict = false, truncated = false;

  explicit DocumentAttributes(const DxlReader& in)
      : form(in.attribute(u"form")),
        parent(in.attribute(u"parent")),
        response(in.flag(u"response")),
        conflict(in.flag(u"conflict")),
        truncated(in.flag(u"truncated")) {}
};

void addDocumentItems(ImportContext& context, Note& note, const DocumentAttributes& attributes) {
  if (!attributes.form.isEmpty() && !note.has(u"Form"))
    note.items.push_front({u"Form"_s, itemflag::Summary, storedTextValue(attributes.form)});
  if (!attributes.parent.isEmpty())
    addUnlessThere(note, u"$REF"_s, itemflag::Summary, noteRefsValue({Unid::fromText(attributes.parent)}));
  if (attributes.response && !note.has(u"$REF")) context.findings.unreadAttribute(u"document", u"response");
  if (attributes.conflict) addUnlessThere(note, u"$Conflict"_s, itemflag::Summary, textValue(u""));
  if (attributes.truncated) {
    note.add(u"$DXL_truncated"_s, 0, textValue(u"true"));
    context.findings.keptRaw(u"mark \"truncated\" of a document"_s);
  }
}

void readDocument(ImportContext& context, Note& note) {
  DxlReader& in = context.in;
  const bool raw = in.is(u"note"), profile = in.is(u"profiledocument");
  if (raw) note.header.noteClass = classOf(in);
  if (in.flag(u"default")) note.header.noteClass |= noteclass::Default;
  if (in.flag(u"private")) note.header.noteClass |= noteclass::Private;
  QString exactClass;
  if (readMark(in, exactmark::kClass, exactClass)) note.header.noteClass = numberedClass(in, exactClass);
  const DocumentAttributes attributes(in);
  QString exactParent;
  const bool parentMarked = readMark(in, exactmark::kParent, exactParent);
  Unid parent, marked;
  if (!exactParent.isEmpty() && !Unid::parse(exactParent, marked))
    in.fail(u"\"%1\" is no UNID of a parent"_s.arg(exactParent.left(64)));
  if (!attributes.parent.isEmpty() && !Unid::parse(attributes.parent, parent))
    in.fail(u"\"%1\" is no UNID of a parent"_s.arg(attributes.parent.left(64)));
  const QString name = profile ? profileName(in.attribute(u"name"), in.attribute(u"username")) : QString();
  Prolog prolog;
  while (in.nextChild()) {
    if (in.is(u"item"))
      readItem(context, note);
    else if (in.is(u"mime"))
      readMime(context, note, u"Body"_s);
    else if (!readProlog(context, note, prolog))
      keepElement(context, note);
    context.spool.take(note);
    context.pause();
  }
  addDocumentItems(context, note, attributes);
  if (profile) addUnlessThere(note, u"$Name"_s, itemflag::Summary, storedTextValue(name));
  addProlog(note, prolog);
  // The parent of a response comes as an attribute or as the item itself.
  note.header.parent = parentMarked ? marked : referredNote(note);
}

// The words are the places of the items as they came.
bool putInOrder(Note& note, const QString& order) {
  const QStringList words = order.split(u' ');
  if (words.size() != note.items.size()) return false;
  QVector<Item> items(words.size());
  QVector<bool> taken(words.size());
  for (qsizetype i = 0; i < words.size(); ++i) {
    bool number = false;
    const uint place = words[i].toUInt(&number);
    if (!number || place >= uint(items.size()) || taken[place]) return false;
    taken[place] = true;
    items[place] = note.items[i];
  }
  note.items = items;
  return true;
}

void readDesign(ImportContext& context, Note& note, const DesignKind& kind) {
  Prolog prolog;
  QString order;
  readMark(context.in, exactmark::kOrder, order);
  readDesignElement(kind, context, note, [&] {
    context.pause();
    if (!context.in.is(u"item")) return readProlog(context, note, prolog);
    readItem(context, note);
    return true;
  });
  addProlog(note, prolog);
  if (!order.isEmpty() && !putInOrder(note, order))
    context.in.fail(u"\"%1\" is no order of the items"_s.arg(order.left(200)));
}

void takeUnidOfPresent(const Database& target, Note& note) {
  Note present;
  const NoteId id = target.notes().specialNote(noteclass::base(note.header.noteClass));
  if (id && target.notes().read(id, present)) note.header.unid = present.header.unid;
}

// Exports of a design come as a folder of files, where the settings of the database and its icon note stand
// apart: settings that an earlier file brought stay, unless the new note has its own.
void keepDatabaseSettings(Database& target, Note& icon) {
  Note present;
  const NoteId id = target.notes().specialNote(noteclass::Icon);
  if (!id || !target.notes().read(id, present)) return;
  QVector<Item> settings;
  for (const Item& item : std::as_const(present.items)) {
    if (item.name.startsWith(kKeptPrefix) && !icon.has(item.name)) settings.push_back(item);
  }
  icon.items += settings;
}

// "$ViewFormat, column $0 of By date".
QString placeOf(const NoteFormula& formula, const Note& note) {
  QString place = formula.item;
  if (!formula.place.isEmpty()) place += u", "_s + formula.place;
  const QString title = note.text(u"$TITLE").section(u'|', 0, 0).simplified();
  return title.isEmpty() ? place : u"%1 of %2"_s.arg(place, title);
}

// Formulas of a design that nobody can run are named, with what stands in the way.
void tellFormulas(FileFindings& findings, const Note& note) {
  if (noteclass::base(note.header.noteClass) == noteclass::Document) return;
  using State = formula::CompiledReading::State;
  for (const NoteFormula& found : formulasOf(note)) {
    if (found.reading.canRun()) continue;
    if (found.reading.state == State::Hidden)
      findings.keptRaw(u"hidden formula"_s);
    else
      findings.unreadFormula(placeOf(found, note), found.reading.problem);
  }
}

}  // namespace

Unid referredNote(const Note& note) {
  const Item* reference = note.find(u"$REF");
  if (!reference || reference->type() != itemtype::NoteRefs) return {};
  return StoredReferences(reference->data()).first();
}

QString className(quint16 baseClass) {
  for (const ClassName& known : kClasses) {
    const bool written = known.value != noteclass::Acl && known.value != noteclass::Design;
    if (known.value == baseClass && written) return QString::fromUtf16(known.name);
  }
  return {};
}

bool isNoteElement(QStringView element) {
  return element == u"note" || element == u"document" || element == u"profiledocument" ||
         findDesignKind(element) != nullptr;
}

void goToRoot(DxlReader& in) {
  try {
    in.next();
  } catch (const DxlFault& fault) {
    if (in.rootSeen()) throw;
    noDxl(in, fault.description());
  }
  const bool ours = in.namespaceUri().isEmpty() || in.namespaceUri() == kNamespace;
  if (!ours || (!in.is(u"database") && !isNoteElement(in.name())))
    noDxl(in, u"its root is \"%1\""_s.arg(in.name()));
}

quint16 classOfNote(const DxlReader& in) {
  if (const DesignKind* const kind = findDesignKind(in.name())) return kind->noteClass;
  QString exact;
  if (readMark(in, exactmark::kClass, exact)) return noteclass::base(numberedClass(in, exact));
  return in.is(u"note") ? classOf(in) : noteclass::Document;
}

void readUnid(const DxlReader& in, Unid& unid) {
  const QString text = in.attribute(u"unid");
  if (!text.isEmpty() && !Unid::parse(text, unid)) in.fail(u"\"%1\" is no UNID"_s.arg(text.left(64)));
}

NoteId otherInstance(const Database& target, quint16 noteClass, const Unid& unid) {
  const quint16 base = noteclass::base(noteClass);
  if (!isSingleInstance(base)) return {};
  for (const NoteSummary& present : target.notes().list(base))
    if (noteclass::base(present.noteClass) == base && present.unid != unid) return present.id;
  return {};
}

void importNote(ImportContext& context) {
  Note note;
  context.spool.clear();
  const DesignKind* const kind = findDesignKind(context.in.name());
  if (kind)
    readDesign(context, note, *kind);
  else
    readDocument(context, note);
  tellFormulas(context.findings, note);
  saveImported(context, note);
}

void saveImported(ImportContext& context, Note& note, UnidOf unid) {
  qint64 total = 0;
  for (const Item& item : note.items) total += context.spool.sizeOf(item);
  if (total > DxlReader::kMaxValueBytes)
    context.in.fail(u"the items of a note are longer than %1 bytes"_s.arg(DxlReader::kMaxValueBytes));
  if (context.large && context.large->mustWait(note))
    context.large->wait(note, context.spool, unid);
  else
    saveNow(context, note, context.spool, unid);
  context.spool.clear();
}

void saveNow(ImportContext& context, Note& note, const ValueSpool& spool, UnidOf unid) {
  if (unid == UnidOf::Present) takeUnidOfPresent(context.target, note);
  if (noteclass::base(note.header.noteClass) == noteclass::Icon && !context.wholeDatabase)
    keepDatabaseSettings(context.target, note);
  const NoteId other = otherInstance(context.target, note.header.noteClass, note.header.unid);
  const bool instead = other && context.target.notes().remove(other, false);
  const bool replaced = context.target.notes().saveAsGiven(note);
  if (!spool.isEmpty()) fillLargeNote(context.target, note, spool);
  ++context.findings.notes;
  if (replaced || instead) ++context.findings.replaced;
}

}  // namespace lens
