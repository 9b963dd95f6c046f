// The remote console as the C API hands it out.
#include <gtest/gtest.h>

#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/format/lmbcs.h"
#include "embedded/model/support/test_workspace.h"
#include "notes/code_page.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

namespace {

struct RemoteConsole : ::testing::Test {
  RemoteConsole() : api(t.workspace) {
    t.workspace->addServer(u"CN=Hub1/O=Acme"_s);
    t.workspace->createDatabase(u"Hub1/Acme"_s, u"größe.nsf"_s, {u"Ω"_s, {}, {}, {}, {}, false});
    api.NotesInitExtended(0, "");
  }
  QByteArray reply(const QByteArray& server, const QByteArray& command) {
    MemHandle handle = 77;
    status = api.NSFRemoteConsole(server, command, handle);
    EXPECT_EQ(status == 0, handle != 0);
    if (handle == 0) return {};
    const QByteArray text(api.OSLockObject(handle));  // up to its NUL
    api.OSUnlockObject(handle);
    EXPECT_EQ(api.OSMemFree(handle), 0);
    return text;
  }
  TestWorkspace t;
  EmbeddedCApi api;
  Status status = 0;
};

}  // namespace

TEST_F(RemoteConsole, RepliesInTextBehindOneBlank) {
  const QByteArray help = reply("CN=Hub1/O=Acme", "help");
  EXPECT_EQ(status, 0);
  EXPECT_TRUE(help.startsWith(" Commands"));
  EXPECT_TRUE(help.contains("\r\n"));
  EXPECT_EQ(api.openHandles(), 0);
}

TEST_F(RemoteConsole, KnowsServersByEitherNameInAnyCaseUpToTheNul) {
  const QByteArray help = reply("CN=Hub1/O=Acme", "help");
  EXPECT_EQ(reply("hub1/acme", "help"), help);
  EXPECT_EQ(reply(QByteArray("Hub1/Acme\0junk", 14), QByteArray("help\0quit", 9)), help);
}

TEST_F(RemoteConsole, AServerThatIsNotThereDoesNotAnswer) {
  for (const QByteArray& server :
       {QByteArray("Hub9/Acme"), QByteArray("Local"), QByteArray(), QByteArray(" ")}) {
    EXPECT_EQ(reply(server, "help"), QByteArray());
    EXPECT_EQ(status, 0x0803);
    EXPECT_FALSE(statusText(status).isEmpty());
  }
}

TEST_F(RemoteConsole, AnEmptyCommandHasNoReply) {
  EXPECT_EQ(reply("Hub1/Acme", "  "), QByteArray());
  EXPECT_EQ(status, 0x09B3);
}

TEST_F(RemoteConsole, ReadsTheCodePageAndWritesTheStoredCharacterSet) {
  EXPECT_TRUE(reply("Hub1/Acme", toCodePage(u"compact größe.nsf")).contains("bytes recovered"));
  const QByteArray directory = reply("Hub1/Acme", "show directory");
  EXPECT_TRUE(directory.contains(toLmbcs(u"größe.nsf")));
  EXPECT_TRUE(directory.contains(toLmbcs(u"Ω")));
}

TEST_F(RemoteConsole, BringsAFullTextIndexUpToDate) {
  EXPECT_EQ(reply("Hub1/Acme", toCodePage(u"updall größe -x")),
            toLmbcs(u" Updall: größe.nsf: the full-text index was made anew"));
}
