// A C API that hands every call on, keeps a log of the function names with their handles, and can
// fail one of them.
#pragma once

#include <QStringList>

#include "notes/capi.h"

namespace lens {

class ForwardingCApi : public CApi {
 public:
  explicit ForwardingCApi(CApi& next) : next_(next) {}

  QStringList log;       // "NSFDbOpen", "NSFDbClose 0" (zero handles are marked), ...
  int failAt = 0;        // the call of this number (from 1) raises; 0 means none
  QString failFunction;  // or every call of this function raises
  int failNumber = 453;
  int calls() const { return calls_; }

  QByteArray nativeName(QStringView name) const override {
    return boundToCodePage ? codePageName(name) : next_.nativeName(name);
  }
  bool boundToCodePage = false;  // as the platform's own library is

  Status NotesInitExtended(int argc, const QByteArray& argv) override {
    note("NotesInitExtended");
    return next_.NotesInitExtended(argc, argv);
  }
  void NotesTerm() override {
    next_.NotesTerm();  // as for every release: it happens, and then the call fails
    note("NotesTerm");
  }
  Status OSPathNetConstruct(int port, const QByteArray& server, const QByteArray& file,
                            QByteArray& buffer) override {
    note("OSPathNetConstruct");
    return next_.OSPathNetConstruct(port, server, file, buffer);
  }
  Status NSFDbOpen(const QByteArray& path, DbHandle& db) override {
    note("NSFDbOpen");
    return next_.NSFDbOpen(path, db);
  }
  Status NSFDbClose(DbHandle db) override {
    const Status status = next_.NSFDbClose(db);
    note("NSFDbClose", db);
    return status;
  }
  Status NSFDbCreate(const QByteArray& path, quint16 dbClass, int force) override {
    note("NSFDbCreate");
    return next_.NSFDbCreate(path, dbClass, force);
  }
  Status NSFNoteOpen(DbHandle db, qint32 noteId, quint16 flags, NoteHandle& handle) override {
    note("NSFNoteOpen", db);
    return next_.NSFNoteOpen(db, noteId, flags, handle);
  }
  Status NSFNoteClose(NoteHandle handle) override {
    const Status status = next_.NSFNoteClose(handle);
    note("NSFNoteClose", handle);
    return status;
  }
  Status NSFNoteDelete(DbHandle db, qint32 noteId, quint16 flags) override {
    note("NSFNoteDelete", db);
    return next_.NSFNoteDelete(db, noteId, flags);
  }
  Status NSFItemInfo(NoteHandle handle, const QByteArray& name, quint16 nameLength, BlockId& item,
                     quint16& type, BlockId& value, quint32& valueLength) override {
    note("NSFItemInfo", handle);
    return next_.NSFItemInfo(handle, name, nameLength, item, type, value, valueLength);
  }
  Status NIFFindDesignNote(DbHandle db, const QByteArray& name, quint16 noteClass, qint32& noteId) override {
    note("NIFFindDesignNote", db);
    return next_.NIFFindDesignNote(db, name, noteClass, noteId);
  }
  void ODSReadMemory(const char*& from, quint16 type, void* target, quint16 count) override {
    note("ODSReadMemory");
    next_.ODSReadMemory(from, type, target, count);
  }
  Status ConvertTIMEDATEToText(const TimeDate& time, QByteArray& buffer, quint16 limit,
                               quint16& length) override {
    note("ConvertTIMEDATEToText");
    return next_.ConvertTIMEDATEToText(time, buffer, limit, length);
  }
  quint32 ListGetNumEntries(const char* list, int prefixed) override {
    note("ListGetNumEntries");
    return next_.ListGetNumEntries(list, prefixed);
  }
  Status ListGetText(const char* list, int prefixed, quint16 index, const char*& text,
                     quint16& length) override {
    note("ListGetText");
    return next_.ListGetText(list, prefixed, index, text, length);
  }
  Status NSGetServerList(int port, MemHandle& list) override {
    note("NSGetServerList");
    return next_.NSGetServerList(port, list);
  }
  const char* OSLockObject(MemHandle handle) override {
    note("OSLockObject", handle);
    return next_.OSLockObject(handle);
  }
  bool OSUnlockObject(MemHandle handle) override {
    const bool unlocked = next_.OSUnlockObject(handle);
    note("OSUnlockObject", handle);
    return unlocked;
  }
  Status OSMemFree(MemHandle handle) override {
    const Status status = next_.OSMemFree(handle);
    note("OSMemFree", handle);
    return status;
  }
  quint16 OSTranslate(quint16 mode, const QByteArray& source, quint16 length, QByteArray& target,
                      quint16 limit) override {
    note("OSTranslate");
    return next_.OSTranslate(mode, source, length, target, limit);
  }
  quint16 OSLoadString(int module, Status status, QByteArray& buffer, quint16 limit) override {
    note("OSLoadString");
    return next_.OSLoadString(module, status, buffer, limit);
  }
  Status NSFFormulaCompile(const QByteArray& formula, quint16 length, MemHandle& compiled,
                           quint16& compiledLength, Status& error, quint16& line, quint16& column,
                           quint16& offset, quint16& errorLength) override {
    note("NSFFormulaCompile");
    return next_.NSFFormulaCompile(formula, length, compiled, compiledLength, error, line, column, offset,
                                   errorLength);
  }
  Status NSFComputeStart(quint16 flags, const char* formula, MemHandle& compute) override {
    note("NSFComputeStart");
    return next_.NSFComputeStart(flags, formula, compute);
  }
  Status NSFComputeEvaluate(MemHandle compute, NoteHandle handle, MemHandle& result, quint16& length,
                            bool& matches, bool& deletes, bool& modified) override {
    note("NSFComputeEvaluate");
    return next_.NSFComputeEvaluate(compute, handle, result, length, matches, deletes, modified);
  }
  Status NSFComputeStop(MemHandle compute) override {
    note("NSFComputeStop");
    return next_.NSFComputeStop(compute);
  }
  Status NSFRemoteConsole(const QByteArray& server, const QByteArray& command, MemHandle& reply) override {
    note("NSFRemoteConsole");
    return next_.NSFRemoteConsole(server, command, reply);
  }

 private:
  void note(const char* function) {
    log += QString::fromLatin1(function);
    failIfWanted(function);
  }
  void note(const char* function, quint32 handle) {
    log += handle == 0 ? QString::fromLatin1(function) + u" 0" : QString::fromLatin1(function);
    failIfWanted(function);
  }
  void failIfWanted(const char* function) {
    ++calls_;
    if (calls_ == failAt || failFunction == QLatin1String(function)) throw RuntimeError(failNumber);
  }

  CApi& next_;
  int calls_ = 0;
};

}  // namespace lens
