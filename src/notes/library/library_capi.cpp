#include "notes/library/library_capi.h"

#include <cstring>

#include "notes/library_call.h"
#include "notes/literals.h"

namespace lens {
namespace {

// In the place of what the library cannot be asked.
constexpr Status kInvalidHandle = 0x0170;
constexpr qsizetype kLongestPath = 1024;

// A place that the library writes a handle to, of whatever width.
class HandleOut {
 public:
  void* place() { return &bytes_; }
  quint32 handle() const { return quint32(bytes_); }

 private:
  quint64 bytes_ = 0;
};

// A place for a block: a handle of one or two words, then the block's own word. What was there before shows
// how far the library wrote.
class BlockOut {
 public:
  explicit BlockOut(quint8 before) : before_(before) { std::memset(bytes_, before, sizeof bytes_); }
  void* place() { return bytes_; }
  // Whether the library may have written the second double word.
  bool isWide() const { return word(2) != before_ * 0x0101 || word(3) != before_ * 0x0101; }
  BlockId wide() const { return {MemHandle(word(0) | quint32(word(1)) << 16), word(2)}; }
  BlockId narrow() const { return {word(0), word(1)}; }

 private:
  quint16 word(int place) const {
    quint16 value = 0;
    std::memcpy(&value, bytes_ + 2 * place, sizeof value);
    return value;
  }
  quint8 before_;
  char bytes_[16];
};

void makeRoom(QByteArray& buffer, qsizetype size) {
  if (buffer.size() < size) buffer.resize(size, ' ');
  buffer.detach();
}

const void* noPort() {
  return nullptr;
}

}  // namespace

QString clientLibraryName() {
#if defined(Q_OS_WIN)
  return u"NNotes.dll"_s;
#elif defined(Q_OS_MACOS)
  return u"libnotes.dylib"_s;
#else
  return u"libnotes.so"_s;
#endif
}

template <class Result, class... Arguments>
Result LibraryCApi::invoke(const char* function, Arguments... arguments) {
  using Function = Result(LENS_LIBRARY_CALL*)(Arguments...);
  return reinterpret_cast<Function>(library_.function(function))(arguments...);
}

Status LibraryCApi::NotesInitExtended(int argc, const QByteArray& argv) {
  return invoke<Status, int, const void*>("NotesInitExtended", argc, argv.constData());
}

void LibraryCApi::NotesTerm() {
  invoke<void>("NotesTerm");
}

Status LibraryCApi::OSPathNetConstruct(int, const QByteArray& server, const QByteArray& file,
                                       QByteArray& buffer) {
  makeRoom(buffer, kLongestPath);
  return invoke<Status>("OSPathNetConstruct", noPort(), server.constData(), file.constData(), buffer.data());
}

Status LibraryCApi::NSFDbOpen(const QByteArray& path, DbHandle& db) {
  HandleOut out;
  const Status status = invoke<Status>("NSFDbOpen", path.constData(), out.place());
  db = out.handle();
  return status;
}

Status LibraryCApi::NSFDbClose(DbHandle db) {
  return db ? invoke<Status>("NSFDbClose", db) : kInvalidHandle;
}

Status LibraryCApi::NSFDbCreate(const QByteArray& path, quint16 dbClass, int force) {
  return invoke<Status>("NSFDbCreate", path.constData(), dbClass, force);
}

Status LibraryCApi::NSFNoteOpen(DbHandle db, qint32 noteId, quint16 flags, NoteHandle& note) {
  HandleOut out;
  const Status status = db ? invoke<Status>("NSFNoteOpen", db, noteId, flags, out.place()) : kInvalidHandle;
  note = out.handle();
  return status;
}

Status LibraryCApi::NSFNoteClose(NoteHandle note) {
  return note ? invoke<Status>("NSFNoteClose", note) : kInvalidHandle;
}

Status LibraryCApi::NSFNoteDelete(DbHandle db, qint32 noteId, quint16 flags) {
  return db ? invoke<Status>("NSFNoteDelete", db, noteId, flags) : kInvalidHandle;
}

// A block whose second double word happens to be what was there before is asked for once more.
Status LibraryCApi::NSFItemInfo(NoteHandle note, const QByteArray& name, quint16 nameLength, BlockId& item,
                                quint16& type, BlockId& value, quint32& valueLength) {
  item = value = {};
  type = 0;
  valueLength = 0;
  if (!note) return kInvalidHandle;
  for (const quint8 before : {quint8(0x00), quint8(0xEE)}) {
    BlockOut itemOut(before), valueOut(before);
    const Status status = invoke<Status, NoteHandle, const char*, quint16, void*, void*, void*, void*>(
        "NSFItemInfo", note, name.constData(), nameLength, itemOut.place(), &type, valueOut.place(),
        &valueLength);
    const bool wide = itemOut.isWide() || valueOut.isWide();
    item = wide ? itemOut.wide() : itemOut.narrow();
    value = wide ? valueOut.wide() : valueOut.narrow();
    if (status != 0) item = value = {};
    if (status != 0 || wide) return status;
  }
  return 0;
}

Status LibraryCApi::NIFFindDesignNote(DbHandle db, const QByteArray& name, quint16 noteClass,
                                      qint32& noteId) {
  noteId = 0;
  return db ? invoke<Status>("NIFFindDesignNote", db, name.constData(), noteClass, &noteId) : kInvalidHandle;
}

void LibraryCApi::ODSReadMemory(const char*& from, quint16 type, void* target, quint16 count) {
  invoke<void>("ODSReadMemory", &from, type, target, count);
}

Status LibraryCApi::ConvertTIMEDATEToText(const TimeDate& time, QByteArray& buffer, quint16 limit,
                                          quint16& length) {
  makeRoom(buffer, limit);
  length = 0;
  return invoke<Status, const void*, const void*, const void*, char*, quint16, void*>(
      "ConvertTIMEDATEToText", nullptr, nullptr, &time, buffer.data(), limit, &length);
}

quint32 LibraryCApi::ListGetNumEntries(const char* list, int prefixed) {
  return list ? invoke<quint16>("ListGetNumEntries", list, prefixed) : 0;
}

Status LibraryCApi::ListGetText(const char* list, int prefixed, quint16 index, const char*& text,
                                quint16& length) {
  text = nullptr;
  length = 0;
  return list ? invoke<Status>("ListGetText", list, prefixed, index, &text, &length) : kInvalidHandle;
}

Status LibraryCApi::NSGetServerList(int, MemHandle& list) {
  HandleOut out;
  const Status status = invoke<Status>("NSGetServerList", noPort(), out.place());
  list = out.handle();
  return status;
}

const char* LibraryCApi::OSLockObject(MemHandle handle) {
  return handle ? static_cast<const char*>(invoke<void*>("OSLockObject", handle)) : nullptr;
}

bool LibraryCApi::OSUnlockObject(MemHandle handle) {
  return handle && invoke<int>("OSUnlockObject", handle) != 0;
}

Status LibraryCApi::OSMemFree(MemHandle handle) {
  return handle ? invoke<Status>("OSMemFree", handle) : kInvalidHandle;
}

quint16 LibraryCApi::OSTranslate(quint16 mode, const QByteArray& source, quint16 length, QByteArray& target,
                                 quint16 limit) {
  makeRoom(target, limit);
  return invoke<quint16>("OSTranslate", mode, source.constData(), length, target.data(), limit);
}

quint16 LibraryCApi::OSLoadString(int, Status status, QByteArray& buffer, quint16 limit) {
  makeRoom(buffer, limit);
  return invoke<quint16, const void*>("OSLoadString", nullptr, status, buffer.data(), limit);
}

Status LibraryCApi::NSFFormulaCompile(const QByteArray& formula, quint16 length, MemHandle& compiled,
                                      quint16& compiledLength, Status& error, quint16& line, quint16& column,
                                      quint16& offset, quint16& errorLength) {
  HandleOut out;
  compiledLength = error = line = column = offset = errorLength = 0;
  const Status status = invoke<Status, const char*, quint16>(
      "NSFFormulaCompile", nullptr, 0, formula.constData(), length, out.place(), &compiledLength, &error,
      &line, &column, &offset, &errorLength);
  compiled = status == 0 ? out.handle() : 0;
  return status;
}

Status LibraryCApi::NSFComputeStart(quint16 flags, const char* formula, MemHandle& compute) {
  HandleOut out;
  const Status status = invoke<Status>("NSFComputeStart", flags, formula, out.place());
  compute = out.handle();
  return status;
}

Status LibraryCApi::NSFComputeEvaluate(MemHandle compute, NoteHandle note, MemHandle& result, quint16& length,
                                       bool& matches, bool& deletes, bool& modified) {
  HandleOut out;
  int isMatch = 0, isDeletion = 0, isChange = 0;
  length = 0;
  const Status status = compute ? invoke<Status>("NSFComputeEvaluate", compute, note, out.place(), &length,
                                                 &isMatch, &isDeletion, &isChange)
                                : kInvalidHandle;
  result = out.handle();
  matches = isMatch != 0;
  deletes = isDeletion != 0;
  modified = isChange != 0;
  return status;
}

Status LibraryCApi::NSFComputeStop(MemHandle compute) {
  return compute ? invoke<Status>("NSFComputeStop", compute) : kInvalidHandle;
}

Status LibraryCApi::NSFRemoteConsole(const QByteArray& server, const QByteArray& command, MemHandle& reply) {
  HandleOut out;
  const Status status =
      invoke<Status>("NSFRemoteConsole", server.constData(), command.constData(), out.place());
  reply = out.handle();
  return status;
}

}  // namespace lens
