#include "command/doors.h"
#include "command/command_text.h"

#include <QDir>
#include <QFileInfo>

#include "embedded/capi/embedded_capi.h"
#include "embedded/model/embedded_gateway.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kNeedsEngine = err::MemberNotSupported;
constexpr qsizetype kUnidDigits = 32;

}  // namespace

// Where there is no notes.ini a workspace would be made, in whatever directory the user mistyped.
Doors openDoors(const QString& directory, const Regional& regional, std::function<bool()> interrupted) {
  const QString shown = QDir::toNativeSeparators(directory);
  if (!QFileInfo(directory).isDir())
    throw RuntimeError(enginefault::CannotOpen, CommandText::tr("%1: there is no such workspace").arg(shown));
  if (!QFileInfo::exists(directory + u"/notes.ini"_s))
    throw RuntimeError(enginefault::CannotOpen,
                       CommandText::tr("%1: the directory is no workspace (it has no notes.ini)").arg(shown));
  Doors doors{Workspace::open(directory, regional), nullptr, nullptr, regional};
  doors.workspace->setInterruptCheck(std::move(interrupted));
  doors.notes = std::make_unique<EmbeddedGateway>(doors.workspace);
  doors.capi = std::make_unique<EmbeddedCApi>(doors.workspace);
  return doors;
}

NamedDatabase::NamedDatabase(const QString& given) : name(given), path(given) {
  const qsizetype mark = given.indexOf(u"!!");
  if (mark < 0) return;
  server = given.first(mark);
  path = given.sliced(mark + 2);
}

NotesSession sessionOf(Doors& doors) {
  const NotesSession session = NotesSession::ofBackEnd(*doors.notes);
  session.initialize();
  return session;
}

NotesDatabase openDatabase(Doors& doors, const QString& name) {
  const NamedDatabase named(name);
  const NotesDatabase database = sessionOf(doors).database(named.server, named.path);
  if (!database || !database.isOpen())
    throw RuntimeError(enginefault::CannotOpen,
                       CommandText::tr("%1: the database cannot be opened").arg(name));
  return database;
}

NotesDocument findDocument(const NotesDatabase& database, const QString& name, const QString& noteId) {
  const NotesDocument found =
      noteId.size() == kUnidDigits ? database.documentByUnid(noteId) : database.documentById(noteId);
  if (!found)
    throw RuntimeError(enginefault::UnknownNote,
                       CommandText::tr("%1: note \"%2\" was deleted or cannot be read").arg(name, noteId));
  return found;
}

Workspace& requireEngine(const Doors& doors, const QString& command) {
  if (!doors.workspace)
    throw RuntimeError(
        kNeedsEngine,
        CommandText::tr(
            "\"%1\" works on databases of the embedded engine only, and the Notes client is in use")
            .arg(command));
  return *doors.workspace;
}

std::shared_ptr<Database> openStore(const Doors& doors, const QString& command, const QString& name) {
  Workspace& workspace = requireEngine(doors, command);
  const NamedDatabase named(name);
  return workspace.database(named.server, named.path);
}

}  // namespace lens
