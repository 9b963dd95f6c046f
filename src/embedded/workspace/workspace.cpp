#include "embedded/workspace/workspace.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <algorithm>

#include "embedded/format/case_key.h"
#include "notes/abbreviate_name.h"
#include "notes/literals.h"

namespace lens {
namespace {

const QString kDefaultUser = u"CN=Karin Meier/O=Acme"_s;

void makeDirectory(const QString& path) {
  if (!QDir().mkpath(path)) failWorkspace(enginefault::CannotOpen, path, u"the directory cannot be made"_s);
}

// Names of folders may hold no character that a file system or a path would read otherwise.
QString folderName(const QString& serverName) {
  QString folder = nameWithoutLabels(serverName).section(u'/', 0, 0);
  for (QChar& c : folder)
    if (!c.isLetterOrNumber() && c != u'-' && c != u'_' && c != u' ') c = u'_';
  return folder.trimmed().isEmpty() ? u"server"_s : folder.trimmed();
}

bool isDatabaseName(const QString& name) {
  return name.endsWith(u".nsf", Qt::CaseInsensitive) || name.endsWith(u".ntf", Qt::CaseInsensitive);
}

// The name as the directory spells it: exact, or else in any case of letters.
QString spelledName(const QString& directory, const QString& name) {
  if (QFileInfo::exists(directory + u'/' + name)) return name;
  const QStringList entries =
      QDir(directory).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  for (const QString& entry : entries)
    if (entry.compare(name, Qt::CaseInsensitive) == 0) return entry;
  return name;
}

[[noreturn]] void refusePath(const QString& path, const QString& reason) {
  failWorkspace(workspacefault::BadPath, u'"' + path + u'"', reason);
}

// The parts of a path below a directory. An absolute path is taken when it lies below it.
QStringList pathParts(const QString& directory, const QString& path) {
  QString plain = path.trimmed();
  plain.replace(u'\\', u'/');
  if (plain.startsWith(directory + u'/')) plain = plain.mid(directory.size() + 1);
  if (plain.isEmpty()) refusePath(path, u"no file name is given"_s);
  if (plain.startsWith(u'/') || plain.contains(u':') || plain.contains(QChar(0)))
    refusePath(path, u"the path leads out of the directory of databases"_s);
  QStringList parts = plain.split(u'/', Qt::SkipEmptyParts);
  parts.removeAll(u"."_s);
  if (parts.isEmpty() || parts.contains(u".."_s))
    refusePath(path, u"the path leads out of the directory of databases"_s);
  return parts;
}

// Those of a database, whose name may lack its ending.
QStringList databaseParts(const QString& directory, const QString& path) {
  QStringList parts = pathParts(directory, path);
  if (!isDatabaseName(parts.last())) parts.last() += u".nsf"_s;
  return parts;
}

// A real database is only read: it may lie anywhere on this machine.
bool isRealOutside(const QString& server, const QString& directory, const QString& path) {
  const QString file = QDir::cleanPath(QDir::fromNativeSeparators(path.trimmed()));
  return server.isEmpty() && QDir::isAbsolutePath(file) && !file.startsWith(directory + u'/') &&
         RealDatabases::isReal(file);
}

// A link inside the directory may still lead out of it. Of a file that is not there yet the deepest folder
// that is counts.
void checkInside(const QString& directory, const QString& file, const QString& path) {
  const QString root = QFileInfo(directory).canonicalFilePath();
  if (root.isEmpty()) return;
  QFileInfo there(file);
  while (!there.exists() && !there.isSymLink()) there.setFile(there.path());
  const QString canonical = there.canonicalFilePath();
  if (canonical != root && !canonical.startsWith(root + u'/'))
    refusePath(path, u"the file lies outside the directory of databases"_s);
}

}  // namespace

QString nameWithoutLabels(const QString& canonical) {
  QStringList parts = canonical.split(u'/');
  for (QString& part : parts) part = part.mid(part.indexOf(u'=') + 1).trimmed();
  return parts.join(u'/');
}

std::shared_ptr<Workspace> Workspace::open(const QString& directory, const Regional& regional) {
  const QString path = QDir::cleanPath(QFileInfo(directory).absoluteFilePath());
  const QFileInfo info(path);
  if (directory.isEmpty()) failWorkspace(enginefault::CannotOpen, u"Workspace"_s, u"no directory is named"_s);
  if (info.exists() && !info.isDir())
    failWorkspace(enginefault::CannotOpen, path, u"the workspace is a file, not a directory"_s);
  if (!info.exists() && !QFileInfo(info.path()).isDir())
    failWorkspace(enginefault::CannotOpen, path, u"the directory of the workspace does not exist"_s);
  if (!info.exists()) makeDirectory(path);
  if (!QFileInfo(path).isReadable() || !QFileInfo(path).isExecutable())
    failWorkspace(enginefault::CannotOpen, path, u"the directory cannot be read"_s);
  try {
    return std::shared_ptr<Workspace>(new Workspace(path, regional));
  } catch (const RuntimeError& error) {
    if (error.number() == enginefault::CannotOpen) throw;
    failWorkspace(enginefault::CannotOpen, path, error.description());
  }
}

Workspace::Workspace(const QString& directory, const Regional& regional)
    : directory_(directory),
      regional_(regional),
      ini_(directory + u"/notes.ini"_s, u"Notes"_s),
      real_(directory) {
  if (!QFileInfo::exists(ini_.path())) {
    ini_.change([](IniFile& ini) {
      // Another program may be making the same workspace.
      if (!ini.has(u"Directory")) ini.setValue(u"Directory"_s, u"data"_s);
      if (!ini.has(u"UserName")) ini.setValue(u"UserName"_s, kDefaultUser);
    });
  }
  const QString data = ini_.value(u"Directory");
  dataDirectory_ = QDir::cleanPath(QDir(directory_).absoluteFilePath(data.isEmpty() ? u"data"_s : data));
  makeDirectory(dataDirectory_);
  readServers();
}

QString Workspace::userName() const {
  const QString name = ini_.value(u"UserName");
  return name.isEmpty() ? kDefaultUser : name;
}

QString Workspace::programDirectory() const {
  return QDir::cleanPath(QDir(directory_).absoluteFilePath(ini_.value(u"NotesProgram")));
}

void Workspace::readAgain() {
  ini_ = IniFile(ini_.path(), u"Notes"_s);
  readServers();
}

void Workspace::setIniValue(const QString& name, const QString& value) {
  ini_.change([&](IniFile& ini) { ini.setValue(name, value); });
}

void Workspace::readServers() {
  servers_.clear();
  serverFaults_.clear();
  const QDir root(directory_ + u"/servers"_s);
  for (const QString& folder : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
    const QString path = root.absoluteFilePath(folder);
    try {
      QString name = IniFile(path + u"/server.ini"_s, u"Server"_s).value(u"Name");
      if (name.isEmpty()) name = u"CN="_s + folder;
      servers_.push_back({name, path});
    } catch (const RuntimeError& error) {
      serverFaults_.append(error.description());
    }
  }
}

QStringList Workspace::serverNames() const {
  QStringList names;
  for (const Server& server : servers_) names.append(server.name);
  return names;
}

void Workspace::addServer(const QString& canonicalName) {
  for (const Server& server : servers_)
    if (server.name.compare(canonicalName, Qt::CaseInsensitive) == 0) return;
  const QString base = directory_ + u"/servers/"_s + folderName(canonicalName);
  QString path = base;
  for (int i = 2; QFileInfo::exists(path); ++i) path = base + QString::number(i);
  makeDirectory(path);
  IniFile ini(path + u"/server.ini"_s, u"Server"_s);
  ini.change([&](IniFile& file) { file.setValue(u"Name"_s, canonicalName); });
  readServers();
}

QString Workspace::canonicalServer(const QString& name) const {
  if (name.isEmpty()) return {};
  // Lists show names in either short form.
  for (const Server& server : servers_)
    if (sameCaseKey(abbreviateName(server.name), abbreviateName(name)) ||
        sameCaseKey(nameWithoutLabels(server.name), nameWithoutLabels(name)))
      return server.name;
  failWorkspace(workspacefault::UnknownServer, name,
                u"Unable to find path to server. No server of this name is in the workspace."_s);
}

const QString& Workspace::serverDirectory(const QString& canonicalName) const {
  if (canonicalName.isEmpty()) return dataDirectory_;
  for (const Server& server : servers_)
    if (server.name == canonicalName) return server.directory;
  failWorkspace(workspacefault::UnknownServer, canonicalName, u"no such server"_s);
}

QStringList Workspace::databaseFiles(const QString& server) const {
  const QString root = serverDirectory(canonicalServer(server));
  QStringList found;
  QDirIterator files(root, QDir::Files | QDir::NoSymLinks, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    const QString path = files.next();
    if (isDatabaseName(path)) found.append(QDir::toNativeSeparators(path.mid(root.size() + 1)));
  }
  std::sort(found.begin(), found.end(), [](const QString& a, const QString& b) {
    const QString upperA = a.toUpper(), upperB = b.toUpper();
    return upperA != upperB ? upperA < upperB : a < b;
  });
  return found;
}

QStringList Workspace::databases(const QString& server) const {
  const QString root = serverDirectory(canonicalServer(server));
  QStringList found = databaseFiles(server);
  found.removeIf([&](const QString& path) {
    return !looksLikeDatabase(root + u'/' + QDir::fromNativeSeparators(path));
  });
  return found;
}

bool Workspace::looksLikeDatabase(const QString& file) {
  return Database::looksLikeDatabase(file) || RealDatabases::isReal(file);
}

DatabasePlace Workspace::place(const QString& server, const QString& path) const {
  const QString name = canonicalServer(server);
  const QString& root = serverDirectory(name);
  if (isRealOutside(name, root, path))
    return {name, QDir::toNativeSeparators(QDir::cleanPath(path.trimmed()))};
  QStringList parts = databaseParts(root, path);
  QString directory = root;
  for (QString& part : parts) {
    part = spelledName(directory, part);
    directory += u'/' + part;
  }
  checkInside(root, directory, path);
  return {name, parts.join(QDir::separator())};
}

// A path that leads to the database itself, in whatever letters, gives its name those letters.
DatabasePlace Workspace::newPlace(const DatabasePlace& old, const QString& path) const {
  DatabasePlace to = place(old.server, path);
  if (to != old) return to;
  QStringList parts = to.path.split(QDir::separator());
  parts.last() = databaseParts(serverDirectory(to.server), path).last();
  to.path = parts.join(QDir::separator());
  return to;
}

QString Workspace::absolutePath(const DatabasePlace& place) const {
  if (QDir::isAbsolutePath(place.path)) return QDir::fromNativeSeparators(place.path);
  return serverDirectory(place.server) + u'/' + QDir::fromNativeSeparators(place.path);
}

std::shared_ptr<Database> Workspace::database(const QString& server, const QString& path) {
  const QString file = absolutePath(place(server, path));
  // Also for who has it open: what is saved to a file that somebody deleted would be lost.
  if (!QFileInfo(file).isFile()) {
    if (auto copy = real_.openWithoutSource(file)) return copy;
    failWorkspace(workspacefault::NoSuchFile, file, u"File does not exist"_s);
  }
  return RealDatabases::isReal(file) ? real_.open(file) : Database::open(file);
}

}  // namespace lens
