#include "embedded/store/large_note.h"

#include "embedded/store/note_statements.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr qint64 kLargeNote = 4 * 1024 * 1024;
constexpr qint64 kSmallValue = 1024;
constexpr qint64 kTypeWord = 2;

}  // namespace

void LargeValues::open(const Connection& connection, Note& note) {
  blob_ = std::make_unique<StoredBlob>(connection, note.header.id, StoredBlob::Use::Read);
  const qsizetype size = blob_->size();
  const QByteArray head = blob_->read(0, kPackedHead);
  places_ = packedPlaces(blob_->read(0, packedDirectorySize(head, size)), size);
  note.items.clear();
  note.items.reserve(places_.size());
  for (const PackedPlace& place : std::as_const(places_)) {
    const qint64 here = place.valueLength <= kSmallValue ? place.valueLength : kTypeWord;
    note.add(QString::fromUtf8(blob_->read(place.nameAt, place.nameLength)), place.flags,
             blob_->read(place.valueAt, here));
  }
}

Item LargeValues::whole(const Note& note, qsizetype place) const {
  Item item = note.items[place];
  if (blob_ && places_[place].valueLength > kSmallValue)
    item.value = blob_->read(places_[place].valueAt, places_[place].valueLength);
  return item;
}

NoteReader::NoteReader(const Database& database)
    : database_(database),
      size_(database.connection(),
            "SELECT length(items) FROM note WHERE id = ? AND state = 0 AND " LENS_HAS_ARRIVED,
            StoreSession::kRead),
      header_(database.connection(),
              "SELECT id, class, unid, parent, sequence, sequence_time, created, modified, added, accessed"
              " FROM note WHERE id = ? AND state = 0 AND " LENS_HAS_ARRIVED,
              StoreSession::kRead) {}

bool NoteReader::read(NoteId noteId, Note& note, LargeValues& large) {
  {
    Statement::Run row(size_, noteId);
    if (!row.step()) return false;
    if (row.integer(0) <= kLargeNote) return database_.notes().read(noteId, note);
  }
  {
    Statement::Run row(header_, noteId);
    if (!row.step()) return false;
    if (!NoteStatements::readHeader(row, note.header))
      damagedNote(database_.path(), noteId, u"its UNID is cut"_s);
  }
  try {
    large.open(database_.connection(), note);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    damagedNote(database_.path(), noteId, error.description());
  }
  return true;
}

// Room first, then value by value, so that no more than a piece of one is in memory.
void fillLargeNote(Database& database, const Note& note, const ValueSpool& spool) {
  const auto sizeOf = [&](const Item& item) { return spool.sizeOf(item); };
  const QByteArray directory = packDirectory(note.items, sizeOf);
  qint64 size = directory.size();
  for (const Item& item : note.items) size += spool.sizeOf(item);
  Statement room(database.connection(), "UPDATE note SET items = zeroblob(?) WHERE id = ?",
                 StoreSession::kWrite);
  Statement::Run(room, size, note.header.id).step();
  StoredBlob blob(database.connection(), note.header.id, StoredBlob::Use::Write);
  blob.write(0, directory);
  qsizetype at = directory.size();
  for (const Item& item : note.items) {
    spool.read(item, [&](QByteArrayView piece) {
      blob.write(at, piece);
      at += piece.size();
    });
  }
}

}  // namespace lens
