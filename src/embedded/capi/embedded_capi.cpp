#include "embedded/capi/embedded_capi.h"

#include <algorithm>
#include <cstring>

#include "embedded/capi/status.h"
#include "embedded/store/lmbcs.h"
#include "embedded/views/design_notes.h"
#include "notes/code_page.h"

namespace lens {
namespace {

constexpr qsizetype kLongestPath = 255;
constexpr quint16 kNulEnded = 0xFFFF;

// Text into a buffer that the caller has made: the rest of the buffer stays as it is, and a NUL
// follows where there is room for one.
quint16 put(const QByteArray& text, QByteArray& buffer, qsizetype limit) {
  const qsizetype length = std::min(text.size(), std::max<qsizetype>(limit, 0));
  if (buffer.size() < length) buffer.resize(length);
  std::memcpy(buffer.data(), text.constData(), size_t(length));
  if (length < buffer.size() && length < limit) buffer[length] = '\0';
  return quint16(length);
}

QByteArray untilNul(const QByteArray& text) {
  const qsizetype end = text.indexOf('\0');
  return end < 0 ? text : text.first(end);
}

// "server!!file" or a local path.
DatabasePlace placeOf(const Workspace& workspace, const QByteArray& path) {
  const QString text = fromCodePage(untilNul(path)).trimmed();
  const qsizetype mark = text.indexOf(u"!!");
  if (mark < 0) return workspace.place({}, text);
  return workspace.place(text.left(mark), text.mid(mark + 2));
}

template <class Body>
Status guarded(const Body& body) {
  try {
    return body();
  } catch (const RuntimeError& error) {
    return statusOf(error);
  }
}

[[noreturn]] void notHere(const char* function) {
  throw RuntimeError(
      err::EntryNotFound,
      QStringLiteral("The embedded engine has no function %1").arg(QString::fromLatin1(function)));
}

// Bytes of one field of a type code; 0 for codes that are not known.
qsizetype fieldSize(quint16 type) {
  switch (type) {
    case 0:   // 16-bit word
    case 13:  // head of a list
      return 2;
    case 1:   // 32-bit word
    case 14:  // head of a range
      return 4;
    case 2:   // double
    case 10:  // time
      return 8;
    case 28:  // universal ID
      return 16;
    case 318:  // agent schedule record
      return 102;
    default:
      return 0;
  }
}

quint16 wordAt(const char* bytes) {
  return quint16(quint8(bytes[0]) | quint8(bytes[1]) << 8);
}

}  // namespace

EmbeddedCApi::EmbeddedCApi(std::shared_ptr<Workspace> workspace)
    : workspace_(std::move(workspace)), environment_(*workspace_) {}

EmbeddedCApi::~EmbeddedCApi() = default;

Status EmbeddedCApi::NotesInitExtended(int, const QByteArray&) {
  ++inits_;
  return status::Ok;
}

void EmbeddedCApi::NotesTerm() {
  if (inits_ > 0) --inits_;
  if (inits_ == 0) closeAll();
}

void EmbeddedCApi::closeAll() {
  for (const quint32 handle : notes_.handles()) notes_.take(handle);
  for (const quint32 handle : dbs_.handles()) dbs_.take(handle);
  for (const quint32 handle : computations_.handles()) computations_.take(handle);
  memory_.clear();
}

Status EmbeddedCApi::OSPathNetConstruct(int, const QByteArray& server, const QByteArray& file,
                                        QByteArray& buffer) {
  const QByteArray name = untilNul(server).trimmed();
  const QByteArray path = untilNul(file);
  put(name.isEmpty() ? path : name + "!!" + path, buffer, kLongestPath);
  if (buffer.size() > kLongestPath) buffer[std::min(kLongestPath, untilNul(buffer).size())] = '\0';
  return status::Ok;
}

Status EmbeddedCApi::NSFDbOpen(const QByteArray& path, DbHandle& db) {
  db = 0;
  return guarded([&]() -> Status {
    const DatabasePlace place = placeOf(*workspace_, path);
    auto open = std::make_unique<OpenDb>();
    open->place = place;
    open->store = workspace_->database(place.server, place.path);
    db = dbs_.add(std::move(open));
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
    quint32 id = quint32(noteId);
    if (isSpecialNoteId(id) && (id = resolveSpecialNoteId(*open->store, id)) == 0)
      return status::NoSpecialNote;
    auto opened = std::make_unique<OpenNote>();
    opened->db = db;
    if (id == 0) return status::BadNoteId;
    if (!open->store->read(id, opened->note)) {
      const NoteState state = open->store->state(id);
      if (state == NoteState::NeverIssued) return status::BadNoteId;
      return state == NoteState::Stub ? status::NoteDeleted : status::NoNote;
    }
    note = notes_.add(std::move(opened));
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

Status EmbeddedCApi::NSFItemInfo(NoteHandle note, const QByteArray& name, quint16 nameLength, BlockId& item,
                                 quint16& type, BlockId& value, quint32& valueLength) {
  item = value = BlockId();
  type = 0;
  valueLength = 0;
  OpenNote* open = notes_.find(note);
  if (!open) return status::BadHandle;
  const QString wanted = fromCodePage(untilNul(name.first(std::min<qsizetype>(nameLength, name.size()))));
  const Item* found = wanted.isEmpty() ? nullptr : std::as_const(open->note).find(wanted);
  if (!found) return status::NoItem;
  MemHandle& memory = open->values[found - open->note.items.constData()];
  if (memory == 0) memory = memory_.add(found->value, true);
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
    noteId = qint32(findDesignNote(*open->store, noteClass, fromCodePage(untilNul(name))));
    return noteId ? status::Ok : status::NotInIndex;
  });
}

// Inside memory of ours nothing is read past the zeros behind the value, and the pointer stays there.
void EmbeddedCApi::ODSReadMemory(const char*& from, quint16 type, void* target, quint16 count) {
  const qsizetype size = fieldSize(type) * count;
  if (size == 0 || !target) return;
  const qsizetype known = from ? memory_.readable(from) : 0;
  const qsizetype available = known < 0 ? size : std::min(known, size);
  if (available > 0) std::memcpy(target, from, size_t(available));
  std::memset(static_cast<char*>(target) + available, 0, size_t(size - available));
  if (from) from += available;
}

Status EmbeddedCApi::ConvertTIMEDATEToText(const TimeDate& time, QByteArray& buffer, quint16 limit,
                                           quint16& length) {
  length = 0;
  const DateTime local = localOf(time);
  if (!local.date.isValid() && !local.time.isValid()) return status::BadTime;
  length = put(toCodePage(workspace_->regional().text(local)), buffer, limit);
  return status::Ok;
}

quint32 EmbeddedCApi::ListGetNumEntries(const char* list, int prefixed) {
  if (!list) return 0;
  const char* head = list + (prefixed ? 2 : 0);
  const qsizetype known = memory_.readable(list);
  if (known >= 0 && known < head - list + 2) return 0;
  return wordAt(head);
}

Status EmbeddedCApi::ListGetText(const char* list, int prefixed, quint16 index, const char*& text,
                                 quint16& length) {
  text = nullptr;
  length = 0;
  const quint32 entries = ListGetNumEntries(list, prefixed);
  if (index >= entries) return status::NoListEntry;
  const qsizetype known = memory_.readable(list);
  const qsizetype lengths = (prefixed ? 2 : 0) + 2;
  qsizetype at = lengths + 2 * qsizetype(entries);
  if (known >= 0 && at > known) return status::NoListEntry;
  for (quint16 i = 0; i < index; ++i) at += wordAt(list + lengths + 2 * i);
  const quint16 bytes = wordAt(list + lengths + 2 * index);
  if (known >= 0 && at + bytes > known) return status::NoListEntry;
  text = list + at;
  length = bytes;
  return status::Ok;
}

Status EmbeddedCApi::NSGetServerList(int, MemHandle& list) {
  list = 0;
  QByteArray lengths, names;
  const QStringList servers = workspace_->serverNames();
  appendU16(lengths, quint16(servers.size()));
  for (const QString& server : servers) {
    const QByteArray name = toLmbcs(server);
    appendU16(lengths, quint16(name.size()));
    names += name;
  }
  list = memory_.add(QByteArray(lengths + names));
  return list ? status::Ok : status::NoMemory;
}

const char* EmbeddedCApi::OSLockObject(MemHandle handle) {
  return memory_.lock(handle);
}

bool EmbeddedCApi::OSUnlockObject(MemHandle handle) {
  memory_.unlock(handle);
  return true;
}

Status EmbeddedCApi::OSMemFree(MemHandle handle) {
  return memory_.free(handle);
}

quint16 EmbeddedCApi::OSTranslate(quint16 mode, const QByteArray& source, quint16 length, QByteArray& target,
                                  quint16 limit) {
  const QByteArray text =
      length == kNulEnded ? untilNul(source) : source.first(std::min<qsizetype>(length, source.size()));
  if (mode == 0) return put(toLmbcs(fromCodePage(text)), target, limit);
  if (mode == 1) return put(toCodePage(fromLmbcs(text)), target, limit);
  return 0;
}

quint16 EmbeddedCApi::OSLoadString(int, Status status, QByteArray& buffer, quint16 limit) {
  return put(toLmbcs(statusText(status)), buffer, limit - 1);
}

Status EmbeddedCApi::NSFNoteDelete(DbHandle, qint32, quint16) {
  notHere("NSFNoteDelete");
}

Status EmbeddedCApi::NSFRemoteConsole(const QByteArray&, const QByteArray&, MemHandle&) {
  notHere("NSFRemoteConsole");
}

qsizetype EmbeddedCApi::openHandles() const {
  return qsizetype(dbs_.handles().size() + notes_.handles().size() + computations_.handles().size()) +
         memory_.count();
}

}  // namespace lens
