// Full text: an index of the words of all documents, kept in the database's own file, and queries over it
// in the platform's query language (query.h).
//
// Indexed are texts and lists of texts, rich text and MIME bodies, names of attachments, numbers, and dates
// as "2024-03-18 14:30". Words stand as words.h says: neither case nor accents count. A phrase never reaches
// over the end of an item or of an entry in a list.
//
// The index is written in the transactions of the store, so a crash leaves it as it was, and it is brought up
// to date from what changed since it was last written.
#pragma once

#include <QVector>

#include "embedded/search/query.h"
#include "embedded/store/database.h"

namespace lens {

inline constexpr int kNoFullTextIndex = 4107;

// Whether the database has an index. Only a database that has one can be searched.
bool hasFullTextIndex(const Database& database);
// Makes the index, or brings it up to date from the changes since the last time. A damaged one is made anew.
void createFullTextIndex(Database& database);
// Nothing happens without an index.
void refreshFullTextIndex(Database& database);
void dropFullTextIndex(Database& database);

// Note IDs of the documents that the query finds, best match first, at most so many (0: all). Profiles
// and design notes are never found. An empty query finds nothing. Raises kQueryError with the place of
// the mistake, or kNoFullTextIndex. The index is refreshed first; where the file cannot be written it
// is searched as it is, and documents deleted since are left out.
QVector<quint32> fullTextSearch(Database& database, QStringView query, qsizetype most);

}  // namespace lens
