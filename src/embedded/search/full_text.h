// Full text: an index of the words of all documents, kept in the database's own file, and queries over it
// in the platform's query language (query.h).
//
// Indexed are texts and lists of texts, rich text and MIME bodies, names of attachments, numbers, and dates
// as "2024-03-18 14:30". Words stand as words.h says: neither case nor accents count. A phrase never reaches
// over the end of an item or of an entry in a list.
//
// The index is brought up to date from what changed since it was last written, in short transactions, so that
// whoever saves meanwhile waits for one of them at most. What is written stays: a build that a crash, a
// failure or the user ended goes on where it stopped.
#pragma once

#include <QVector>
#include <functional>

#include "embedded/format/engine_fault.h"
#include "embedded/search/query.h"
#include "embedded/store/database.h"

namespace lens {

struct IndexWork {
  // How far it is, counted in changed notes. Asked between two transactions; false ends the work.
  std::function<bool(qint64 done, qint64 total)> go;
  int holdMs = 150;  // how long one transaction takes; with 0 it takes in one note
};

// Whether the database has a whole index. Only a database that has one can be searched.
bool hasFullTextIndex(Database& database);
// Makes the index, or brings it up to date from the changes since the last time. A damaged one is made anew.
// False when the work was ended early.
bool createFullTextIndex(Database& database, const IndexWork& work = {});
// Nothing happens without a whole index.
bool refreshFullTextIndex(Database& database, const IndexWork& work = {});
void dropFullTextIndex(Database& database);

// Note IDs of the documents that the query finds, best match first, at most so many (0: all). Profiles
// and design notes are never found. An empty query finds nothing. Raises kQueryError with the place of
// the mistake, or kNoFullTextIndex. The index is refreshed first; where the file cannot be written, or
// somebody else writes to it for long, the documents that changed since are looked through beside the
// index. Where these are too many, the failure of the refresh is raised.
QVector<NoteId> fullTextSearch(Database& database, QStringView query, qsizetype most);

}  // namespace lens
