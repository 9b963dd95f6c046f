#include "embedded/store/journal_bond.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>
#include <QUuid>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif
#ifdef Q_OS_WIN
#include <windows.h>
#endif

#include "embedded/format/engine_fault.h"
#include "embedded/store/own_schema.h"
#include "embedded/store/rollback_journal.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr char kReadBond[] = "SELECT value FROM info WHERE key = 'journal'";
constexpr char kWriteBond[] = "INSERT OR REPLACE INTO info (key, value) VALUES ('journal', ?)";
constexpr int kPagesBeforeCheckpoint = 1000;  // as SQLite does it by itself
constexpr qint64 kJournalHead = 32;           // a journal of this size holds no change

QString walOf(const QString& path) {
  return path + u"-wal"_s;
}

// What is written down: a mark of its own for each journal, the mark before it, the file, the journal.
struct Bond {
  QString mark, before, file, journal;

  static Bond fromText(const QString& text) {
    const QStringList parts = text.split(u' ');
    return parts.size() == 4 ? Bond{parts[0], parts[1], parts[2], parts[3]} : Bond();
  }
  QString text() const { return QStringList{mark, before, file, journal}.join(u' '); }
};

Bond readBond(const Connection& connection) {
  Statement read(connection, kReadBond, enginefault::CannotOpen);
  Statement::Run row(read);
  return row.step() ? Bond::fromText(row.text(0)) : Bond();
}

[[noreturn]] void refuseJournal(const QString& journal, const QString& path, const QString& reason) {
  throw RuntimeError(enginefault::Damaged,
                     u"%1: the database cannot be opened because of the file %2 beside it (%3)"_s.arg(
                         path, journal, reason));
}

// A link would lead the journal's content elsewhere, a device or pipe never ends.
void requirePlainFile(const QString& journal, const QString& path) {
  const QFileInfo file(journal);
  if (file.isSymLink() || (file.exists() && !file.isFile()))
    refuseJournal(journal, path, u"a journal must be a plain file"_s);
}

// The bytes of a file on which SQLite's connections keep their lock as long as they are open.
constexpr int kSharedLockAt = 0x40000002, kSharedLockSize = 510;

void removeEmptyJournals(const QString& path) {
  if (QFileInfo(walOf(path)).size() > kJournalHead) return;
  for (const QString& suffix : {u"-wal"_s, u"-shm"_s}) QFile::remove(path + suffix);
}

#ifdef Q_OS_UNIX
struct flock sharedLock() {
  struct flock lock = {};
  lock.l_type = F_WRLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kSharedLockAt;
  lock.l_len = kSharedLockSize;
  return lock;
}

bool isOpenElsewhere(const QString& path) {
  const int file = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return false;
  struct flock lock = sharedLock();
  const bool locked = ::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
  ::close(file);
  return locked;
}

// Whoever keeps it open had another file of this name. While it is looked at and goes, nobody opens the
// database.
void removeEmptyWal(const QString& path) {
  const int file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CLOEXEC);
  if (file < 0) return;
  struct flock lock = sharedLock();
  if (::fcntl(file, F_SETLK, &lock) == 0) removeEmptyJournals(path);
  ::close(file);
}
#else
// Takes those bytes of a file alone; held() says whether nobody else has it open. Connections of this process
// are others there as well.
class LockAlone {
 public:
  explicit LockAlone(const QString& path)
      : file_(CreateFileW(reinterpret_cast<const wchar_t*>(path.utf16()), GENERIC_READ,
                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                          FILE_ATTRIBUTE_NORMAL, nullptr)) {
    OVERLAPPED place = {};
    place.Offset = kSharedLockAt;
    held_ = isFile() && LockFileEx(file_, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0,
                                   kSharedLockSize, 0, &place);
  }
  ~LockAlone() {
    if (isFile()) CloseHandle(file_);
  }
  LockAlone(const LockAlone&) = delete;
  LockAlone& operator=(const LockAlone&) = delete;
  bool isFile() const { return file_ != INVALID_HANDLE_VALUE; }
  bool held() const { return held_; }

 private:
  HANDLE file_;
  bool held_ = false;
};

bool isOpenElsewhere(const QString& path) {
  const LockAlone lock(path);
  return lock.isFile() && !lock.held();
}
void removeEmptyWal(const QString& path) {
  if (const LockAlone lock(path); lock.held()) removeEmptyJournals(path);
}
#endif

Bond bondInFile(const QString& path, bool& known) {
  try {
    const Connection file(path, SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, true);
    requireOwnSchema(file);
    known = true;
    return readBond(file);
  } catch (const RuntimeError&) {
    // The journal was on its way into the file: only both together can be read.
    known = false;
    return {};
  }
}

// Reads what the journal says, but leaves it and the file as they are.
Bond bondInJournal(const QString& path) {
  try {
    const Connection both(path, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX);
    sqlite3_db_config(both.handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    requireOwnSchema(both);
    return readBond(both);
  } catch (const RuntimeError&) {
    return {};  // told by whoever opens the database
  }
}

void requireOwnWal(const QString& path) {
  const QString wal = walOf(path);
  const Bond now = bondInJournal(path);
  if (now.mark.isEmpty()) return;
  if (now.journal == lastingIdentity(wal) && now.file != lastingIdentity(path))
    refuseJournal(wal, path,
                  u"it belongs to another file that had this name; move it away to open this one"_s);
  bool known = false;
  const Bond before = bondInFile(path, known);
  if (known && before.mark != now.mark && before.mark != now.before)
    refuseJournal(wal, path, u"it belongs to another state of the file; move it away to open this one"_s);
}

}  // namespace

void requireOwnJournals(const QString& path) {
  for (const QString& suffix : {u"-wal"_s, u"-shm"_s, u"-journal"_s}) requirePlainFile(path + suffix, path);
  const QFileInfo wal(walOf(path)), journal(path + u"-journal"_s);
  if (!wal.exists() && !journal.exists()) return;
  const bool inUse = isOpenElsewhere(path);
  const QString fault = faultOfRollbackJournal(path, inUse);
  if (!fault.isEmpty()) refuseJournal(journal.filePath(), path, fault);
  if (!wal.exists() || inUse) return;
  if (wal.size() > kJournalHead) return requireOwnWal(path);
  removeEmptyWal(path);
}

JournalBond::JournalBond(Connection& connection)
    : connection_(connection), journal_(walOf(connection.path())) {
  sqlite3_wal_hook(connection_.handle(), &JournalBond::committed, this);
  renew();
}

JournalBond::~JournalBond() {
  sqlite3_wal_hook(connection_.handle(), nullptr, nullptr);
}

// What a crash left in the journal goes into the file first: a mark must follow the one that the file has.
void JournalBond::renew() {
  int pages = 0, done = 0;
  const int status =
      sqlite3_wal_checkpoint_v2(connection_.handle(), "main", SQLITE_CHECKPOINT_PASSIVE, &pages, &done);
  journalFile_ = FileIdentity::of(journal_);
  known_.clear();
  due_ = status == SQLITE_OK && pages == done;
}

// Once all of the journal is in the file, it may begin anew, and then needs a mark of its own.
int JournalBond::committed(void* self, sqlite3* handle, const char* name, int pages) {
  if (pages < kPagesBeforeCheckpoint) return SQLITE_OK;
  int all = 0, done = -1;
  sqlite3_wal_checkpoint_v2(handle, name, SQLITE_CHECKPOINT_PASSIVE, &all, &done);
  if (all == done) static_cast<JournalBond*>(self)->due_ = true;
  return SQLITE_OK;
}

// Others may have marked the journal meanwhile: two marks on one state of the file would lose the first.
void JournalBond::write() {
  const Bond last = readBond(connection_);
  const bool first = known_.isEmpty();
  const QString file = lastingIdentity(connection_.path()), journal = lastingIdentity(journal_);
  const bool marked = first ? last.file == file && last.journal == journal : last.mark != known_;
  known_ = last.mark;
  if (!marked) {
    known_ = QUuid::createUuid().toString(QUuid::Id128);
    const QString text = Bond{known_, last.mark, file, journal}.text();
    Statement put(connection_, kWriteBond, enginefault::NotSaved);
    Statement::Run(put, text).step();
    journalFile_ = FileIdentity::of(journal_);
  }
  due_ = false;
}

void JournalBond::letGo() noexcept {
  sqlite3* const handle = connection_.handle();
  const bool ours = FileIdentity::of(journal_) == journalFile_;
  sqlite3_busy_timeout(handle, 0);
  const int mode = ours ? SQLITE_CHECKPOINT_TRUNCATE : SQLITE_CHECKPOINT_PASSIVE;
  sqlite3_wal_checkpoint_v2(handle, "main", mode, nullptr, nullptr);
  sqlite3_busy_timeout(handle, kBusyTimeoutMs);
  // Others may have the file open and go on in this journal.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

}  // namespace lens
