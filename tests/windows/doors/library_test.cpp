// The C API over the client's library, against the stand-in for it: what the low-level readers do.
#include <gtest/gtest.h>

#include <QDir>

#include "double_control.h"
#include "notes/code_page.h"
#include "notes/library/library_capi.h"
#include "notes/literals.h"
#include "support/error_number.h"

namespace lens {
namespace {

class Library : public testing::Test {
 protected:
  DbHandle openMail() {
    DbHandle db = 0;
    EXPECT_EQ(api.NSFDbOpen(codePageName(QDir::toNativeSeparators(u"mail/kmeier.nsf"_s)), db), 0);
    return db;
  }
  LibraryCApi api;
};

TEST_F(Library, ReadsTheSizeOfAnItem) {
  const NotesInit init(api);
  const DbHandle db = openMail();
  ASSERT_NE(db, 0u);
  NoteHandle note = 0;
  ASSERT_EQ(api.NSFNoteOpen(db, 0x902, 0, note), 0);
  BlockId item, value;
  quint16 type = 0;
  quint32 length = 0;
  ASSERT_EQ(api.NSFItemInfo(note, "Subject", 7, item, type, value, length), 0);
  EXPECT_EQ(type, 0x0500);
  EXPECT_EQ(length, 2u + 31u);
  const char* const bytes = api.OSLockObject(value.pool);
  ASSERT_NE(bytes, nullptr);
  EXPECT_EQ(QByteArray(bytes + value.block + 2, int(length) - 2),
            QByteArray("Contract 2024-117, second draft"));
  EXPECT_TRUE(api.OSUnlockObject(value.pool));
  EXPECT_EQ(api.NSFDbClose(db), 0);
}

TEST_F(Library, TellsWhatAStatusMeans) {
  const NotesInit init(api);
  DbHandle db = 9;
  const Status status = api.NSFDbOpen("nosuch.nsf", db);
  EXPECT_EQ(db, 0u);
  QByteArray text(256, ' ');
  EXPECT_GT(api.OSLoadString(0, status & kErrorMask, text, 255), 0);
  EXPECT_EQ(upToNul(text), QByteArray("File does not exist"));
}

TEST_F(Library, CompilesAndEvaluatesAFormula) {
  const NotesInit init(api);
  MemHandle compiled = 0, compute = 0, result = 0;
  quint16 length = 0, line = 0, column = 0, offset = 0, errorLength = 0;
  Status error = 0;
  const QByteArray formula = "\"a\" : \"b\"";
  ASSERT_EQ(api.NSFFormulaCompile(formula, quint16(formula.size()), compiled, length, error, line, column,
                                  offset, errorLength),
            0);
  ASSERT_EQ(api.NSFComputeStart(0, api.OSLockObject(compiled), compute), 0);
  bool matches = false, deletes = false, modified = false;
  ASSERT_EQ(api.NSFComputeEvaluate(compute, 0, result, length, matches, deletes, modified), 0);
  const char* const list = api.OSLockObject(result);
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(api.ListGetNumEntries(list, -1), 2u);
  const char* text = nullptr;
  EXPECT_EQ(api.ListGetText(list, -1, 1, text, length), 0);
  EXPECT_EQ(QByteArray(text, length), QByteArray("b"));
  EXPECT_TRUE(api.OSUnlockObject(result));
  EXPECT_EQ(api.OSMemFree(result), 0);
  EXPECT_EQ(api.NSFComputeStop(compute), 0);
}

TEST_F(Library, ShowsWhereAFormulaIsWrong) {
  const NotesInit init(api);
  MemHandle compiled = 9;
  quint16 length = 0, line = 0, column = 0, offset = 0, errorLength = 0;
  Status error = 0;
  EXPECT_EQ(api.NSFFormulaCompile("@Nix(1)", 7, compiled, length, error, line, column, offset, errorLength),
            0x0501);
  EXPECT_EQ(compiled, 0u);
  EXPECT_EQ(error, 0x051B);
}

TEST_F(Library, ListsTheServers) {
  const NotesInit init(api);
  MemHandle list = 0;
  ASSERT_EQ(api.NSGetServerList(0, list), 0);
  const char* const entries = api.OSLockObject(list);
  const char* text = nullptr;
  quint16 length = 0;
  ASSERT_EQ(api.ListGetText(entries, 0, 0, text, length), 0);
  EXPECT_TRUE(QByteArray(text, length).startsWith("CN=ACME-"));
  api.OSUnlockObject(list);
  EXPECT_EQ(api.OSMemFree(list), 0);
}

TEST(AbsentLibrary, IsNotFound) {
  LibraryCApi api(u"NoSuchLibrary.dll"_s);
  EXPECT_EQ(errorNumber([&] { api.NotesInitExtended(0, QByteArray()); }), err::FileNotFound);
}

TEST(AbsentLibrary, LacksAFunction) {
  LibraryCApi api(u"kernel32.dll"_s);
  EXPECT_EQ(errorNumber([&] { api.NotesInitExtended(0, QByteArray()); }), err::EntryNotFound);
}

}  // namespace
}  // namespace lens
