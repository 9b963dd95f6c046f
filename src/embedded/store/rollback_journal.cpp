#include "embedded/store/rollback_journal.h"

#include <QFile>
#include <QtEndian>
#include <optional>

#include "notes/literals.h"

namespace lens {
namespace {

// The layout is SQLite's: a head in a sector of its own, then the pages as they were before the change, each
// with its number before it and a checksum behind it.
constexpr char kRollbackMark[] = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7";
constexpr qint64 kRollbackMarkSize = 8, kRollbackHead = 28, kRollbackTail = 16;
constexpr qint64 kSectorAt = 20, kPageSizeAt = 24, kPagesBeforeAt = 16;
constexpr qint64 kCounterAt = 24, kPagesAt = 28;  // on the first page of a file

QByteArray rollbackMark() {
  return QByteArray(kRollbackMark, kRollbackMarkSize);
}

quint32 bigNumberAt(const QByteArray& bytes, qint64 at) {
  return qFromBigEndian<quint32>(bytes.constData() + at);
}

QByteArray journalBytes(QFile& file, qint64 at, qint64 size) {
  return file.seek(at) ? file.read(size) : QByteArray();
}

bool isPowerOfTwo(quint32 number, quint32 least, quint32 most) {
  return number >= least && number <= most && (number & (number - 1)) == 0;
}

// A journal of a change that concerned several files ends in the name of another journal.
bool namesAnotherJournal(QFile& journal) {
  return journal.size() >= kRollbackTail &&
         journalBytes(journal, journal.size() - kRollbackMarkSize, kRollbackMarkSize) == rollbackMark();
}

// The counter of changes on the first page as it was before. That page is among the others unless the change
// had only just begun.
std::optional<quint32> counterBefore(QFile& journal, const QByteArray& head) {
  const quint32 sector = bigNumberAt(head, kSectorAt), page = bigNumberAt(head, kPageSizeAt);
  if (!isPowerOfTwo(sector, 32, 65536) || !isPowerOfTwo(page, 512, 65536)) return std::nullopt;
  const qint64 step = 4 + qint64(page) + 4;
  for (qint64 at = sector; at + step <= journal.size(); at += step) {
    const QByteArray number = journalBytes(journal, at, 4);
    if (number.size() < 4) return std::nullopt;
    if (bigNumberAt(number, 0) != 1) continue;
    const QByteArray counter = journalBytes(journal, at + 4 + kCounterAt, 4);
    return counter.size() < 4 ? std::nullopt : std::optional(bigNumberAt(counter, 0));
  }
  return std::nullopt;
}

}  // namespace

QString faultOfRollbackJournal(const QString& path, bool inUse) {
  QFile journal(path + u"-journal"_s), file(path);
  if (!journal.exists() || journal.size() == 0) return {};
  if (!journal.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ||
      !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
    return u"it cannot be read"_s;
  if (namesAnotherJournal(journal)) return u"it names another file, which this program never does"_s;
  if (inUse) return {};
  const QByteArray head = journalBytes(journal, 0, kRollbackHead);
  if (head.size() < kRollbackHead || !head.startsWith(rollbackMark())) return {};  // SQLite passes over it
  const std::optional<quint32> before = counterBefore(journal, head);
  const QByteArray now = journalBytes(file, kCounterAt, 8);
  if (now.size() < 8) return {};
  const bool own = before ? bigNumberAt(now, 0) - *before <= 1
                          : bigNumberAt(now, kPagesAt - kCounterAt) == bigNumberAt(head, kPagesBeforeAt);
  if (!own) return u"it belongs to another state of the file; move it away to open this one"_s;
  return {};
}

}  // namespace lens
