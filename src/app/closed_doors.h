// The two doors when nothing stands behind them: every use fails with the reason, so that the program
// starts, says what is missing, and lives on.
#pragma once

#include "notes/bridge.h"
#include "notes/capi.h"

namespace lens {

class ClosedGateway : public Gateway {
 public:
  explicit ClosedGateway(QString reason) : reason_(std::move(reason)) {}
  Object create(const QString&) override { throw RuntimeError(err::CannotCreateObject, reason_); }

 private:
  QString reason_;
};

class ClosedCApi : public CApi {
 public:
  explicit ClosedCApi(QString reason) : reason_(std::move(reason)) {}

  Status NotesInitExtended(int, const QByteArray&) override { refuse(); }
  void NotesTerm() override {}  // stands on every exit, also behind a failure
  Status OSPathNetConstruct(int, const QByteArray&, const QByteArray&, QByteArray&) override { refuse(); }
  Status NSFDbOpen(const QByteArray&, DbHandle&) override { refuse(); }
  Status NSFDbClose(DbHandle) override { return 0; }
  Status NSFDbCreate(const QByteArray&, quint16, int) override { refuse(); }
  Status NSFNoteOpen(DbHandle, qint32, quint16, NoteHandle&) override { refuse(); }
  Status NSFNoteClose(NoteHandle) override { return 0; }
  Status NSFNoteDelete(DbHandle, qint32, quint16) override { refuse(); }
  Status NSFItemInfo(NoteHandle, const QByteArray&, quint16, BlockId&, quint16&, BlockId&,
                     quint32&) override {
    refuse();
  }
  Status NIFFindDesignNote(DbHandle, const QByteArray&, quint16, qint32&) override { refuse(); }
  void ODSReadMemory(const char*&, quint16, void*, quint16) override { refuse(); }
  Status ConvertTIMEDATEToText(const TimeDate&, QByteArray&, quint16, quint16&) override { refuse(); }
  quint32 ListGetNumEntries(const char*, int) override { refuse(); }
  Status ListGetText(const char*, int, quint16, const char*&, quint16&) override { refuse(); }
  Status NSGetServerList(int, MemHandle&) override { refuse(); }
  const char* OSLockObject(MemHandle) override { refuse(); }
  bool OSUnlockObject(MemHandle) override { return true; }
  Status OSMemFree(MemHandle) override { return 0; }
  quint16 OSTranslate(quint16, const QByteArray&, quint16, QByteArray&, quint16) override { refuse(); }
  quint16 OSLoadString(int, Status, QByteArray&, quint16) override { refuse(); }
  Status NSFFormulaCompile(const QByteArray&, quint16, MemHandle&, quint16&, Status&, quint16&, quint16&,
                           quint16&, quint16&) override {
    refuse();
  }
  Status NSFComputeStart(quint16, const char*, MemHandle&) override { refuse(); }
  Status NSFComputeEvaluate(MemHandle, NoteHandle, MemHandle&, quint16&, bool&, bool&, bool&) override {
    refuse();
  }
  Status NSFComputeStop(MemHandle) override { return 0; }
  Status NSFRemoteConsole(const QByteArray&, const QByteArray&, MemHandle&) override { refuse(); }

 private:
  [[noreturn]] void refuse() const { throw RuntimeError(err::EntryNotFound, reason_); }

  QString reason_;
};

}  // namespace lens
