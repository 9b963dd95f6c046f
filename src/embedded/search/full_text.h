// Full text: an index of the words of all documents, kept in the database's own file, and queries over it
// in the platform's query language.
#pragma once

#include <QVector>

#include "embedded/store/database.h"

namespace lens {

// Whether the database has an index. Only a database that has one can be searched.
bool hasFullTextIndex(const Database& database);
// Makes the index, or brings it up to date from the changes since the last time.
void createFullTextIndex(Database& database);
void refreshFullTextIndex(Database& database);
void dropFullTextIndex(Database& database);

// Note IDs of the documents that the query finds, best match first, at most so many (0: all). Profiles
// and design notes are never found. An empty query finds nothing. Raises kQueryError with the place of
// the mistake, or NoFullTextIndex; the index is refreshed first where the file can be written.
QVector<quint32> fullTextSearch(Database& database, QStringView query, qsizetype most);

inline constexpr int kQueryError = 4106;
inline constexpr int kNoFullTextIndex = 4107;

}  // namespace lens
