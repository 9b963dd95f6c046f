// Makes a view's index and brings it up to date. Who calls it holds a transaction, and may let others write
// in the pauses of a rebuild: what they change has to be brought in afterwards.
//
// In a view with a hierarchy a response stands below each row of the document that it answers, in the order
// in which responses were made; where that document is not in the view, neither is the response. Answers to
// answers go as deep as the platform lets them.
#pragma once

#include <QSet>
#include <functional>

#include "embedded/formula_context/evaluated_note.h"
#include "embedded/views/document_rows.h"
#include "embedded/views/index_tables.h"
#include "embedded/views/row_buffer.h"

namespace lens {

class ViewBuilder {
 public:
  ViewBuilder(const Database& database, const ViewDesign& design, DocumentRows& rows, IndexTables& tables);

  // Asked after every step; what it says is its caller's affair.
  using Pause = std::function<bool()>;
  void rebuild(const Pause& pause);
  // These notes are not as they were.
  void update(const QVector<NoteId>& changed);
  // By how many rows the index has grown; after a rebuild, how many it has.
  qint64 growth() const { return growth_; }

 private:
  bool tree() const { return design_.hierarchy || withResponses_; }
  // Phases of both.
  void take(const NoteHeader& header, const Unid& parent, formula::Document& document, RowBuffer* buffer);
  void takeResponse(NoteId note, RowBuffer* buffer);
  void addTo(RowBuffer& buffer, NoteId note, const IndexedNote& indexed) const;
  void scan(RowBuffer& buffer, const Pause& pause);
  void takeFolder(RowBuffer& buffer, const Pause& pause);
  void placeResponses(const QVector<NoteId>& responses, const Pause& pause);
  bool isOfTheClass(const Note& note) const;
  bool belongs(const Note& note) const;
  bool readNote(NoteId noteId, Note& note) const;

  void packRows(const NoteHeader& header, const Unid& parent, formula::Document& document,
                QByteArray& packed);
  bool isBelow(const QByteArray& parent) const { return design_.hierarchy && !parent.isEmpty(); }

  using Rows = QVector<IndexedRow>;
  Rows ownRows(NoteId note, const IndexedNote& indexed) const;
  Rows rowsBelow(const Rows& parents, NoteId note, const IndexedNote& indexed) const;
  Rows placed(NoteId note, int depth = 0);
  void write(const Rows& rows);
  void place(NoteId note);
  void placeBelow(NoteId note, const Rows& rows);
  void placeBelow(const QByteArray& unid, const Rows& parents, QSet<NoteId>& known);
  void withDescendants(QVector<NoteId>& notes);

  const Database& database_;
  const ViewDesign& design_;
  DocumentRows& rows_;
  IndexTables& tables_;
  const NoteId view_;
  const bool withResponses_;
  EvaluatedNote::Selected isMatched_;
  // Kept for the memory that they have.
  IndexedNote taken_;
  QByteArray onlyKey_;
  qint64 growth_ = 0;
};

}  // namespace lens
