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
constexpr char kCopyVersion[] = "1";
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

// The state by the bytes, and by what the system says of the file.
QByteArray fullStateOf(const QString& path, const NsfSource& source) {
  const qint64 time = QFileInfo(path).lastModified().toMSecsSinceEpoch();
  return nsfStateOf(source) + '/' + QByteArray::number(time) + '/' + kCopyVersion;
}

std::unique_ptr<NsfFileSource> requireSource(const QString& path) {
  QString reason;
  auto source = NsfFileSource::open(path, reason);
  if (!source) failWorkspace(enginefault::CannotOpen, path, u"the file cannot be read (%1)"_s.arg(reason));
  return source;
}

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
  const QJsonObject report = QJsonDocument::fromJson(contentOf(reportPathIn(folder, "json"_L1))).object();
  real.notesFound = report[u"notesFound"_s].toInt();
  real.notesRead = report[u"notesRead"_s].toInt();
  real.reportText = QString::fromUtf8(contentOf(reportPathIn(folder, "txt"_L1)));
  return real;
}

}  // namespace

QString RealDatabase::line() const {
  return u"read-only copy of %1, %2 of %3 notes read"_s.arg(QFileInfo(source).fileName())
      .arg(notesRead)
      .arg(notesFound);
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
  const QString file = OpenDatabases::trueFile(path);
  const auto source = requireSource(file);
  const QByteArray state = fullStateOf(file, *source);
  const QString root = directory_ + u"/cache/nsf"_s, prefix = shortDigest(file.toUtf8()) + u'-';
  const QString plain = root + u'/' + prefix + shortDigest(state);
  for (const QString& folder : {plain + kWithWords, plain}) {
    if (!holdsCopy(folder, file)) continue;
    try {
      const auto database = openCopy(copyPathIn(folder, file), file, nsfStateOf(*source));
      copies_.insert(path, database->path());
      removeEarlier(prefix, QFileInfo(folder).fileName());
      return database;
    } catch (const RuntimeError& error) {
      if (error.number() != enginefault::Damaged && error.number() != enginefault::NewerSchema) throw;
      removeFolder(folder);
    }
  }
  makeCopy(file, state, plain);
  removeEarlier(prefix, QFileInfo(plain).fileName());
  const QString copy = copyPathIn(plain, file);
  copies_.insert(path, copy);
  return openCopy(copy, file, nsfStateOf(*source));
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

void RealDatabases::makeCopy(const QString& path, const QByteArray& state, const QString& folder) {
  MadeFolders folders(folder);
  if (!folders.areReady()) failWorkspace(enginefault::CannotOpen, folder, u"the directory cannot be made"_s);
  const QString copy = copyPathIn(folder, path);
  // Another program may write the file meanwhile: what was read must be of one state.
  constexpr int kTries = 3;
  for (int attempt = 1;; ++attempt) {
    NsfDatabase database(requireSource(path));
    requireReadable(database, path);
    StagedFile fresh(copy, StagedFile::Old::Replace);
    copyNsf(database, fresh.path());
    if (database.hasChangedSince() && attempt < kTries) continue;
    if (database.hasChangedSince() || fullStateOf(path, *requireSource(path)) != state)
      failWorkspace(enginefault::CannotOpen, path, u"the file changes while it is read; open it again"_s);
    fillFolders(database, *Database::open(fresh.path()));
    fresh.requireWhole();
    seal(fresh.path());
    fresh.putInPlace();
    NsfReport report = database.report();
    report.path = path;
    replaceWhole(reportPathIn(folder, "txt"_L1), report.text().toUtf8());
    replaceWhole(reportPathIn(folder, "json"_L1), QJsonDocument(report.json()).toJson());
    folders.keep();
    return;
  }
}

// One copy for each file: the states before are of no use to anybody.
void RealDatabases::removeEarlier(const QString& prefix, const QString& except) const {
  const QDir root(directory_ + u"/cache/nsf"_s);
  for (const QString& name : root.entryList({prefix + u'*'}, QDir::Dirs | QDir::NoDotAndDotDot)) {
    if (name == except) continue;
    const QStringList copies = QDir(root.filePath(name)).entryList({u"*.nsf"_s, u"*.ntf"_s}, QDir::Files);
    const bool isOpen = std::any_of(copies.begin(), copies.end(), [&](const QString& copy) {
      return HeldFile::isHeld(FileIdentity::of(root.filePath(name + u'/' + copy)));
    });
    if (!isOpen) removeFolder(root.filePath(name));
  }
}

std::shared_ptr<Database> RealDatabases::openCopy(const QString& copy, const QString& path,
                                                  const QByteArray& state) {
  std::shared_ptr<Database> database = Database::open(copy);
  if (!database->objects().hasOutside())
    database->objects().setOutside(std::make_unique<NsfObjects>(path, state));
  known_.insert(database->path(), describeBy(QFileInfo(copy).path(), path));
  return database;
}

std::optional<RealDatabase> RealDatabases::describe(const Database& database) const {
  const auto known = known_.constFind(database.path());
  return known == known_.constEnd() ? std::nullopt : std::optional(*known);
}

}  // namespace lens
