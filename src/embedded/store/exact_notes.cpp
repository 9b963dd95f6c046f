#include "embedded/store/exact_notes.h"

#include "embedded/format/packed_items.h"
#include "embedded/store/sqlite_statement.h"
#include "embedded/store/store_session.h"
#include "embedded/store/stored_row.h"

namespace lens {

struct ExactNotes::Statements {
  explicit Statements(const Connection& c) : connection(c) {}
  const Connection& connection;
  Statement insert{connection,
                   "INSERT OR IGNORE INTO note (id, class, unid, parent, sequence, sequence_time, created,"
                   " modified, added, accessed, items, state, change)"
                   " VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, ?)",
                   StoreSession::kWrite};
  Statement insertStub{
      connection,
      "INSERT OR IGNORE INTO note (id, class, unid, parent, sequence, sequence_time, created,"
      " modified, added, accessed, items, state, change)"
      " VALUES (?, ?, ?, NULL, ?, ?, ?, ?, ?, ?, NULL, 1, ?)",
      StoreSession::kWrite};
};

ExactNotes::ExactNotes(Database& database)
    : database_(database),
      statements_(std::make_unique<Statements>(database.connection())),
      change_(database.versions().changeSequence()) {}

ExactNotes::~ExactNotes() = default;

bool ExactNotes::wasWritten() const {
  return sqlite3_changes(database_.handle()) > 0;
}

bool ExactNotes::add(const Note& note) {
  const NoteHeader& header = note.header;
  if (header.id.isNull() || header.id > kLastId) return false;
  const QByteArray items = packItems(note.items);
  const QByteArray unid = header.unid.bytes(), parent = parentBytes(header.parent);
  Statement::Run(statements_->insert, header.id, header.noteClass, unid, parent, header.sequence,
                 stored(header.sequenceTime), stored(header.created), stored(header.modified),
                 stored(header.added), stored(header.accessed), items, ++change_)
      .step();
  return wasWritten();
}

bool ExactNotes::addStub(const NoteHeader& header) {
  if (header.id.isNull() || header.id > kLastId) return false;
  const QByteArray unid = header.unid.bytes();
  Statement::Run(statements_->insertStub, header.id, header.noteClass, unid, header.sequence,
                 stored(header.sequenceTime), stored(header.created), stored(header.modified),
                 stored(header.added), stored(header.accessed), ++change_)
      .step();
  return wasWritten();
}

}  // namespace lens
