#include "embedded/capi/embedded_capi.h"

#include <algorithm>

#include "embedded/capi/call_support.h"
#include "embedded/console/console.h"
#include "embedded/design/design_notes.h"
#include "embedded/format/packed_note.h"
#include "embedded/formula_context/evaluated_note.h"
#include "notes/code_page.h"

namespace lens {
namespace {

// What a deletion may do; the third mark, not to wait for the disk, has no effect here.
constexpr quint16 kForce = 0x0001, kNoStub = 0x0200;

// "server!!file" or a local path.
DatabasePlace placeOf(const Workspace& workspace, const QByteArray& path) {
  const QByteArray bytes = upToNul(path).trimmed();
  const qsizetype mark = bytes.indexOf("!!");
  const QString file = nameFromBytes(mark < 0 ? bytes : bytes.mid(mark + 2)).trimmed();
  return workspace.place(mark < 0 ? QString() : nameFromBytes(bytes.first(mark)).trimmed(), file);
}

Status whyMissing(const Database& store, NoteId noteId) {
  switch (store.notes().state(noteId)) {
    case NoteState::NeverIssued:
      return status::BadNoteId;
    case NoteState::Stub:
      return status::NoteDeleted;
    default:
      return status::NoNote;
  }
}

// A response tells its parent in its header, or else in an item that has to be looked for in all documents.
bool hasResponses(const Database& store, NoteId noteId) {
  const QVector<NoteSummary> notes = store.notes().list(noteclass::Document);
  const auto note = std::find_if(notes.begin(), notes.end(), [&](const auto& n) { return n.id == noteId; });
  if (note == notes.end()) return false;
  const Unid unid = note->unid;
  if (std::any_of(notes.begin(), notes.end(), [&](const auto& n) { return n.parent == unid; })) return true;
  bool found = false;
  store.notes().scanPacked(noteclass::Document, [&](const PackedNote& other) {
    found = other.items.find(u"$REF") >= 0 && parentOf(other.unpack()) == unid;
    return !found;
  });
  return found;
}

}  // namespace

EmbeddedCApi::EmbeddedCApi(std::shared_ptr<Workspace> workspace)
    : workspace_(std::move(workspace)), environment_(*workspace_) {}

EmbeddedCApi::~EmbeddedCApi() = default;

Status EmbeddedCApi::NotesInitExtended(int, const QByteArray&) {
  routines_.emplace_back();
  memory_.setLevel(int(routines_.size()));
  return status::Ok;
}

void EmbeddedCApi::NotesTerm() {
  if (routines_.empty()) return;
  const std::vector<quint32> opened = std::move(routines_.back());
  routines_.pop_back();
  if (routines_.empty()) closeAll();
  // A handle tells its kind, so it is closed by the one call that knows it.
  for (const quint32 handle : opened) {
    closeNote(handle);
    computations_.take(handle);
    NSFDbClose(handle);
  }
  memory_.setLevel(int(routines_.size()));
}

void EmbeddedCApi::closeAll() {
  for (const quint32 handle : notes_.handles()) notes_.take(handle);
  for (const quint32 handle : dbs_.handles()) dbs_.take(handle);
  for (const quint32 handle : computations_.handles()) computations_.take(handle);
  memory_.clear();
}

Status EmbeddedCApi::NSFDbOpen(const QByteArray& path, DbHandle& db) {
  db = 0;
  return guarded([&]() -> Status {
    const DatabasePlace place = placeOf(*workspace_, path);
    auto open = std::make_unique<OpenDb>();
    open->place = place;
    open->store = workspace_->database(place.server, place.path);
    db = give(dbs_, std::move(open));
    return db ? status::Ok : status::NoMemory;
  });
}

Status EmbeddedCApi::NSFDbClose(DbHandle db) {
  if (!dbs_.take(db)) return status::BadHandle;
  for (const quint32 handle : notes_.handles())
    if (notes_.find(handle)->db == db) closeNote(handle);
  return status::Ok;
}

Status EmbeddedCApi::NSFDbCreate(const QByteArray& path, quint16 dbClass, int force) {
  // 0xFF01 to 0xFF09 are the classes of files, 0 leaves it to the name.
  if (dbClass != 0 && (dbClass < 0xFF01 || dbClass > 0xFF09)) return status::BadClass;
  return guarded([&]() -> Status {
    const DatabasePlace place = placeOf(*workspace_, path);
    workspace_->createDatabase(place.server, place.path, DatabaseInfo(), force != 0);
    return status::Ok;
  });
}

Status EmbeddedCApi::NSFNoteOpen(DbHandle db, qint32 noteId, quint16, NoteHandle& note) {
  note = 0;
  const OpenDb* open = dbs_.find(db);
  if (!open) return status::BadHandle;
  return guarded([&]() -> Status {
    NoteId id{quint32(noteId)};
    if (isSpecialNoteId(id) && (id = resolveSpecialNoteId(*open->store, id)).isNull())
      return status::NoSpecialNote;
    auto opened = std::make_unique<OpenNote>();
    opened->db = db;
    if (!open->store->notes().read(id, opened->note)) {
      return whyMissing(*open->store, id);
    }
    note = give(notes_, std::move(opened));
    return note ? status::Ok : status::NoMemory;
  });
}

void EmbeddedCApi::closeNote(NoteHandle handle) {
  const std::unique_ptr<OpenNote> note = notes_.take(handle);
  if (!note) return;
  for (const MemHandle value : note->values) memory_.drop(value);
  for (const MemHandle value : note->outdated) memory_.drop(value);
}

Status EmbeddedCApi::NSFNoteClose(NoteHandle note) {
  if (!notes_.find(note)) return status::BadHandle;
  closeNote(note);
  return status::Ok;
}

// Items are not looked at, so a note that cannot be read can still go.
Status EmbeddedCApi::NSFNoteDelete(DbHandle db, qint32 noteId, quint16 flags) {
  const OpenDb* open = dbs_.find(db);
  if (!open) return status::BadHandle;
  return guarded([&]() -> Status {
    const std::shared_ptr<Database> store = open->store;
    const DatabasePlace place = open->place;
    const NoteId id{quint32(noteId)};
    const bool leaveStub = !(flags & kNoStub);
    // Without a stub other replicas would bring the document back below its responses.
    if (!leaveStub && !(flags & kForce) && hasResponses(*store, id)) return status::HasResponses;
    if (!store->notes().remove(id, leaveStub)) return whyMissing(*store, id);
    workspace_->notifyChanged(place);
    return status::Ok;
  });
}

Status EmbeddedCApi::NSFItemInfo(NoteHandle note, const QByteArray& name, quint16 nameLength, BlockId& item,
                                 quint16& type, BlockId& value, quint32& valueLength) {
  item = value = BlockId();
  type = 0;
  valueLength = 0;
  OpenNote* open = notes_.find(note);
  if (!open) return status::BadHandle;
  const QString wanted = nameFromBytes(upToNul(name.first(std::min<qsizetype>(nameLength, name.size()))));
  const Item* found = wanted.isEmpty() ? nullptr : std::as_const(open->note).find(wanted);
  if (!found) return status::NoItem;
  MemHandle& memory = open->values[found - open->note.items.constData()];
  if (memory == 0) memory = memory_.addItem(found->value);
  if (memory == 0) return status::NoMemory;
  item.pool = value.pool = memory;
  type = found->type();
  valueLength = quint32(found->value.size());
  return status::Ok;
}

Status EmbeddedCApi::NIFFindDesignNote(DbHandle db, const QByteArray& name, quint16 noteClass,
                                       qint32& noteId) {
  noteId = 0;
  const OpenDb* open = dbs_.find(db);
  if (!open) return status::BadHandle;
  return guarded([&]() -> Status {
    noteId = qint32(findDesignNote(*open->store, noteClass, nameFromBytes(upToNul(name))).value());
    return noteId ? status::Ok : status::NotInIndex;
  });
}

Status EmbeddedCApi::NSFRemoteConsole(const QByteArray& server, const QByteArray& command, MemHandle& reply) {
  reply = 0;
  return guarded([&]() -> Status {
    const QString name = nameFromBytes(upToNul(server)).trimmed();
    // This machine is a client: it runs no server whose console could answer.
    if (name.isEmpty()) return status::NoServer;
    const QString canonical = workspace_->canonicalServer(name);
    const QString answer = runConsoleCommand(*workspace_, canonical, fromCodePage(upToNul(command)));
    if (answer.isEmpty()) return status::NoReply;
    reply = memory_.add(consoleReply(answer));
    return reply ? status::Ok : status::NoMemory;
  });
}

qsizetype EmbeddedCApi::openHandles() const {
  return qsizetype(dbs_.handles().size() + notes_.handles().size() + computations_.handles().size()) +
         memory_.count();
}

}  // namespace lens
