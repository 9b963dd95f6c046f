// The embedded side of the C API's door: the functions that the tool needs, on a workspace.
//
// Handles come from tables, so zero, stale and wrong ones give a status or nothing. Closing a
// database closes its notes and frees the memory of their items. NotesTerm closes and frees what was opened
// since its NotesInitExtended, so that a routine which failed on its way to its NotesTerm does not keep the
// handles of all later ones open; the last NotesTerm closes everything. Calls work without NotesInitExtended
// too, and a NotesTerm too many does no harm.
//
// Texts that memory of the library holds are LMBCS: lists, and what a console replies.
#pragma once

#include <QHash>
#include <memory>
#include <vector>

#include "embedded/capi/handle_table.h"
#include "embedded/capi/memory_pool.h"
#include "embedded/evaluation/workspace_environment.h"
#include "embedded/formula/formula.h"
#include "embedded/workspace/workspace.h"
#include "notes/capi.h"

namespace lens {

class EmbeddedCApi : public CApi {
 public:
  explicit EmbeddedCApi(std::shared_ptr<Workspace> workspace);
  ~EmbeddedCApi() override;

  QByteArray nativeName(QStringView name) const override { return markedName(name); }

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

  // Handles and blocks in use, for those who look for leaks.
  qsizetype openHandles() const;

 private:
  struct OpenDb {
    DatabasePlace place;
    std::shared_ptr<Database> store;
  };
  struct OpenNote {
    DbHandle db = 0;
    Note note;
    QHash<qsizetype, MemHandle> values;  // memory handed out, by the item's place
    QVector<MemHandle> outdated;         // the same, of items that a formula has changed since
  };
  // How far a walk over a list has come.
  struct ListWalk {
    const char* lengths = nullptr;
    quint64 changes = 0;
    quint16 index = 0;
    qsizetype at = 0;
  };
  void closeNote(NoteHandle handle);
  void closeAll();
  // A new handle, which belongs to the innermost routine.
  template <class Table, class Thing>
  quint32 give(Table& table, std::unique_ptr<Thing> thing) {
    const quint32 handle = table.add(std::move(thing));
    if (!routines_.empty()) routines_.back().push_back(handle);
    return handle;
  }
  qsizetype offsetOfEntry(const char* lengths, quint32 entries, quint16 index);
  formula::Outcome evaluate(formula::Evaluation& evaluation, OpenNote* note);

  std::shared_ptr<Workspace> workspace_;
  std::vector<std::vector<quint32>> routines_;  // between their init and their term: what they opened
  HandleTable<OpenDb> dbs_{1};
  HandleTable<OpenNote> notes_{2};
  HandleTable<formula::Evaluation> computations_{3};
  WorkspaceEnvironment environment_;
  MemoryPool memory_;
  ListWalk walk_;
  QByteArray translated_;  // the text last turned to LMBCS that no formula was compiled from yet
};

}  // namespace lens
