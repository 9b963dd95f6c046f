// The C functions of the stand-in's library, as a client calls them: over the engine, with handles of memory
// of one word in the 32-bit library and of two in the 64-bit one, so that both widths of callers are seen.
#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "double_client.h"
#include "notes/code_page.h"

namespace lens {
namespace {

#ifdef _WIN64
using Handle = quint32;
#else
using Handle = quint16;
#endif
using Word = quint16;

struct Block {
  Handle pool;
  Word block;
};

constexpr Word kFailed = 0x0FFE;

EmbeddedCApi& engine() {
  return doubleClient().capi;
}

// Nothing that is thrown leaves a library of C.
template <class Call>
Word guarded(Call&& call) {
  try {
    return call();
  } catch (const RuntimeError&) {
    return kFailed;
  }
}

// The real library ends the process over these.
void requireHandle(quint32 handle) {
  if (handle == 0) std::abort();
}

void copyOut(const QByteArray& from, char* to, qsizetype size) {
  std::memcpy(to, from.constData(), size_t(qMin(from.size(), size)));
}

}  // namespace
}  // namespace lens

using namespace lens;

#define DOUBLE_FUNCTION(result) extern "C" __declspec(dllexport) result __stdcall

DOUBLE_FUNCTION(Word) NotesInitExtended(int count, const char*) {
  return guarded([&] { return engine().NotesInitExtended(count, QByteArray()); });
}
DOUBLE_FUNCTION(void) NotesTerm() {
  guarded([] {
    engine().NotesTerm();
    return Word(0);
  });
}
DOUBLE_FUNCTION(Word) OSPathNetConstruct(const char*, const char* server, const char* file, char* path) {
  return guarded([&] {
    QByteArray buffer(256, '\0');
    const Status status = engine().OSPathNetConstruct(0, server, file, buffer);
    copyOut(buffer, path, 256);
    return status;
  });
}
DOUBLE_FUNCTION(Word) NSFDbOpen(const char* path, quint32* db) {
  return guarded([&] { return engine().NSFDbOpen(path, *db); });
}
DOUBLE_FUNCTION(Word) NSFDbClose(quint32 db) {
  requireHandle(db);
  return guarded([&] { return engine().NSFDbClose(db); });
}
DOUBLE_FUNCTION(Word) NSFDbCreate(const char* path, Word dbClass, int force) {
  return guarded([&] { return engine().NSFDbCreate(path, dbClass, force); });
}
DOUBLE_FUNCTION(Word) NSFNoteOpen(quint32 db, qint32 noteId, Word flags, quint32* note) {
  requireHandle(db);
  return guarded([&] { return engine().NSFNoteOpen(db, noteId, flags, *note); });
}
DOUBLE_FUNCTION(Word) NSFNoteClose(quint32 note) {
  requireHandle(note);
  return guarded([&] { return engine().NSFNoteClose(note); });
}
DOUBLE_FUNCTION(Word) NSFNoteDelete(quint32 db, qint32 noteId, Word flags) {
  requireHandle(db);
  return guarded([&] { return engine().NSFNoteDelete(db, noteId, flags); });
}
DOUBLE_FUNCTION(Word)
NSFItemInfo(quint32 note, const char* name, Word length, Block* item, Word* type, Block* value,
            quint32* valueLength) {
  requireHandle(note);
  return guarded([&] {
    BlockId itemPlace, valuePlace;
    const Status status =
        engine().NSFItemInfo(note, name, length, itemPlace, *type, valuePlace, *valueLength);
    *item = {Handle(itemPlace.pool), itemPlace.block};
    *value = {Handle(valuePlace.pool), valuePlace.block};
    return status;
  });
}
DOUBLE_FUNCTION(Word) NIFFindDesignNote(quint32 db, const char* name, Word noteClass, qint32* noteId) {
  requireHandle(db);
  return guarded([&] { return engine().NIFFindDesignNote(db, name, noteClass, *noteId); });
}
DOUBLE_FUNCTION(void) ODSReadMemory(const char** from, Word type, void* target, Word count) {
  guarded([&] {
    engine().ODSReadMemory(*from, type, target, count);
    return Word(0);
  });
}
DOUBLE_FUNCTION(Word)
ConvertTIMEDATEToText(const void*, const void*, const TimeDate* time, char* text, Word limit, Word* length) {
  return guarded([&] {
    QByteArray buffer(limit, '\0');
    const Status status = engine().ConvertTIMEDATEToText(*time, buffer, limit, *length);
    copyOut(buffer, text, *length);
    return status;
  });
}
DOUBLE_FUNCTION(Word) ListGetNumEntries(const char* list, int prefixed) {
  return guarded([&] { return Word(engine().ListGetNumEntries(list, prefixed)); });
}
DOUBLE_FUNCTION(Word)
ListGetText(const char* list, int prefixed, Word index, const char** text, Word* length) {
  return guarded([&] { return engine().ListGetText(list, prefixed, index, *text, *length); });
}
DOUBLE_FUNCTION(Word) NSGetServerList(const char*, Handle* list) {
  return guarded([&] {
    MemHandle handle = 0;
    const Status status = engine().NSGetServerList(0, handle);
    *list = Handle(handle);
    return status;
  });
}
DOUBLE_FUNCTION(const void*) OSLockObject(Handle handle) {
  requireHandle(handle);
  return engine().OSLockObject(handle);
}
DOUBLE_FUNCTION(int) OSUnlockObject(Handle handle) {
  requireHandle(handle);
  return engine().OSUnlockObject(handle);
}
DOUBLE_FUNCTION(Word) OSMemFree(Handle handle) {
  requireHandle(handle);
  return engine().OSMemFree(handle);
}
DOUBLE_FUNCTION(Word) OSTranslate(Word mode, const char* source, Word length, char* target, Word limit) {
  return guarded([&] {
    constexpr Word kNulEnded = 0xFFFF;
    QByteArray buffer(limit, '\0');
    const QByteArray given = length == kNulEnded ? QByteArray(source) : QByteArray(source, length);
    const Word written = engine().OSTranslate(mode, given, length, buffer, limit);
    copyOut(buffer, target, limit);
    return written;
  });
}
DOUBLE_FUNCTION(Word) OSLoadString(const void*, Word status, char* text, Word limit) {
  return guarded([&] {
    QByteArray buffer(limit, '\0');
    const Word written = engine().OSLoadString(0, status, buffer, limit);
    copyOut(buffer, text, limit);
    return written;
  });
}
DOUBLE_FUNCTION(Word)
NSFFormulaCompile(const char*, Word, const char* formula, Word length, Handle* compiled, Word* compiledLength,
                  Word* error, Word* line, Word* column, Word* offset, Word* errorLength) {
  return guarded([&] {
    MemHandle handle = 0;
    const Status status =
        engine().NSFFormulaCompile(QByteArray(formula, length), length, handle, *compiledLength, *error,
                                   *line, *column, *offset, *errorLength);
    *compiled = Handle(handle);
    return status;
  });
}
DOUBLE_FUNCTION(Word) NSFComputeStart(Word flags, const char* formula, MemHandle* compute) {
  return guarded([&] { return engine().NSFComputeStart(flags, formula, *compute); });
}
DOUBLE_FUNCTION(Word)
NSFComputeEvaluate(MemHandle compute, quint32 note, Handle* result, Word* length, int* matches, int* deletes,
                   int* modified) {
  requireHandle(compute);
  return guarded([&] {
    MemHandle handle = 0;
    bool isMatch = false, isDeletion = false, isChange = false;
    const Status status =
        engine().NSFComputeEvaluate(compute, note, handle, *length, isMatch, isDeletion, isChange);
    *result = Handle(handle);
    *matches = isMatch, *deletes = isDeletion, *modified = isChange;
    return status;
  });
}
DOUBLE_FUNCTION(Word) NSFComputeStop(MemHandle compute) {
  requireHandle(compute);
  return guarded([&] { return engine().NSFComputeStop(compute); });
}
DOUBLE_FUNCTION(Word) NSFRemoteConsole(const char* server, const char* command, Handle* reply) {
  return guarded([&] {
    MemHandle handle = 0;
    const Status status = engine().NSFRemoteConsole(server, command, handle);
    *reply = Handle(handle);
    return status;
  });
}
