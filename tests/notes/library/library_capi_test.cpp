// The client's own library behind the door of the C API, against doubles of both widths of handles.
#include "notes/library/library_capi.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "notes/literals.h"
#include "support/error_number.h"

namespace lens {
namespace {

class ClientLibrary : public testing::TestWithParam<const char*> {
 protected:
  LibraryCApi api{QString::fromUtf8(GetParam())};
};

INSTANTIATE_TEST_SUITE_P(OfBothWidths, ClientLibrary,
                         testing::Values(LENS_NARROW_LIBRARY, LENS_WIDE_LIBRARY));

TEST_P(ClientLibrary, OpensADatabaseByItsFullPath) {
  const NotesInit init(api);
  QByteArray path(1024, ' ');
  EXPECT_EQ(api.OSPathNetConstruct(0, "CN=Hub/O=Acme", "mail.nsf", path), 0);
  EXPECT_EQ(path.left(23), QByteArray("CN=Hub/O=Acme!!mail.nsf"));
  EXPECT_EQ(path[23], '\0');
  DbHandle db = 99;
  EXPECT_EQ(api.NSFDbOpen("mail.nsf", db), 0);
  EXPECT_EQ(db, 0x00020010u);
  EXPECT_EQ(api.NSFDbClose(db), 0);
}

TEST_P(ClientLibrary, LeavesNoHandleBehindAFailure) {
  DbHandle db = 99;
  EXPECT_EQ(api.NSFDbOpen("other.nsf", db), 0x4103);
  EXPECT_EQ(db, 0u);
  NoteHandle note = 99;
  EXPECT_EQ(api.NSFNoteOpen(0x00020010, 1, 0, note), 0x0227);
  EXPECT_EQ(note, 0u);
  MemHandle compiled = 99;
  quint16 length = 9, line = 9, column = 9, offset = 9, errorLength = 9;
  Status error = 9;
  EXPECT_EQ(api.NSFFormulaCompile("@Nix", 4, compiled, length, error, line, column, offset, errorLength),
            0x0501);
  EXPECT_EQ(compiled, 0u);
  EXPECT_EQ(error, 0x051B);
  EXPECT_EQ((QVector<quint16>{length, line, column, offset, errorLength}), (QVector<quint16>{0, 1, 2, 3, 4}));
}

TEST_P(ClientLibrary, TakesANoteIdWithItsTopBitSet) {
  NoteHandle note = 0;
  EXPECT_EQ(api.NSFNoteOpen(0x00020010, -65520, 0, note), 0);
  EXPECT_EQ(note, 0x00030020u);
  EXPECT_EQ(api.NSFNoteClose(note), 0);
}

TEST_P(ClientLibrary, FindsThePlacesOfAnItemInEitherWidth) {
  BlockId item, value;
  quint16 type = 0;
  quint32 length = 0;
  EXPECT_EQ(api.NSFItemInfo(1, "Subject", 7, item, type, value, length), 0);
  EXPECT_EQ(item.pool, 0x7A01u);
  EXPECT_EQ(item.block, 0x0011);
  EXPECT_EQ(value.pool, 0x7A01u);
  EXPECT_EQ(value.block, 0x0022);
  EXPECT_EQ(type, 0x0500);
  EXPECT_EQ(length, 0x00010002u);
}

// Zero is also what stood there before the library wrote.
TEST_P(ClientLibrary, FindsABlockWhoseWordIsZero) {
  BlockId item, value;
  quint16 type = 0;
  quint32 length = 0;
  EXPECT_EQ(api.NSFItemInfo(1, "Far", 3, item, type, value, length), 0);
  EXPECT_EQ(value.pool, 0x7A01u);
  EXPECT_EQ(value.block, 0);
}

TEST_P(ClientLibrary, SaysNothingOfAnItemThatIsMissing) {
  BlockId item{1, 1}, value{1, 1};
  quint16 type = 9;
  quint32 length = 9;
  EXPECT_EQ(api.NSFItemInfo(1, "Other", 5, item, type, value, length), 0x0222);
  EXPECT_EQ(value.pool, 0u);
  EXPECT_EQ(length, 0u);
}

TEST_P(ClientLibrary, LocksAndFreesMemory) {
  MemHandle list = 0;
  EXPECT_EQ(api.NSGetServerList(0, list), 0);
  EXPECT_EQ(list, 0x7FFEu);
  EXPECT_STREQ(api.OSLockObject(list), "locked");
  EXPECT_TRUE(api.OSUnlockObject(list));
  EXPECT_EQ(api.OSMemFree(list), 0);
}

TEST_P(ClientLibrary, EvaluatesAFormula) {
  MemHandle compiled = 0, compute = 0, result = 0;
  quint16 length = 0, line = 0, column = 0, offset = 0, errorLength = 0;
  Status error = 0;
  EXPECT_EQ(api.NSFFormulaCompile("@All", 4, compiled, length, error, line, column, offset, errorLength), 0);
  EXPECT_EQ(compiled, 0x7FFEu);
  EXPECT_EQ(length, 12);
  EXPECT_EQ(api.NSFComputeStart(0, api.OSLockObject(compiled), compute), 0);
  bool matches = false, deletes = true, modified = false;
  EXPECT_EQ(api.NSFComputeEvaluate(compute, 5, result, length, matches, deletes, modified), 0);
  EXPECT_EQ(result, 0x7FFEu);
  EXPECT_EQ(length, 6);
  EXPECT_TRUE(matches && !deletes && modified);
  EXPECT_EQ(api.NSFComputeStop(compute), 0);
}

TEST_P(ClientLibrary, ReadsListsTimesAndTexts) {
  const char list[] = {1, 0, 3, 0, 'H', 'u', 'b'};
  const char* text = nullptr;
  quint16 length = 0;
  EXPECT_EQ(api.ListGetNumEntries(list, 0), 1u);
  EXPECT_EQ(api.ListGetText(list, 0, 0, text, length), 0);
  EXPECT_EQ(QByteArray(text, length), QByteArray("Hub"));
  EXPECT_EQ(api.ListGetText(list, 0, 1, text, length), 0x0605);
  EXPECT_EQ(length, 0);
  QByteArray buffer(80, ' ');
  EXPECT_EQ(api.ConvertTIMEDATEToText({{1, 2}}, buffer, 80, length), 0);
  EXPECT_EQ(buffer.left(length), QByteArray("01.02.2003"));
  const char bytes[] = {1, 0, 2, 0, 3, 0};
  const char* from = bytes;
  quint16 field = 0;
  api.ODSReadMemory(from, 0, &field, 1);
  api.ODSReadMemory(from, 0, &field, 1);
  EXPECT_EQ(field, 2);
  EXPECT_EQ(from, bytes + 4);
  QByteArray words(256, ' ');
  EXPECT_EQ(api.OSLoadString(0, 0x0103, words, 255), 19);
  EXPECT_STREQ(words.constData(), "File does not exist");
  qint32 agent = 0;
  EXPECT_EQ(api.NIFFindDesignNote(1, "Agent", 0x200, agent), 0);
  EXPECT_EQ(agent, 0x11A);
}

// The library believes the length that it is told.
TEST_P(ClientLibrary, GivesTheLibraryAsMuchRoomAsItIsTold) {
  QByteArray target;
  EXPECT_EQ(api.OSTranslate(1, "x", 1, target, 256), 256);
  EXPECT_EQ(target, QByteArray(256, 'x'));
  QByteArray path, text;
  quint16 length = 0;
  EXPECT_EQ(api.OSPathNetConstruct(0, "", "mail.nsf", path), 0);
  EXPECT_STREQ(path.constData(), "mail.nsf");
  EXPECT_EQ(api.ConvertTIMEDATEToText({{1, 2}}, text, 80, length), 0);
}

// The real one ends the process over it, and so does the double.
TEST_P(ClientLibrary, NeverSeesAZeroHandle) {
  NoteHandle note = 9;
  qint32 id = 9;
  BlockId item, value;
  quint16 word = 0;
  quint32 length = 0;
  MemHandle result = 9;
  bool flag = true;
  EXPECT_NE(api.NSFDbClose(0), 0);
  EXPECT_NE(api.NSFNoteOpen(0, 1, 0, note), 0);
  EXPECT_NE(api.NSFNoteClose(0), 0);
  EXPECT_NE(api.NSFNoteDelete(0, 1, 0x201), 0);
  EXPECT_NE(api.NSFItemInfo(0, "Subject", 7, item, word, value, length), 0);
  EXPECT_NE(api.NIFFindDesignNote(0, "Agent", 0x200, id), 0);
  EXPECT_EQ(api.OSLockObject(0), nullptr);
  EXPECT_FALSE(api.OSUnlockObject(0));
  EXPECT_NE(api.OSMemFree(0), 0);
  EXPECT_NE(api.NSFComputeEvaluate(0, 0, result, word, flag, flag, flag), 0);
  EXPECT_NE(api.NSFComputeStop(0), 0);
  const char* text = nullptr;
  EXPECT_NE(api.ListGetText(nullptr, 0, 0, text, word), 0);
  EXPECT_EQ(note, 0u);
  EXPECT_EQ(result, 0u);
}

TEST_P(ClientLibrary, RaisesForAFunctionThatItLacks) {
  MemHandle reply = 0;
  EXPECT_EQ(errorNumber([&] { api.NSFRemoteConsole("Hub", "show tasks", reply); }), err::EntryNotFound);
  EXPECT_EQ(errorNumber([&] { api.NSFRemoteConsole("Hub", "show tasks", reply); }), err::EntryNotFound);
}

TEST(MissingClientLibrary, IsSoughtAtTheFirstCallAndRaises) {
  LibraryCApi api(u"libnotes-that-nobody-has.so"_s);
  EXPECT_EQ(errorNumber([&] { api.NotesInitExtended(0, QByteArray()); }), err::FileNotFound);
}

TEST(MissingClientLibrary, IsToldFromOneThatCannotBeLoaded) {
  const QTemporaryDir directory;
  QFile file(directory.filePath(u"libnotes.so"_s));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("no library") > 0);
  file.close();
  LibraryCApi api(file.fileName());
  EXPECT_EQ(errorNumber([&] { api.NotesInitExtended(0, QByteArray()); }), err::LibraryNotLoaded);
}

}  // namespace
}  // namespace lens
