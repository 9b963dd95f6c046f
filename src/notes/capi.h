// The door to the Notes C API: one method per function that the program uses, under the function's
// own name, with the parameters as the program passes them.
//
//  1. Strings go in and come out as single-byte text in the system code page (Windows-1252 outside
//     Windows); lengths count bytes of that text. Stored Notes text is LMBCS, see OSTranslate; a formula
//     that OSTranslate has just made LMBCS is compiled as that.
//     Names (of servers, files, items and design notes) go in as nativeName() makes them: a library that is
//     not bound to the code page takes any name without loss, in UTF-8 behind its byte order mark where the
//     code page lacks a letter. Of the parts of a path ("server!!file") each is such a name.
//  2. Every function that returns Status gives 0 for success. Of a status only the low 14 bits are
//     the error number; 0x8000 and 0x4000 are marks (shown already, remote).
//  3. Handles are plain 32-bit values, 0 means none. Zero, stale and wrong handles are harmless:
//     an error status, or nothing at all where the function has no status.
//  4. Memory handles fit into a signed 16-bit value. A pointer from OSLockObject is valid until the
//     matching OSUnlockObject; unlock before free.
//  5. NotesInitExtended comes first and NotesTerm last in each routine that needs the library; the
//     pairs may nest. No handle outlives the routine.
//  6. A function that the library lacks raises 453 (entry not found).
#pragma once

#include <QByteArray>
#include <QString>

#include "notes/native_name.h"
#include "notes/runtime_error.h"

namespace lens {

using Status = quint16;
using DbHandle = quint32;
using NoteHandle = quint32;
using MemHandle = quint32;

inline constexpr Status kErrorMask = 0x3FFF;

// A place in memory of the library: address = OSLockObject(pool) + block.
struct BlockId {
  MemHandle pool = 0;
  quint16 block = 0;
};

// Two little-endian words: hundredths of a second since midnight GMT, then day and zone.
struct TimeDate {
  quint32 innards[2] = {0, 0};
};

class CApi {
 public:
  virtual ~CApi() = default;

  // A name as the bytes that the functions take. By default in the system's code page: raises kUnsayableName
  // where that lacks a letter.
  virtual QByteArray nativeName(QStringView name) const { return codePageName(name); }

  virtual Status NotesInitExtended(int argc, const QByteArray& argv) = 0;
  virtual void NotesTerm() = 0;

  // The full network path, NUL-ended, into a buffer of the caller's size. Port is always 0.
  virtual Status OSPathNetConstruct(int port, const QByteArray& server, const QByteArray& file,
                                    QByteArray& buffer) = 0;
  virtual Status NSFDbOpen(const QByteArray& path, DbHandle& db) = 0;
  virtual Status NSFDbClose(DbHandle db) = 0;
  virtual Status NSFDbCreate(const QByteArray& path, quint16 dbClass, int force) = 0;

  virtual Status NSFNoteOpen(DbHandle db, qint32 noteId, quint16 flags, NoteHandle& note) = 0;
  virtual Status NSFNoteClose(NoteHandle note) = 0;
  virtual Status NSFNoteDelete(DbHandle db, qint32 noteId, quint16 flags) = 0;
  // First item of that name. valueLength counts the type word that the value begins with.
  virtual Status NSFItemInfo(NoteHandle note, const QByteArray& name, quint16 nameLength, BlockId& item,
                             quint16& type, BlockId& value, quint32& valueLength) = 0;
  virtual Status NIFFindDesignNote(DbHandle db, const QByteArray& name, quint16 noteClass,
                                   qint32& noteId) = 0;

  // Reads count fields of the type and moves the pointer on. Type 0 is a 16-bit word.
  virtual void ODSReadMemory(const char*& from, quint16 type, void* target, quint16 count) = 0;
  // Time as text into a buffer of limit bytes; not NUL-ended, the length tells.
  virtual Status ConvertTIMEDATEToText(const TimeDate& time, QByteArray& buffer, quint16 limit,
                                       quint16& length) = 0;

  virtual quint32 ListGetNumEntries(const char* list, int prefixed) = 0;
  // One entry of a text list, 0-based; the pointer leads into the list, no NUL behind it.
  virtual Status ListGetText(const char* list, int prefixed, quint16 index, const char*& text,
                             quint16& length) = 0;
  virtual Status NSGetServerList(int port, MemHandle& list) = 0;

  virtual const char* OSLockObject(MemHandle handle) = 0;
  virtual bool OSUnlockObject(MemHandle handle) = 0;
  virtual Status OSMemFree(MemHandle handle) = 0;

  // Mode 0 native to LMBCS, 1 LMBCS to native. Returns the bytes written, never more than limit.
  virtual quint16 OSTranslate(quint16 mode, const QByteArray& source, quint16 length, QByteArray& target,
                              quint16 limit) = 0;
  // Text of a status; returns its length, 0 when it is unknown.
  virtual quint16 OSLoadString(int module, Status status, QByteArray& buffer, quint16 limit) = 0;

  virtual Status NSFFormulaCompile(const QByteArray& formula, quint16 length, MemHandle& compiled,
                                   quint16& compiledLength, Status& error, quint16& line, quint16& column,
                                   quint16& offset, quint16& errorLength) = 0;
  virtual Status NSFComputeStart(quint16 flags, const char* formula, MemHandle& compute) = 0;
  virtual Status NSFComputeEvaluate(MemHandle compute, NoteHandle note, MemHandle& result, quint16& length,
                                    bool& matches, bool& deletes, bool& modified) = 0;
  virtual Status NSFComputeStop(MemHandle compute) = 0;
  virtual Status NSFRemoteConsole(const QByteArray& server, const QByteArray& command, MemHandle& reply) = 0;
};

// NotesTerm at the end of the scope, whatever happens in it; a NotesTerm that fails is passed over,
// since there is nothing left to do about it. A procedure that must leave without NotesTerm on one of
// its paths dismisses the guard there.
class NotesTermAtEnd {
 public:
  explicit NotesTermAtEnd(CApi& api) : api_(&api) {}
  ~NotesTermAtEnd() {
    try {
      if (api_) api_->NotesTerm();
    } catch (const RuntimeError&) {
    }
  }
  NotesTermAtEnd(const NotesTermAtEnd&) = delete;
  NotesTermAtEnd& operator=(const NotesTermAtEnd&) = delete;
  void dismiss() { api_ = nullptr; }

 private:
  CApi* api_;
};

// The pair: NotesInitExtended at once, NotesTerm at the end of the scope.
class NotesInit : public NotesTermAtEnd {
 public:
  explicit NotesInit(CApi& api) : NotesTermAtEnd(api) { api.NotesInitExtended(0, QByteArray()); }
};

}  // namespace lens
