// Queries over a database by its index of full text, and over what the index does not have yet.
#include <algorithm>
#include <optional>

#include "embedded/search/full_text.h"
#include "embedded/search/full_text_writer.h"
#include "embedded/search/index_search.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

using fulltext::Hits;
using fulltext::Tables;

// A query does not wait for a long import as a save does: it has another way.
constexpr int kShortWaitMs = 500;
// Documents beside the index that one query looks through, within a second.
constexpr qsizetype kMostFresh = 1000;

class ShortWait {
 public:
  explicit ShortWait(const Database& database) : handle_(database.handle()) {
    sqlite3_busy_timeout(handle_, kShortWaitMs);
  }
  ~ShortWait() { sqlite3_busy_timeout(handle_, kBusyTimeoutMs); }
  ShortWait(const ShortWait&) = delete;
  ShortWait& operator=(const ShortWait&) = delete;

 private:
  sqlite3* handle_;
};

// The reason when the file cannot be written now.
std::optional<RuntimeError> refreshSoon(Database& database) {
  try {
    const ShortWait wait(database);
    refreshFullTextIndex(database);
    return std::nullopt;
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::NotSaved && error.number() != err::PermissionDenied) throw;
    return error;
  }
}

// The changed documents in an index of their own, in memory, so that a query means the same to them.
Hits findFresh(const Database& database, const QVector<NoteChange>& changes, const QueryNode& query) {
  Connection memory(u":memory:"_s, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY);
  memory.execute("CREATE TABLE info (key TEXT PRIMARY KEY, value)", enginefault::CannotOpen);
  Tables tables(memory);
  tables.create();
  fulltext::Writer writer(tables);
  for (const NoteChange& change : changes) writer.bring(database, change);
  return fulltext::IndexSearch(tables).find(query);
}

// What the index says of documents that changed since does not count.
Hits findBeside(const Database& database, qint64 since, const QueryNode& query, const Hits& indexed,
                const RuntimeError& reason) {
  const QVector<NoteChange> changes = database.versions().changesSince(since);
  if (changes.size() > kMostFresh)
    throw RuntimeError(reason.number(),
                       u"%1: the full-text index lacks %2 changes and cannot take them in now (%3)"_s.arg(
                           database.path(), QString::number(changes.size()), reason.description()));
  Hits changed;
  for (const NoteChange& change : changes) changed.push_back({change.id, 0});
  std::sort(changed.begin(), changed.end(), [](const auto& a, const auto& b) { return a.id < b.id; });
  return either(without(indexed, changed), findFresh(database, changes, query));
}

Hits find(Database& database, Tables& tables, const QueryNode& query) {
  const std::optional<RuntimeError> reason = refreshSoon(database);
  const qint64 since = tables.mark().change;
  const Hits hits = fulltext::IndexSearch(tables).find(query);
  return reason ? findBeside(database, since, query, hits, *reason) : hits;
}

}  // namespace

QVector<NoteId> fullTextSearch(Database& database, QStringView query, qsizetype most) {
  Tables tables(database.connection());
  const bool exists = tables.exist();
  if (!exists || !tables.mark().whole)
    throw RuntimeError(kNoFullTextIndex, (exists ? u"%1: the database's full-text index is not finished yet"_s
                                                 : u"%1: the database has no full-text index"_s)
                                             .arg(database.path()));
  if (query.trimmed().isEmpty()) return {};
  Hits hits = find(database, tables, parseQuery(query));
  std::sort(hits.begin(), hits.end(),
            [](const auto& a, const auto& b) { return a.rank != b.rank ? a.rank < b.rank : a.id < b.id; });
  QVector<NoteId> found;
  const qsizetype count = most > 0 ? qMin(most, qsizetype(hits.size())) : qsizetype(hits.size());
  found.reserve(count);
  for (qsizetype i = 0; i < count; ++i) found.push_back(hits[std::size_t(i)].id);
  return found;
}

}  // namespace lens
