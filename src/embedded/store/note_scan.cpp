// Walking over many notes without unpacking them.
#include "embedded/format/packed_note.h"
#include "embedded/store/note_statements.h"
#include "embedded/store/note_store.h"

namespace lens {
namespace {

using PackedVisitor = NoteStore::PackedVisitor;

// Rows copied out of SQLite's memory. Small enough to stay near the processor, and full soon enough for
// a search that ends with its first find.
class Batch {
 public:
  bool isFull() const { return qsizetype(rows_.size()) >= most_ || bytes_.size() >= kBytes; }
  void add(const NoteHeader& header, QByteArrayView items) {
    rows_.push_back({header, bytes_.size(), items.size()});
    bytes_.append(items.data(), items.size());
  }
  void next() {
    rows_.clear();
    bytes_.resize(0);
    most_ = qMin(most_ * 2, kMostRows);
  }
  // False when the visitor has enough.
  bool show(const PackedVisitor& visit) const {
    PackedNote note;
    for (const Row& row : rows_) {
      try {
        note.items = PackedItems(QByteArrayView(bytes_).sliced(row.at, row.size));
      } catch (const RuntimeError&) {
        continue;
      }
      note.header = row.header;
      if (!visit(note)) return false;
    }
    return true;
  }

 private:
  static constexpr qsizetype kBytes = 128 * 1024, kMostRows = 256;
  struct Row {
    NoteHeader header;
    qsizetype at, size;
  };
  std::vector<Row> rows_;
  QByteArray bytes_;
  qsizetype most_ = 16;
};

}  // namespace

// The visitor may change the database or search it in turn: no statement stays open while it works.
NoteStore::Scan NoteStore::scanRows(quint16 mask, qint64& last, const PackedVisitor& visit) const {
  Batch batch;
  for (bool more = true; more; batch.next()) {
    Scan state = Scan::Whole;
    try {
      Statement::Run row(statements_->scanRows, last, mask);
      while (!batch.isFull() && (more = row.step())) {
        NoteHeader header;
        if (NoteStatements::readHeader(row, header))
          batch.add(header, row.blob(NoteStatements::kItemsColumn));
        const qint64 id = row.integer(0);
        if (id <= last) row.wrongValue(0, "number behind the last one");
        last = id;  // the number of the row: a damaged one may be no note ID
      }
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged) throw;
      state = Scan::Damaged;
    }
    if (!batch.show(visit)) return Scan::Enough;
    if (state == Scan::Damaged) return state;
  }
  return Scan::Whole;
}

void NoteStore::scanOneByOne(quint16 mask, qint64 after, const PackedVisitor& visit) const {
  const QVector<NoteSummary> notes = list(mask);
  for (const NoteSummary& summary : notes) {
    if (summary.id.value() <= after) continue;
    Batch one;
    try {
      Statement::Run row(statements_->readById, summary.id);
      NoteHeader header;
      if (row.step() && NoteStatements::readHeader(row, header))
        one.add(header, row.blob(NoteStatements::kItemsColumn));
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged) throw;
    }
    if (!one.show(visit)) return;
  }
}

// Design notes are few and lie anywhere; of documents the rows are read as they lie. Where the file is
// damaged the walk ends, and what lies behind is asked for note by note.
void NoteStore::scanPacked(quint16 classMask, const PackedVisitor& visit) const {
  const quint16 mask = noteclass::base(classMask);
  qint64 last = 0;
  if ((mask & noteclass::Document) && scanRows(mask, last, visit) != Scan::Damaged) return;
  scanOneByOne(mask, last, visit);
}

}  // namespace lens
