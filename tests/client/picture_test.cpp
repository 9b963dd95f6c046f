#include "client/client_fixture.h"

namespace lens {

// The window as a user sees it; CLIENT_PICTURE names a file to keep it in.
TEST_F(Client, FitsItsPanesIntoTheWindow) {
  for (const QString& subject :
       {u"Contract 2024-117, second draft"_s, u"Weekly report"_s, u"Travel request"_s,
        u"Price list of this quarter"_s, u"Pump station: delivery dates"_s})
    save(memo(subject));
  workspace->createDatabase({}, u"sales/orders.nsf"_s, {});
  Note view;
  view.header.noteClass = noteclass::View;
  view.add(u"$TITLE"_s, 0, textValue(u"Inbox"));
  save(view);
  start();
  openMail();
  table().selectRow(1);
  const QString file = qEnvironmentVariable("CLIENT_PICTURE");
  if (!file.isEmpty()) window->grab().save(file);
  EXPECT_GT(table().width(), 400);
  EXPECT_GT(part<QListWidget>("viewList").width(), 120);
  ASSERT_TRUE(window->openDocument(mail->notes().list(noteclass::Document).first().id));
  if (!file.isEmpty()) window->grab().save(file + u".reader.png"_s);
  EXPECT_GT(part<QTableView>("readerItems").height(), 100);
  EXPECT_GT(part<QPlainTextEdit>("readerContent").height(), 100);
}

}  // namespace lens
