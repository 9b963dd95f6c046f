#include "embedded/store/paced_transaction.h"

#include <QThread>

#include "embedded/store/sqlite_statement.h"

namespace lens {

PacedTransaction::PacedTransaction(Database& database, int waitMs)
    : database_(database), nested_(sqlite3_get_autocommit(database.handle()) == 0) {
  sqlite3_busy_timeout(database.handle(), waitMs);
  try {
    transaction_.emplace(database);
  } catch (const RuntimeError&) {
    sqlite3_busy_timeout(database.handle(), kBusyTimeoutMs);
    throw;
  }
  sqlite3_busy_timeout(database.handle(), kBusyTimeoutMs);
  held_.start();
}

bool PacedTransaction::pause() {
  if (nested_ || held_.elapsed() < kHeldMs) return false;
  commit();
  QThread::msleep(kGapMs);
  transaction_.emplace(database_);
  held_.restart();
  return true;
}

void PacedTransaction::commit() {
  transaction_->commit();
  transaction_.reset();
}

}  // namespace lens
