// The journal of SQLite's other kind, <name>-journal, which stands beside a database while it is compacted
// and stays there when that is cut short. It is read here before SQLite sees it.
#pragma once

#include <QString>

namespace lens {

// What keeps SQLite from rolling it back into the file, in words for the user; "" when nothing does or there
// is none. A journal can name a file that SQLite deletes and lists of further files that it reads, and one of
// another file holds pages that are not this one's. Of a database in use by others the pages are their
// affair.
QString faultOfRollbackJournal(const QString& path, bool inUse);

}  // namespace lens
