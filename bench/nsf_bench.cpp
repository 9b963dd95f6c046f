// Reading a real database of 100,000 notes into a store, beside a bare pass that knows where
// everything lies and copies the same bytes item by item into the same rows.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QFile>
#include <QTemporaryDir>

#include "embedded/nsf/maker/made_bytes.h"
#include "embedded/nsf/nsf_copy.h"
#include "embedded/store/own_tables.h"
#include "ratio.h"
#include "real_letters.h"

namespace lens::bench {
namespace {

using namespace made;

constexpr int kNotes = 100'000;

const Ratio kReading("read a real database", "BM_NsfReading", "BM_NsfBarePass", 2);

// Where the bytes of an item lie in the file.
struct ItemPlace {
  QByteArray name;
  quint16 type, flags;
  qint64 at, size;
};

struct Source {
  QTemporaryDir directory;
  QString path = directory.filePath(QStringLiteral("real.nsf"));
  qint64 bytes = 0;
  std::vector<std::pair<NoteHeader, std::vector<ItemPlace>>> notes;

  Source() {
    const MadeDatabase described = realLetters(kNotes);
    const MadeFile file = makeFile(described);
    file.write(path);
    bytes = file.size();
    for (const MadeNote& note : described.notes) notes.push_back(placesOf(note, file.notes[note.id]));
  }

 private:
  static std::pair<NoteHeader, std::vector<ItemPlace>> placesOf(const MadeNote& note,
                                                                const MadeNotePlaces& places) {
    constexpr qint64 kRecordHead = 100, kItemEntry = 8, kBodyHead = 68;
    NoteHeader header;
    header.id = NoteId(note.id);
    header.unid = Unid::fromText(unidText(note.unid));
    header.noteClass = note.noteClass;
    header.sequence = note.sequence;
    header.sequenceTime = note.sequenceTime;
    header.created = note.sequenceTime;
    header.modified = note.modified;
    header.added = note.added;
    header.accessed = note.accessed;
    qint64 summary = places.record.at + kRecordHead + kItemEntry * note.items.size(),
           body = places.body.at + kBodyHead;
    std::vector<ItemPlace> items;
    for (const MadeItem& item : note.items) {
      qint64& at = item.flags & flag::Summary ? summary : body;
      items.push_back({item.name, item.type, item.flags, at, item.value.size()});
      at += item.value.size();
    }
    return {header, items};
  }
};

const Source& source() {
  static const Source made;
  return made;
}

// The store's table of notes with its indexes.
class Rows {
 public:
  explicit Rows(const QString& path) {
    sqlite3_open_v2(path.toUtf8().constData(), &handle_,
                    SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    sqlite3_exec(handle_, "PRAGMA synchronous = FULL; PRAGMA cache_size = -16384; PRAGMA journal_mode = WAL;",
                 nullptr, nullptr, nullptr);
    sqlite3_exec(handle_, kNoteTables, nullptr, nullptr, nullptr);
    sqlite3_exec(handle_, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_prepare_v3(handle_, "INSERT INTO note VALUES (?, ?, ?, NULL, ?, ?, ?, ?, ?, ?, 0, ?, ?)", -1,
                       SQLITE_PREPARE_PERSISTENT, &insert_, nullptr);
  }
  ~Rows() {
    sqlite3_finalize(insert_);
    sqlite3_close(handle_);
  }
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;

  bool add(const NoteHeader& header, const QByteArray& items) {
    const QByteArray unid = header.unid.bytes();
    sqlite3_bind_int64(insert_, 1, header.id.value());
    sqlite3_bind_int64(insert_, 2, header.noteClass);
    sqlite3_bind_blob64(insert_, 3, unid.constData(), sqlite3_uint64(unid.size()), SQLITE_STATIC);
    sqlite3_bind_int64(insert_, 4, header.sequence);
    int column = 5;
    for (const TimeDate& time :
         {header.sequenceTime, header.created, header.modified, header.added, header.accessed})
      sqlite3_bind_int64(insert_, column++, qint64(packTime(time)));
    sqlite3_bind_int64(insert_, 10, ++count_);
    sqlite3_bind_blob64(insert_, 11, items.constData(), sqlite3_uint64(items.size()), SQLITE_STATIC);
    const bool isAdded = sqlite3_step(insert_) == SQLITE_DONE;
    sqlite3_reset(insert_);
    return isAdded;
  }
  // Whether all came in and lies on disk.
  bool finish(int notes) {
    return count_ == notes && sqlite3_exec(handle_, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK;
  }

 private:
  sqlite3* handle_ = nullptr;
  sqlite3_stmt* insert_ = nullptr;
  qint64 count_ = 0;
};

void BM_NsfReading(benchmark::State& state) {
  const QTemporaryDir directory;
  const QString path = source().path;
  int number = 0;
  for (auto _ : state) {
    QString reason;
    NsfDatabase database(NsfFileSource::open(path, reason));
    const NsfCopyCounts counts =
        copyNsf(database, directory.filePath(QStringLiteral("%1.nsf").arg(++number)));
    if (counts.notes != kNotes) state.SkipWithError("not all notes were read");
  }
  state.SetBytesProcessed(state.iterations() * source().bytes);
}
BENCHMARK(BM_NsfReading)->UseRealTime()->Unit(benchmark::kMillisecond);

// The store's row, made where the bytes lie.
void packBare(const std::vector<ItemPlace>& items, const char* file, QByteArray& row) {
  constexpr qint64 kHead = 8, kEntry = 16, kType = 2;
  qint64 names = kHead + kEntry * qint64(items.size()), values = names;
  for (const ItemPlace& item : items) values += item.name.size();
  qint64 size = values;
  for (const ItemPlace& item : items) size += kType + item.size;
  row.resize(size);
  putBytes(row, 0, QByteArrayView("TLI1"));
  put32(row, 4, quint32(items.size()));
  for (size_t i = 0; i < items.size(); ++i) {
    const ItemPlace& item = items[i];
    const qsizetype entry = kHead + kEntry * qsizetype(i);
    put32(row, entry, quint32(names));
    put16(row, entry + 4, quint32(item.name.size()));
    put16(row, entry + 6, item.flags);
    put32(row, entry + 8, quint32(values));
    put32(row, entry + 12, quint32(kType + item.size));
    putBytes(row, names, item.name);
    put16(row, values, item.type);
    putBytes(row, values + kType, QByteArrayView(file + item.at, item.size));
    names += item.name.size();
    values += kType + item.size;
  }
}

void BM_NsfBarePass(benchmark::State& state) {
  const QTemporaryDir directory;
  const Source& from = source();
  int number = 0;
  for (auto _ : state) {
    Rows rows(directory.filePath(QString::number(++number)));
    QFile file(from.path);
    const uchar* mapped = file.open(QIODevice::ReadOnly) ? file.map(0, file.size()) : nullptr;
    bool isWhole = mapped != nullptr;
    QByteArray row;
    for (const auto& [header, items] : from.notes) {
      if (!isWhole) break;
      packBare(items, reinterpret_cast<const char*>(mapped), row);
      isWhole = rows.add(header, row);
    }
    if (!isWhole || !rows.finish(kNotes)) state.SkipWithError("not all notes were copied");
  }
  state.SetBytesProcessed(state.iterations() * from.bytes);
}
BENCHMARK(BM_NsfBarePass)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lens::bench
