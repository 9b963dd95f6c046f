#include "embedded/workspace/real_databases.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QJsonDocument>

#include "embedded/files/made_folders.h"
#include "embedded/files/staged_file.h"
#include "embedded/nsf/nsf_copy.h"
#include "embedded/nsf/nsf_objects.h"
#include "embedded/nsf/nsf_state.h"
#include "embedded/search/full_text.h"
#include "embedded/store/database_copy.h"
#include "embedded/store/open_databases.h"
#include "embedded/views/folder_documents.h"
#include "embedded/workspace/workspace_fault.h"
#include "host/save_file.h"

namespace lens {
namespace {

// The layout of what is kept: copies of an earlier one are made anew.
constexpr char kCopyVersion[] = "2";
constexpr qsizetype kDigits = 16;

QString shortDigest(const QByteArray& bytes) {
  return QString::fromLatin1(
      QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().first(kDigits));
}

QString copyPathIn(const QString& folder, const QString& source) {
  return folder + u'/' + QFileInfo(source).fileName();
}
QString reportPathIn(const QString& folder, QLatin1String ending) {
  return folder + u"/report."_s + ending;
}
// The report is written last.
bool holdsCopy(const QString& folder, const QString& source) {
  return QFileInfo(reportPathIn(folder, "json"_L1)).isFile() &&
         Database::looksLikeDatabase(copyPathIn(folder, source));
}
constexpr QLatin1String kWithWords = "-words"_L1;

std::unique_ptr<NsfFileSource> requireSource(const QString& path) {
  QString reason;
  auto source = NsfFileSource::open(path, reason);
  if (!source) failWorkspace(enginefault::CannotOpen, path, u"the file cannot be read (%1)"_s.arg(reason));
  return source;
}

// Where the copies of a file in the state in which it is now lie.
struct CopyPlace {
  QString file;
  QByteArray state;  // by its bytes
  QString prefix;    // of the folders of all states
  QString plain;     // the folder

  CopyPlace(const QString& root, const QString& path)
      : file(OpenDatabases::trueFile(path)),
        state(nsfStateOf(*requireSource(file))),
        prefix(shortDigest(file.toUtf8()) + u'-') {
    const qint64 time = QFileInfo(file).lastModified().toMSecsSinceEpoch();
    plain = root + u'/' + prefix + shortDigest(state + '/' + QByteArray::number(time) + '/' + kCopyVersion);
  }
  // The one with an index first.
  QStringList folders() const { return {plain + kWithWords, plain}; }
};

void requireReadable(const NsfDatabase& database, const QString& path) {
  const QString& reason = database.report().refused;
  switch (database.refusal()) {
    case NsfRefusal::None:
      return;
    case NsfRefusal::NotADatabase:
      failWorkspace(enginefault::NotADatabase, path, reason);
    case NsfRefusal::Damaged:
      failWorkspace(enginefault::Damaged, path, reason);
    case NsfRefusal::TooOld:
    case NsfRefusal::Encrypted:
    case NsfRefusal::Unsupported:
      failWorkspace(enginefault::CannotOpen, path, reason);
  }
}

// The documents of folders, as far as they are there.
void fillFolders(NsfDatabase& source, Database& copy) {
  for (const NoteSummary& view : copy.notes().list(noteclass::View)) {
    NsfNote note;
    if (!source.readNote(view.id, note)) continue;
    QVector<NoteId> documents = source.folderDocuments(note);
    documents.removeIf([&](NoteId id) { return copy.notes().state(id) != NoteState::Live; });
    if (documents.isEmpty()) continue;
    try {
      addToFolder(copy, view.id, documents);
    } catch (const RuntimeError& error) {
      if (error.number() != kNoFolder) throw;
    }
  }
}

// Nobody may change what is only a copy; every way to do it then fails as on any file that is
// write-protected.
void seal(const QString& path) {
  if (!QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadUser))
    failWorkspace(enginefault::NotSaved, path, u"the copy cannot be protected from changes"_s);
}

void removeFolder(const QString& folder) {
  QDirIterator files(folder, QDir::Files | QDir::Hidden);
  while (files.hasNext()) QFile::setPermissions(files.next(), QFile::ReadOwner | QFile::WriteOwner);
  QDir(folder).removeRecursively();
}

QByteArray contentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

RealDatabase describeBy(const QString& folder, const QString& source) {
  RealDatabase real;
  real.source = source;
  real.reportJson = contentOf(reportPathIn(folder, "json"_L1));
  const QJsonObject report = QJsonDocument::fromJson(real.reportJson).object();
  real.notesFound = report[u"notesFound"_s].toInt();
  real.notesRead = report[u"notesRead"_s].toInt();
  real.isComplete = report[u"complete"_s].toBool();
  real.reportText = QString::fromUtf8(contentOf(reportPathIn(folder, "txt"_L1)));
  return real;
}

// What a process that died left of an earlier attempt.
void removeUnfinished(const QString& copy) {
  if (!QFileInfo::exists(copy)) return;
  QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
  QFile::remove(copy);
}

[[noreturn]] void refuseRestless(const QString& path) {
  failWorkspace(enginefault::CannotOpen, path, u"the file changes while it is read; open it again"_s);
}

using Going = std::function<bool(qint64 done, qint64 all)>;

// False, and nothing is left, where another program wrote the file meanwhile: what was read must be of one
// state. Raises NsfReadingEnded when it is not to go on.
bool makeCopy(const QString& root, const CopyPlace& place, const Going& go) {
  MadeFolders folders(place.plain);
  if (!folders.areReady())
    failWorkspace(enginefault::CannotOpen, place.plain, u"the directory cannot be made"_s);
  const QString copy = copyPathIn(place.plain, place.file);
  auto source = requireSource(place.file);
  qint64 done = 0, all = 0;
  source->setWatch([&] { return go(done, all); });
  NsfDatabase database(std::move(source));
  requireReadable(database, place.file);
  StagedFile fresh(copy, StagedFile::Old::Replace);
  copyNsf(database, fresh.path(), [&](qint64 notes, qint64 ofAll) {
    done = notes;
    all = ofAll;
    if (!go(done, all)) throw NsfReadingEnded();
  });
  fillFolders(database, *Database::open(fresh.path()));
  if (database.hasChangedSince() || CopyPlace(root, place.file).plain != place.plain) return false;
  fresh.requireWhole();
  seal(fresh.path());
  removeUnfinished(copy);
  fresh.putInPlace();
  NsfReport report = database.report();
  report.path = place.file;
  replaceWhole(reportPathIn(place.plain, "txt"_L1), report.text().toUtf8());
  replaceWhole(reportPathIn(place.plain, "json"_L1), QJsonDocument(report.json()).toJson());
  folders.keep();
  return true;
}

}  // namespace

QString RealDatabase::line() const {
  return u"read-only copy of %1, %2 of %3 notes read"_s.arg(
      QFileInfo(source).fileName(), QString::number(notesRead), QString::number(notesFound));
}

QString RealDatabase::warning() const {
  if (isComplete) return {};
  return u"%1 of %2 notes read: not all that the file holds can be shown"_s.arg(notesRead).arg(notesFound);
}

bool RealDatabases::isReal(const QString& path) {
  return QFileInfo(path).isFile() && looksLikeNsf(path);
}

DatabaseInfo RealDatabases::infoOf(const QString& path) {
  const std::optional<NsfProperties> properties = nsfPropertiesOf(path);
  return properties ? infoOfNsf(*properties) : DatabaseInfo();
}

std::shared_ptr<Database> RealDatabases::openWithoutSource(const QString& path) {
  const QString copy = copies_.value(path);
  return Database::looksLikeDatabase(copy) ? Database::open(copy) : nullptr;
}

std::shared_ptr<Database> RealDatabases::open(const QString& path) {
  if (auto copy = openKept(path)) return copy;
  const auto go = [&](qint64 done, qint64 all) { return !watch_.reading || watch_.reading(path, done, all); };
  if (!read(path, go)) failWorkspace(enginefault::CannotOpen, path, u"the reading was ended"_s);
  if (auto copy = openKept(path)) return copy;
  refuseRestless(path);
}

std::shared_ptr<Database> RealDatabases::openKept(const QString& path) {
  const CopyPlace place(root(), path);
  for (const QString& folder : place.folders()) {
    if (!holdsCopy(folder, place.file)) continue;
    try {
      auto database = Database::open(copyPathIn(folder, place.file));
      if (!database->objects().hasOutside())
        database->objects().setOutside(std::make_unique<NsfObjects>(place.file, place.state));
      remember(*database, folder, place.file);
      copies_.insert(path, database->path());
      removeEarlier(place.prefix, QFileInfo(folder).fileName());
      return database;
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged && error.number() != enginefault::NewerSchema) throw;
      removeFolder(folder);
    }
  }
  return nullptr;
}

bool RealDatabases::isRead(const QString& path) const {
  const CopyPlace place(root(), path);
  const QStringList folders = place.folders();
  return std::any_of(folders.begin(), folders.end(),
                     [&](const QString& folder) { return holdsCopy(folder, place.file); });
}

bool RealDatabases::read(const QString& path, const Going& go) const {
  constexpr int kTries = 3;
  try {
    for (int attempt = 0; attempt < kTries; ++attempt)
      if (makeCopy(root(), CopyPlace(root(), path), go)) return true;
  } catch (const NsfReadingEnded&) {
    return false;
  }
  refuseRestless(path);
}

bool RealDatabases::indexCopy(const QString& copy, const std::function<bool(qint64 done, qint64 total)>& go) {
  const QString plain = QFileInfo(copy).path(), folder = plain + kWithWords;
  if (!go(0, 0)) return false;
  // It has one, or somebody else has made it meanwhile; nothing changes in it.
  if (plain.endsWith(kWithWords) || holdsCopy(folder, copy)) return true;
  removeFolder(folder);
  MadeFolders folders(folder);
  if (!folders.areReady()) failWorkspace(enginefault::CannotOpen, folder, u"the directory cannot be made"_s);
  const QString target = copyPathIn(folder, copy);
  StagedFile fresh(target, StagedFile::Old::Replace);
  copyPages(copy, fresh.path());
  if (!createFullTextIndex(*Database::open(fresh.path()), {go})) return false;
  fresh.requireWhole();
  seal(fresh.path());
  fresh.putInPlace();
  for (const QLatin1String ending : {"txt"_L1, "json"_L1})
    replaceWhole(reportPathIn(folder, ending), contentOf(reportPathIn(plain, ending)));
  folders.keep();
  return true;
}

// One copy for each file: the states before are of no use to anybody.
void RealDatabases::removeEarlier(const QString& prefix, const QString& except) const {
  const QDir all(root());
  for (const QString& name : all.entryList({prefix + u'*'}, QDir::Dirs | QDir::NoDotAndDotDot)) {
    if (name == except) continue;
    const QStringList files = QDir(all.filePath(name)).entryList(QDir::Files);
    const bool isOpen = std::any_of(files.begin(), files.end(), [&](const QString& file) {
      return HeldFile::isHeld(FileIdentity::of(all.filePath(name + u'/' + file)));
    });
    if (!isOpen) removeFolder(all.filePath(name));
  }
}

// Told once for each copy.
void RealDatabases::remember(const Database& copy, const QString& folder, const QString& source) {
  if (known_.contains(copy.path())) return;
  const auto known = known_.insert(copy.path(), describeBy(folder, source));
  if (watch_.opened) watch_.opened(*known);
}

std::optional<RealDatabase> RealDatabases::describe(const Database& database) const {
  const auto known = known_.constFind(database.path());
  return known == known_.constEnd() ? std::nullopt : std::optional(*known);
}

}  // namespace lens
