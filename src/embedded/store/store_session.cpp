#include "embedded/store/store_session.h"

#include "embedded/store/database_file.h"
#include "notes/literals.h"

namespace lens {

std::unique_ptr<StoreSession> StoreSession::open(const QString& path) {
  const FileAccess access = accessTo(path);
  const bool readOnly = access != FileAccess::ReadWrite;
  std::unique_ptr<StoreSession> session(
      new StoreSession(path, openFlags(access), access == FileAccess::Constant));
  Connection& connection = session->connection_;
  const SchemaFindings findings = requireOwnSchema(connection);
  connection.execute(
      "PRAGMA synchronous = FULL; PRAGMA temp_store = MEMORY; PRAGMA cache_size = -16384;"
      "PRAGMA foreign_keys = OFF; PRAGMA cell_size_check = ON;",
      kRead);
  if (!readOnly) connection.execute("PRAGMA journal_mode = WAL", kRead);
  bringUpToDate(connection, access, findings);
  // The first read shows whether the tables are what they should be.
  session->highestChange();
  if (!readOnly) session->bond_.emplace(connection);
  return session;
}

StoreSession::~StoreSession() {
  if (bond_ && !hasOwnFile()) bond_->letGo();
}

bool StoreSession::hasOwnFile() {
  if (removed_ || lost_ || FileIdentity::of(path()) == file_) return !lost_;
  lost_ = true;
  if (bond_) bond_->letGo();
  return false;
}

void StoreSession::requireOwnFile() {
  if (!hasOwnFile())
    throw RuntimeError(kWrite,
                       u"%1: the change was not saved (another program has deleted or replaced the "
                       "file; open the database again)"_s.arg(path()));
}

void StoreSession::renewJournal() {
  if (bond_) bond_->renew();
}

std::unique_ptr<StoreSession> StoreSession::removed(const QString& path) {
  return std::unique_ptr<StoreSession>(new StoreSession(path));
}

bool StoreSession::isWritable() const {
  return !removed_ && sqlite3_db_readonly(connection_.handle(), "main") == 0;
}

void StoreSession::checkWritable() const {
  if (depth_ > 0 && sqlite3_get_autocommit(connection_.handle()))
    throw RuntimeError(
        kWrite, u"%1: the change was not saved (an earlier failure undid the transaction)"_s.arg(path()));
}

qint64 StoreSession::highestId() {
  Statement::Run row(highestId_);
  row.step();
  const qint64 highest = row.below(0, qint64(1) << 32);
  const ArrivingBlock& block = arriving_.isBringing() ? arriving_.brought() : arriving_.inFile();
  return block.exists() ? qMax(highest, block.last) : highest;
}

qint64 StoreSession::highestChange() {
  Statement::Run row(highestChange_);
  row.step();
  return row.below(0, kNoNumber);
}

qint64 StoreSession::nextChange() {
  const qint64 next = highestChange() + 1;
  return arriving_.isBringing() ? qMax(next, arriving_.brought().change) : next;
}

void StoreSession::keepHighest(qint64 id, qint64 change) {
  const QString idKey = u"highest id"_s, changeKey = u"highest change"_s;
  Statement::Run(writeInfo_, idKey, id).step();
  Statement::Run(writeInfo_, changeKey, change).step();
}

QString StoreSession::info(const QString& key) {
  Statement::Run row(readInfo_, key);
  return row.step() ? row.text(0) : QString();
}

void StoreSession::setInfo(const QString& key, const QString& value) {
  Statement::Run(writeInfo_, key, value).step();
}

void StoreSession::removeInfo(const QString& key) {
  Statement::Run(removeInfo_, key).step();
}

qint64 StoreSession::size() {
  Statement::Run pages(pageCount_), page(pageSize_);
  return pages.step() && page.step() ? pages.integer(0) * page.integer(0) : 0;
}

StoreTransaction::StoreTransaction(StoreSession& session) : session_(session) {
  session_.begin();
}

void StoreSession::begin() {
  checkWritable();
  if (depth_ == 0) {
    requireOwnFile();
    changesBefore_ = sqlite3_total_changes(connection_.handle());
  }
  Statement::Run(depth_ == 0 ? begin_ : savepoint_).step();
  ++depth_;
}

void StoreSession::commit() {
  checkWritable();
  if (depth_ == 1 && bond_ && sqlite3_total_changes(connection_.handle()) != changesBefore_)
    bond_->beforeCommit();
  Statement::Run(depth_ == 1 ? commit_ : release_).step();
  --depth_;
}

void StoreTransaction::commit() {
  session_.commit();
  open_ = false;
}

StoreTransaction::~StoreTransaction() {
  if (!open_) return;
  if (session_.undone) session_.undone(session_.depth_);
  --session_.depth_;
  if (session_.depth_ == 0 && session_.bond_) session_.bond_->undone();
  if (sqlite3_get_autocommit(session_.connection_.handle())) return;
  try {
    if (session_.depth_ == 0) {
      Statement::Run(session_.rollback_).step();
    } else {
      Statement::Run(session_.rollbackTo_).step();
      Statement::Run(session_.release_).step();
    }
  } catch (const RuntimeError&) {
    // What could not be undone now is undone when the file is opened next.
  }
}

}  // namespace lens
