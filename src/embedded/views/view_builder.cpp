#include "embedded/views/view_builder.h"

#include <QtEndian>

#include "embedded/formula_context/evaluated_packed_note.h"
#include "embedded/views/folder_documents.h"

namespace lens {
namespace {

constexpr int kDeepestAnswer = 32;

void appendNoteId(QByteArray& key, NoteId note) {
  char bytes[4];
  qToBigEndian(note.value(), bytes);
  key.append(bytes, 4);
}

// Responses stand in the order in which they were made.
QByteArray creationKey(const TimeDate& created) {
  QByteArray key(8, '\0');
  qToBigEndian(instantOrder(created), key.data());
  return key;
}

void appendRow(QByteArray& packed, QByteArrayView key, QByteArrayView categories) {
  appendU32(packed, quint32(key.size()));
  packed.append(key);
  appendU32(packed, quint32(categories.size()));
  packed.append(categories);
}

// Visits key and categories of each packed row; ends where the bytes do.
template <class Visit>
void eachPacked(QByteArrayView packed, const Visit& visit) {
  ByteReader reader(packed);
  while (reader.left() > 0) {
    const QByteArrayView key = reader.take(reader.u32());
    const QByteArrayView categories = reader.take(reader.u32());
    if (reader.failed()) return;
    visit(key, categories);
  }
}

}  // namespace

ViewBuilder::ViewBuilder(const Database& database, const ViewDesign& design, DocumentRows& rows,
                         IndexTables& tables)
    : database_(database),
      design_(design),
      rows_(rows),
      tables_(tables),
      view_(design.noteId),
      withResponses_(rows.responses() != formula::Formula::Responses::None),
      isMatched_([this](const Unid& unid) {
        IndexedNote note;
        return tables_.readNote(view_, tables_.noteOf(unid.bytes()), note) && note.matched;
      }) {}

// --- Documents -----------------------------------------------------------------------------------------

bool ViewBuilder::readNote(NoteId noteId, Note& note) const {
  try {
    note = {};
    return database_.notes().read(noteId, note);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    return false;
  }
}

bool ViewBuilder::isOfTheClass(const Note& note) const {
  return (noteclass::base(note.header.noteClass) & design_.noteClass) && !isProfile(note);
}

bool ViewBuilder::belongs(const Note& note) const {
  return isOfTheClass(note) && (!design_.folder || isInFolder(database_, design_.unid, note.header.unid));
}

void ViewBuilder::packRows(const NoteHeader& header, const Unid& parent, formula::Document& document,
                           QByteArray& packed) {
  if (design_.hierarchy && !parent.isNull()) return appendRow(packed, creationKey(header.created), {});
  if (!rows_.makesOneRow()) {
    for (const DocumentRow& row : rows_.rows(document)) appendRow(packed, row.key, row.categories);
    return;
  }
  onlyKey_.resize(0);
  rows_.appendOnlyKey(document, onlyKey_);
  appendRow(packed, onlyKey_, {});
}

// Asks the selection, writes down what it says, and hands on the rows of what stands for itself. Without a
// buffer the rows are placed later.
void ViewBuilder::take(const NoteHeader& header, const Unid& parent, formula::Document& document,
                       RowBuffer* buffer) {
  IndexedNote& indexed = taken_;
  indexed.matched = indexed.shown = rows_.selects(document);
  indexed.parent = tree() && !parent.isNull() ? parent.bytes() : QByteArray();
  const bool known = indexed.shown || (withResponses_ && !indexed.parent.isEmpty());
  if (!known) {
    if (!buffer) tables_.removeNote(view_, header.id);
    return;
  }
  indexed.unid = withResponses_ ? header.unid.bytes() : QByteArray();
  indexed.rows.resize(0);
  if (indexed.shown) packRows(header, parent, document, indexed.rows);
  if (!buffer) return tables_.writeNote(view_, header.id, indexed);
  tables_.addNote(view_, header.id, indexed);
  addTo(*buffer, header.id, indexed);
}

void ViewBuilder::addTo(RowBuffer& buffer, NoteId note, const IndexedNote& indexed) const {
  if (!indexed.shown || isBelow(indexed.parent)) return;
  eachPacked(indexed.rows,
             [&](QByteArrayView key, QByteArrayView categories) { buffer.add(key, note, categories); });
}

// A document that the selection did not take for itself is asked again as a response.
void ViewBuilder::takeResponse(NoteId noteId, RowBuffer* buffer) {
  IndexedNote indexed;
  if (!tables_.readNote(view_, noteId, indexed) || indexed.matched || indexed.parent.isEmpty()) return;
  Note note;
  if (!readNote(noteId, note)) return;
  EvaluatedNote document(note, &database_, EvaluatedNote::Items::Summary);
  document.setSelected(isMatched_);
  indexed.shown = rows_.selects(document);
  indexed.rows.clear();
  if (indexed.shown) packRows(note.header, parentOf(note), document, indexed.rows);
  tables_.writeNote(view_, noteId, indexed);
  if (buffer) addTo(*buffer, noteId, indexed);
}

// --- Everything ----------------------------------------------------------------------------------------

void ViewBuilder::scan(RowBuffer& buffer, const Pause& pause) {
  EvaluatedPackedNote document(rows_.names(), &database_);
  database_.notes().scanPacked(design_.noteClass, [&](const PackedNote& note) {
    if (isProfile(note)) return true;
    document.show(note);
    take(note.header, tree() ? parentOf(note) : Unid(), document, &buffer);
    pause();
    return true;
  });
}

void ViewBuilder::takeFolder(RowBuffer& buffer, const Pause& pause) {
  Note note;
  for (const NoteId id : folderDocuments(database_, design_.unid)) {
    if (!readNote(id, note) || !isOfTheClass(note)) continue;
    EvaluatedNote document(note, &database_, EvaluatedNote::Items::Summary);
    take(note.header, tree() ? parentOf(note) : Unid(), document, &buffer);
    pause();
  }
}

void ViewBuilder::rebuild(const Pause& pause) {
  tables_.clear(view_);
  tables_.removeOrphans();
  RowBuffer buffer(tables_, view_, pause);
  if (design_.folder)
    takeFolder(buffer, pause);
  else
    scan(buffer, pause);
  tables_.finishNotes(view_);
  const QVector<NoteId> responses = tree() ? tables_.allResponses(view_) : QVector<NoteId>();
  for (const NoteId note : responses) {
    if (!withResponses_) break;
    takeResponse(note, &buffer);
    pause();
  }
  buffer.flush();
  growth_ = buffer.count();
  if (design_.hierarchy) placeResponses(responses, pause);
}

// Each document without a parent is placed once, and all below it with it.
void ViewBuilder::placeResponses(const QVector<NoteId>& responses, const Pause& pause) {
  QSet<NoteId> done;
  IndexedNote indexed;
  for (const NoteId response : responses) {
    if (!tables_.readNote(view_, response, indexed)) continue;
    const NoteId parent = tables_.noteOf(indexed.parent);
    const qsizetype before = done.size();
    done.insert(parent);
    if (done.size() == before || !tables_.readNote(view_, parent, indexed)) continue;
    if (indexed.shown && indexed.parent.isEmpty()) placeBelow(parent, ownRows(parent, indexed));
    pause();
  }
}

// --- What changed --------------------------------------------------------------------------------------

// Where responses are selected with what they answer, a change concerns all below: as they were and as they
// are now.
void ViewBuilder::withDescendants(QVector<NoteId>& notes) {
  QSet<NoteId> known(notes.begin(), notes.end());
  IndexedNote indexed;
  for (qsizetype i = 0; i < notes.size(); ++i) {
    QVector<QByteArray> unids{tables_.unidOf(notes[i])};
    if (tables_.readNote(view_, notes[i], indexed) && indexed.unid != unids.front())
      unids.push_back(indexed.unid);
    for (const QByteArray& unid : std::as_const(unids)) {
      if (unid.isEmpty()) continue;
      for (const NoteId response : tables_.responsesTo(view_, unid)) {
        const qsizetype before = known.size();
        known.insert(response);
        if (known.size() > before) notes.push_back(response);
      }
    }
  }
}

void ViewBuilder::update(const QVector<NoteId>& changed) {
  QVector<NoteId> notes = changed;
  if (withResponses_) withDescendants(notes);
  // All rows go before anything is written down anew: where they stand is told by the old state.
  for (const NoteId note : std::as_const(notes))
    for (const IndexedRow& row : placed(note)) growth_ -= tables_.removeRows(view_, row.key);
  Note note;
  for (const NoteId id : std::as_const(notes)) {
    if (!readNote(id, note) || !belongs(note)) {
      tables_.removeNote(view_, id);
      continue;
    }
    EvaluatedNote document(note, &database_, EvaluatedNote::Items::Summary);
    take(note.header, tree() ? parentOf(note) : Unid(), document, nullptr);
  }
  if (withResponses_)
    for (const NoteId id : std::as_const(notes)) takeResponse(id, nullptr);
  for (const NoteId id : std::as_const(notes)) place(id);
}

// --- Rows ----------------------------------------------------------------------------------------------

ViewBuilder::Rows ViewBuilder::ownRows(NoteId note, const IndexedNote& indexed) const {
  Rows rows;
  eachPacked(indexed.rows, [&](QByteArrayView key, QByteArrayView categories) {
    IndexedRow row{key.toByteArray(), 0, categories.toByteArray()};
    appendNoteId(row.key, note);
    rows.push_back(std::move(row));
  });
  return rows;
}

ViewBuilder::Rows ViewBuilder::rowsBelow(const Rows& parents, NoteId note, const IndexedNote& indexed) const {
  Rows rows;
  for (const IndexedRow& parent : parents) {
    if (parent.level >= kDeepestAnswer) continue;
    for (IndexedRow& row : ownRows(note, indexed))
      rows.push_back({parent.key + row.key, parent.level + 1, parent.categories});
  }
  return rows;
}

// The rows that a document has by what the tables say of it and of what it answers. A circle has none.
ViewBuilder::Rows ViewBuilder::placed(NoteId note, int depth) {
  IndexedNote indexed;
  if (depth > kDeepestAnswer || !tables_.readNote(view_, note, indexed) || !indexed.shown) return {};
  if (!isBelow(indexed.parent)) return ownRows(note, indexed);
  return rowsBelow(placed(tables_.noteOf(indexed.parent), depth + 1), note, indexed);
}

// What is below a changed document may have been written with it already.
void ViewBuilder::write(const Rows& rows) {
  for (const IndexedRow& row : rows) growth_ += tables_.writeRow(view_, row) ? 1 : 0;
}

void ViewBuilder::place(NoteId note) {
  const Rows rows = placed(note);
  write(rows);
  if (design_.hierarchy && !rows.isEmpty()) placeBelow(note, rows);
}

void ViewBuilder::placeBelow(NoteId note, const Rows& rows) {
  QSet<NoteId> known;
  placeBelow(tables_.unidOf(note), rows, known);
}

// Each once: in a damaged file several documents may have one UNID, and answer each other.
void ViewBuilder::placeBelow(const QByteArray& unid, const Rows& parents, QSet<NoteId>& known) {
  IndexedNote indexed;
  for (const NoteId response : tables_.responsesTo(view_, unid)) {
    const qsizetype before = known.size();
    known.insert(response);
    if (known.size() == before || !tables_.readNote(view_, response, indexed) || !indexed.shown) continue;
    const Rows rows = rowsBelow(parents, response, indexed);
    write(rows);
    if (!rows.isEmpty()) placeBelow(tables_.unidOf(response), rows, known);
  }
}

}  // namespace lens
