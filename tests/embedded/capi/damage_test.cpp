#include <gtest/gtest.h>
#include <sqlite3.h>

#include "embedded/capi/embedded_capi.h"
#include "embedded/capi/status.h"
#include "embedded/model/support/test_workspace.h"

using namespace lens;
using namespace lens::testbed;
using namespace Qt::Literals::StringLiterals;

TEST(DamagedNote, IsRefusedWithAStatusThatHasAText) {
  TestWorkspace t;
  const NoteId id = t.add({{u"A"_s, textValue(u"x")}});
  const QByteArray sql = "UPDATE note SET items = x'00112233' WHERE id = " + QByteArray::number(id.value());
  ASSERT_EQ(sqlite3_exec(t.store->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
  EmbeddedCApi api(t.workspace);
  DbHandle db = 0;
  ASSERT_EQ(api.NSFDbOpen("mail.nsf", db), 0);
  NoteHandle note = 1;
  const Status status = api.NSFNoteOpen(db, qint32(id.value()), 0, note);
  EXPECT_NE(status, 0);
  EXPECT_EQ(note, 0u);
  EXPECT_FALSE(statusText(status).isEmpty());
}
