// A program that links what ours links, opens a database's file as SQLite has it, counts its documents and
// says so: what the start of a command is measured beside.
#include <QCoreApplication>
#include <cstdio>

#include "raw_sqlite.h"

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  if (argc != 2) return 2;
  const lens::bench::Raw raw(QString::fromLocal8Bit(argv[1]),
                             "SELECT count(*) FROM note WHERE state = 0 AND class = 1");
  if (sqlite3_step(raw.statement()) != SQLITE_ROW) return 1;
  std::printf("%lld\n", static_cast<long long>(sqlite3_column_int64(raw.statement(), 0)));
  return 0;
}
