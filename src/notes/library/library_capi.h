// The C API as the client's own library has it.
//
// Widths: a status is a word; handles of databases and notes are double words; handles of memory, and the
// pool of a block, are words in some releases of the library and double words in others. So whatever it
// writes a handle to is larger than any of these and zero before, and where the parts of a block lie is seen
// from what was written. A zero handle never reaches the library, which would end the process over it.
#pragma once

#include "notes/capi.h"
#include "notes/library/bound_library.h"

namespace lens {

// The file name of the client's library on this platform.
QString clientLibraryName();

class LibraryCApi : public CApi {
 public:
  // The file is bound at the first call; each call raises what BoundLibrary::function() raises.
  explicit LibraryCApi(const QString& file = clientLibraryName()) : library_(file) {}

  Status NotesInitExtended(int argc, const QByteArray& argv) override;
  void NotesTerm() override;
  Status OSPathNetConstruct(int port, const QByteArray& server, const QByteArray& file,
                            QByteArray& buffer) override;
  Status NSFDbOpen(const QByteArray& path, DbHandle& db) override;
  Status NSFDbClose(DbHandle db) override;
  Status NSFDbCreate(const QByteArray& path, quint16 dbClass, int force) override;
  Status NSFNoteOpen(DbHandle db, qint32 noteId, quint16 flags, NoteHandle& note) override;
  Status NSFNoteClose(NoteHandle note) override;
  Status NSFNoteDelete(DbHandle db, qint32 noteId, quint16 flags) override;
  Status NSFItemInfo(NoteHandle note, const QByteArray& name, quint16 nameLength, BlockId& item,
                     quint16& type, BlockId& value, quint32& valueLength) override;
  Status NIFFindDesignNote(DbHandle db, const QByteArray& name, quint16 noteClass, qint32& noteId) override;
  void ODSReadMemory(const char*& from, quint16 type, void* target, quint16 count) override;
  Status ConvertTIMEDATEToText(const TimeDate& time, QByteArray& buffer, quint16 limit,
                               quint16& length) override;
  quint32 ListGetNumEntries(const char* list, int prefixed) override;
  Status ListGetText(const char* list, int prefixed, quint16 index, const char*& text,
                     quint16& length) override;
  Status NSGetServerList(int port, MemHandle& list) override;
  const char* OSLockObject(MemHandle handle) override;
  bool OSUnlockObject(MemHandle handle) override;
  Status OSMemFree(MemHandle handle) override;
  quint16 OSTranslate(quint16 mode, const QByteArray& source, quint16 length, QByteArray& target,
                      quint16 limit) override;
  quint16 OSLoadString(int module, Status status, QByteArray& buffer, quint16 limit) override;
  Status NSFFormulaCompile(const QByteArray& formula, quint16 length, MemHandle& compiled,
                           quint16& compiledLength, Status& error, quint16& line, quint16& column,
                           quint16& offset, quint16& errorLength) override;
  Status NSFComputeStart(quint16 flags, const char* formula, MemHandle& compute) override;
  Status NSFComputeEvaluate(MemHandle compute, NoteHandle note, MemHandle& result, quint16& length,
                            bool& matches, bool& deletes, bool& modified) override;
  Status NSFComputeStop(MemHandle compute) override;
  Status NSFRemoteConsole(const QByteArray& server, const QByteArray& command, MemHandle& reply) override;

 private:
  template <class Result, class... Arguments>
  Result invoke(const char* function, Arguments... arguments);

  BoundLibrary library_;
};

}  // namespace lens
