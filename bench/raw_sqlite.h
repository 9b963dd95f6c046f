// SQLite without the store: the peer of what the store does.
#pragma once

#include <sqlite3.h>

#include <QString>

namespace lens::bench {

// A connection with the store's settings and one statement.
class Raw {
 public:
  Raw(const QString& path, const char* sql) {
    sqlite3_open_v2(path.toUtf8().constData(), &handle_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                    nullptr);
    sqlite3_exec(handle_, "PRAGMA synchronous = FULL; PRAGMA cache_size = -16384; PRAGMA journal_mode = WAL;",
                 nullptr, nullptr, nullptr);
    sqlite3_prepare_v3(handle_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr);
  }
  ~Raw() {
    sqlite3_finalize(statement_);
    sqlite3_close(handle_);
  }
  Raw(const Raw&) = delete;
  Raw& operator=(const Raw&) = delete;
  sqlite3_stmt* statement() const { return statement_; }

 private:
  sqlite3* handle_ = nullptr;
  sqlite3_stmt* statement_ = nullptr;
};

}  // namespace lens::bench
