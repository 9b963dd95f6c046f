// Whatever handle a function is given, and in whatever order functions are called: a status or nothing.
#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/handle_table.h"
#include "embedded/capi/status.h"
#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

// One handle of each kind, all of them open.
struct Live {
  DbHandle db = 0;
  NoteHandle note = 0;
  MemHandle formula = 0, compute = 0, item = 0;
};

struct AnyHandle : ::testing::Test {
  AnyHandle() : api(t.workspace) {
    t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
    id = t.add({{u"Subject"_s, textValue(u"Hello")}, {u"List"_s, textListValue({u"a"_s, u"b"_s})}});
    api.NotesInitExtended(0, "");
  }

  Live open() {
    Live live;
    EXPECT_EQ(api.NSFDbOpen("mail.nsf", live.db), 0);
    EXPECT_EQ(api.NSFNoteOpen(live.db, qint32(id.value()), 0, live.note), 0);
    EXPECT_EQ(compiled("Subject : \"x\"", live.formula), 0);
    EXPECT_EQ(api.NSFComputeStart(0, api.OSLockObject(live.formula), live.compute), 0);
    api.OSUnlockObject(live.formula);
    EXPECT_EQ(itemInfo(live.note, &live.item), 0);
    return live;
  }
  void close(const Live& live) {
    EXPECT_EQ(api.NSFComputeStop(live.compute), 0);
    EXPECT_EQ(api.OSMemFree(live.formula), 0);
    EXPECT_EQ(api.NSFNoteClose(live.note), 0);
    EXPECT_EQ(api.NSFDbClose(live.db), 0);
  }

  Status compiled(const QByteArray& text, MemHandle& compiled) {
    quint16 length = 0, line = 0, column = 0, offset = 0, errorLength = 0;
    Status error = 0;
    return api.NSFFormulaCompile(text, quint16(text.size()), compiled, length, error, line, column, offset,
                                 errorLength);
  }
  Status itemInfo(NoteHandle note, MemHandle* pool = nullptr) {
    BlockId item, value;
    quint16 type = 0;
    quint32 length = 0;
    const Status status = api.NSFItemInfo(note, "Subject", 7, item, type, value, length);
    EXPECT_TRUE(status == 0 || (value.pool == 0 && type == 0 && length == 0));
    if (pool) *pool = value.pool;
    return status;
  }
  Status evaluate(MemHandle compute, NoteHandle note) {
    MemHandle block = 77;
    quint16 length = 77;
    bool matches = true, deletes = true, modified = true;
    const Status status = api.NSFComputeEvaluate(compute, note, block, length, matches, deletes, modified);
    EXPECT_TRUE(status == 0 || (block == 0 && length == 0));
    if (block != 0) {
      EXPECT_EQ(api.OSMemFree(block), 0);
    }
    return status;
  }
  Status openNote(DbHandle db, qint32 noteId, NoteHandle* out = nullptr) {
    NoteHandle note = 77;
    const Status status = api.NSFNoteOpen(db, noteId, 0, note);
    EXPECT_EQ(status == 0, note != 0);
    if (out) *out = note;
    return status;
  }
  Status findDesign(DbHandle db) {
    qint32 found = 77;
    const Status status = api.NIFFindDesignNote(db, "none", 0x200, found);
    EXPECT_EQ(found, 0);
    return status;
  }

  // Every function that takes a handle, by the kind of handle that it wants.
  enum Kind { Db, OpenedNote, Memory, Computation };
  struct Function {
    const char* name;
    Kind wants;
    std::function<Status(quint32)> call;
  };
  std::vector<Function> functions(const Live& live) {
    return {
        {"NSFDbClose", Db, [this](quint32 h) { return api.NSFDbClose(h); }},
        {"NSFNoteOpen", Db, [this](quint32 h) { return openNote(h, qint32(id.value())); }},
        {"NSFNoteDelete", Db, [this](quint32 h) { return api.NSFNoteDelete(h, qint32(id.value()), 0x201); }},
        {"NIFFindDesignNote", Db, [this](quint32 h) { return findDesign(h); }},
        {"NSFNoteClose", OpenedNote, [this](quint32 h) { return api.NSFNoteClose(h); }},
        {"NSFItemInfo", OpenedNote, [this](quint32 h) { return itemInfo(h); }},
        {"NSFComputeEvaluate, note", OpenedNote,
         [this, live](quint32 h) { return h ? evaluate(live.compute, h) : status::BadHandle; }},
        {"NSFComputeEvaluate", Computation, [this](quint32 h) { return evaluate(h, 0); }},
        {"NSFComputeStop", Computation, [this](quint32 h) { return api.NSFComputeStop(h); }},
        {"OSMemFree", Memory, [this](quint32 h) { return api.OSMemFree(h); }},
        {"OSLockObject", Memory,
         [this](quint32 h) { return api.OSLockObject(h) ? status::Ok : status::BadHandle; }},
        {"NSFComputeStart", Memory,
         [this](quint32 h) {
           MemHandle compute = 77;
           const Status status = api.NSFComputeStart(0, api.OSLockObject(h), compute);
           EXPECT_EQ(status == 0, compute != 0);
           return status;
         }},
    };
  }

  TestWorkspace t;
  EmbeddedCApi api;
  NoteId id;
};

}  // namespace

TEST_F(AnyHandle, ThatIsNoneOfItsKindIsAStatusAndHarmsNothing) {
  const Live stale = open();
  close(stale);
  const Live live = open();
  // Freed memory handles are given out again only after all others, so the stale ones lead nowhere.
  const std::vector<std::pair<quint32, int>> handles{{0, -1},
                                                     {1u << 28, -1},
                                                     {5u << 28, -1},
                                                     {0x7FFF, -1},
                                                     {0xFFFFFFFF, -1},
                                                     {0xFFFF8001, -1},
                                                     {0x80000000, -1},
                                                     {stale.db, -1},
                                                     {stale.note, -1},
                                                     {stale.formula, -1},
                                                     {stale.compute, -1},
                                                     {stale.item, -1},
                                                     {live.db, Db},
                                                     {live.note, OpenedNote},
                                                     {live.compute, Computation},
                                                     {live.formula, Memory},
                                                     {live.item, Memory}};
  for (const Function& function : functions(live)) {
    for (const auto& [handle, kind] : handles) {
      if (kind == function.wants) continue;
      const Status status = function.call(handle);
      EXPECT_NE(status, 0) << function.name << " took " << std::hex << handle;
      EXPECT_FALSE(statusText(status).isEmpty());
    }
  }
  EXPECT_TRUE(api.OSUnlockObject(stale.formula));
  EXPECT_NE(api.OSMemFree(live.item), 0) << "the note's own";
  EXPECT_EQ(t.store->notes().state(id), NoteState::Live);
  EXPECT_EQ(itemInfo(live.note), 0);
  EXPECT_EQ(evaluate(live.compute, live.note), 0);
  close(live);
  EXPECT_EQ(api.openHandles(), 0);
}

TEST_F(AnyHandle, IsClosedOnlyOnce) {
  const Live live = open();
  close(live);
  EXPECT_NE(api.NSFComputeStop(live.compute), 0);
  EXPECT_NE(api.OSMemFree(live.formula), 0);
  EXPECT_NE(api.NSFNoteClose(live.note), 0);
  EXPECT_NE(api.NSFDbClose(live.db), 0);
}

TEST_F(AnyHandle, OfMemoryRunsOutWithAStatus) {
  const Live live = open();
  NoteHandle fresh = 0;
  ASSERT_EQ(openNote(live.db, qint32(id.value()), &fresh), 0);
  QVector<MemHandle> lists;
  MemHandle list = 0;
  while (api.NSGetServerList(0, list) == 0) {
    ASSERT_TRUE(list >= 1 && list <= 0x7FFF);
    lists.push_back(list);
  }
  EXPECT_EQ(lists.size(), 0x7FFF - 2);  // the formula and the item have the others
  EXPECT_EQ(list, 0u);
  EXPECT_EQ(api.NSGetServerList(0, list), 0x0107);
  MemHandle handle = 77;
  EXPECT_EQ(compiled("1", handle), 0x0107);
  EXPECT_EQ(handle, 0u);
  EXPECT_EQ(evaluate(live.compute, 0), 0x0107);
  EXPECT_EQ(itemInfo(fresh), 0x0107);
  EXPECT_EQ(itemInfo(live.note), 0) << "what is handed out already needs no more";
  handle = 77;
  EXPECT_EQ(api.NSFRemoteConsole("Hub1/Acme", "help", handle), 0x0107);
  EXPECT_EQ(handle, 0u);
  EXPECT_EQ(api.OSMemFree(lists.takeLast()), 0);
  EXPECT_EQ(itemInfo(fresh), 0);
  api.NotesTerm();
  EXPECT_EQ(api.openHandles(), 0);
}

TEST(HandleTable, RunsOutAfterAllPlacesAndGoesOn) {
  HandleTable<int> table(1);
  quint32 last = 0;
  for (int i = 0; i < 0x10000; ++i) ASSERT_NE(last = table.add(std::make_unique<int>(i)), 0u);
  EXPECT_EQ(table.add(std::make_unique<int>(0)), 0u);
  EXPECT_EQ(*table.take(last), 0xFFFF);
  EXPECT_EQ(table.take(last), nullptr);
  const quint32 again = table.add(std::make_unique<int>(7));
  EXPECT_NE(again, 0u);
  EXPECT_NE(again, last);
}

namespace {

// Calls of any function in any order with handles that are, were or never were open.
class RandomCalls {
 public:
  RandomCalls(EmbeddedCApi& api, NoteId highestId, quint32 seed)
      : api_(api), highestId_(highestId), random_(seed) {}

  void step() {
    BlockId item, value;
    quint16 word = 0;
    quint32 size = 0;
    qint32 found = 0;
    quint32 handle = 0;
    bool flag = false;
    QByteArray buffer(300, ' ');
    switch (random_() % 22) {
      case 0:
        return check(api_.NSFDbOpen(random_() % 4 ? "mail.nsf" : "none!!x", handle), handle);
      case 1:
        return check(random_() % 4 ? status::Ok : api_.NSFDbClose(any()));
      case 2:
      case 3:
        return check(api_.NSFNoteOpen(any(), noteId(), 0, handle), handle);
      case 4:
        return check(api_.NSFNoteClose(any()));
      case 5:
      case 6:
        check(api_.NSFItemInfo(any(), "Subject", quint16(random_() % 9), item, word, value, size),
              value.pool);
        return;
      case 7:
        return check(api_.NIFFindDesignNote(any(), "Agent", 0x7FFF, found));
      case 8:
        return check(random_() % 8 ? status::Ok : api_.NSFNoteDelete(any(), noteId(), quint16(random_())));
      case 9:
        return check(api_.NSGetServerList(0, handle), handle);
      case 10:
      case 11:
        return readMemory(any());
      case 12:
        return void(api_.OSLockObject(any()));
      case 13:
        return void(api_.OSUnlockObject(any()));
      case 14:
      case 15:
        return check(api_.OSMemFree(any()));
      case 16:
        return compiled();
      case 17:
        return start(any());
      case 18:
        return check(
            api_.NSFComputeEvaluate(any(), random_() % 2 ? any() : 0, handle, word, flag, flag, flag),
            handle);
      case 19:
        return check(api_.NSFComputeStop(any()));
      case 20:
        return check(api_.NSFRemoteConsole(random_() % 3 ? "Hub1/Acme" : "x", "show tasks", handle), handle);
      default:
        return sessions();
    }
  }

 private:
  quint32 any() {
    if (seen_.empty() || random_() % 10 == 0) return random_() % 3 ? random_() % 0x8000 : quint32(random_());
    return seen_[seen_.size() - 1 - random_() % std::min<size_t>(seen_.size(), 24)];
  }
  qint32 noteId() {
    return random_() % 6 ? qint32(highestId_.value() - 4 * (random_() % 8)) : qint32(random_());
  }

  void check(Status status, quint32 handle = 0) {
    ASSERT_TRUE(status == 0 || !statusText(status).isEmpty()) << std::hex << status;
    ASSERT_TRUE(status == 0 || handle == 0);
    if (handle) seen_.push_back(handle);
  }
  void compiled() {
    static const QByteArray formulas[] = {"Subject : \"x\"", "FIELD Subject := \"new\"; 1", "1 +", "1/0", ""};
    const QByteArray& text = formulas[random_() % std::size(formulas)];
    MemHandle compiled = 0;
    Status error = 0;
    quint16 length = 0, line = 0, column = 0, offset = 0, errorLength = 0;
    check(api_.NSFFormulaCompile(text, quint16(random_() % 40), compiled, length, error, line, column, offset,
                                 errorLength),
          compiled);
    check(error);
  }
  void start(MemHandle memory) {
    MemHandle compute = 0;
    check(api_.NSFComputeStart(0, api_.OSLockObject(memory), compute), compute);
    api_.OSUnlockObject(memory);
  }
  // What is locked is read in every way, from every place.
  void readMemory(MemHandle memory) {
    const char* from = api_.OSLockObject(memory);
    if (from) {
      const char* list = from + random_() % 60;
      const int prefixed = int(random_() % 2);
      api_.ListGetNumEntries(list, prefixed);
      const char* text = nullptr;
      quint16 length = 0;
      check(
          api_.ListGetText(list, prefixed, quint16(random_() % 4 ? random_() % 4 : random_()), text, length));
      char target[102 * 3];
      static constexpr quint16 kTypes[] = {0, 1, 2, 10, 13, 14, 28, 318, 999};
      for (int i = 0; i < 3; ++i)
        api_.ODSReadMemory(list, kTypes[random_() % std::size(kTypes)], target, quint16(random_() % 4));
    }
    api_.OSUnlockObject(memory);
  }
  void sessions() {
    switch (random_() % 12) {
      case 0:
        return api_.NotesTerm();
      default:
        return check(api_.NotesInitExtended(0, ""));
    }
  }

  EmbeddedCApi& api_;
  NoteId highestId_;
  std::mt19937 random_;
  std::vector<quint32> seen_;
};

}  // namespace

TEST_F(AnyHandle, InAnyOrderOfCallsEndsWithNothingLeft) {
  for (const quint32 seed : {1u, 2u, 3u}) {
    for (int i = 0; i < 8; ++i) id = t.add({{u"Subject"_s, textValue(u"Hello")}});
    RandomCalls calls(api, id, seed);
    for (int i = 0; i < 2500 && !HasFatalFailure(); ++i) calls.step();
    while (api.openHandles() > 0) api.NotesTerm();
    api.NotesTerm();
  }
}
