// The deletion of a note by its ID, without the window.
#include "design/deletion.h"
#include "design/design_fixture.h"

namespace lens {
namespace {

// A library whose statuses are what the test says.
class StubbornCApi : public ForwardingCApi {
 public:
  using ForwardingCApi::ForwardingCApi;
  Status openStatus = 0, deleteStatus = 0;
  qint32 deletedId = 0;
  quint16 deletedWith = 0;
  qsizetype pathSize = 0;
  Status OSPathNetConstruct(int port, const QByteArray& server, const QByteArray& file,
                            QByteArray& buffer) override {
    pathSize = buffer.size();
    return ForwardingCApi::OSPathNetConstruct(port, server, file, buffer);
  }
  Status NSFDbOpen(const QByteArray& path, DbHandle& db) override {
    return openStatus != 0 ? openStatus : ForwardingCApi::NSFDbOpen(path, db);
  }
  Status NSFNoteDelete(DbHandle, qint32 noteId, quint16 flags) override {
    deletedId = noteId;
    deletedWith = flags;
    return deleteStatus;
  }
};

class LowLevelDelete : public DesignTest {
 protected:
  LowLevelDelete() {
    start();
    stubborn = std::make_unique<StubbornCApi>(*capiDoor);
    desk = std::make_unique<Desk>(deskWith(*stubborn));
    deletion = std::make_unique<Deletion>(*desk);
  }
  QString run(const QString& id) { return deletion->DeleteNoteLowLevel(state().gDb, id); }
  std::unique_ptr<StubbornCApi> stubborn;
  std::unique_ptr<Desk> desk;
  std::unique_ptr<Deletion> deletion;
};

TEST_F(LowLevelDelete, PassesTheIdWithoutItsTopBitAndBothFlags) {
  EXPECT_EQ(run(u"8000011a"_s), QString());
  EXPECT_EQ(stubborn->deletedId, 0x11A);
  EXPECT_EQ(stubborn->deletedWith, 0x0201);
  EXPECT_EQ(run(u"FFFF0010"_s), QString());
  EXPECT_EQ(stubborn->deletedId, 0x7FFF0010);
  EXPECT_EQ(stubborn->pathSize, 256);
}

TEST_F(LowLevelDelete, WritesAStatusAsASignedNumberAndReadsItsLowBits) {
  stubborn->deleteStatus = 0x8227;
  const QString meaning = app->routines.GetAPIError(0x0227);
  EXPECT_EQ(run(u"0000011A"_s), u"Unable to delete doc. Error was -32217: "_s + meaning);
  stubborn->openStatus = 0x8227;
  EXPECT_EQ(run(u"0000011A"_s), u"Cannot open database mail.nsf on server . Error was -32217: "_s + meaning);
}

TEST_F(LowLevelDelete, TakesNothingButEightHexadecimalDigits) {
  for (const QString& text :
       {u"11A"_s, u"0000011A "_s, u" 000011A"_s, u"0x00011A"_s, u"000000011A"_s, QString()})
    EXPECT_EQ(run(text), "Notes error 13 occurred: Type mismatch") << text.toStdString();
  EXPECT_EQ(stubborn->deletedWith, 0);
  EXPECT_EQ(engineCapi->openHandles(), 0);
}

TEST_F(LowLevelDelete, OfNoDatabaseObjectIsAFailureInWords) {
  EXPECT_EQ(deletion->DeleteNoteLowLevel(Object(), u"0000011A"_s),
            u"Notes error 91 occurred: "_s + standardErrorText(err::ObjectNotSet));
}

}  // namespace
}  // namespace lens
