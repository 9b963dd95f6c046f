// Real databases of the platform in the client window: opened from wherever they lie, and only to be read.
#include <QStatusBar>

#include "client/client_fixture.h"
#include "embedded/nsf/made_samples.h"
#include "embedded/nsf/maker/nsf_maker.h"

namespace lens {
namespace {

class RealInClient : public Client {
 protected:
  RealInClient() {
    path = directory.path() + u"/far away.nsf"_s;
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(made::makeFile(made::sampleDatabase()).bytes);
  }
  void openFile() {
    choice->database = path;
    trigger("openFileAction");
  }
  QString status() { return part<QStatusBar>("statusBar").currentMessage(); }
  QString path;
};

TEST_F(RealInClient, OpensFromTheFileDialogAndSaysWhatItIs) {
  start();
  openFile();
  EXPECT_EQ(error(), QString());
  const auto* const place = workspace->client().database();
  ASSERT_TRUE(place);
  EXPECT_EQ(workspace->absolutePath(*place), path);
  const auto copy = workspace->database({}, path);
  const QString line = workspace->realDatabase(*copy)->line();
  EXPECT_TRUE(line.startsWith(u"read-only copy of far away.nsf, "_s)) << line.toStdString();
  EXPECT_TRUE(window->windowTitle().contains(line)) << window->windowTitle().toStdString();
  EXPECT_TRUE(status().contains(line)) << status().toStdString();
}

TEST_F(RealInClient, ShowsEveryDocumentOfEveryView) {
  start();
  openFile();
  auto& views = part<QListWidget>("viewList");
  int shown = 0;
  for (int view = 0; view < views.count(); ++view) {
    views.setCurrentRow(view);
    for (int row = 0; row < table().model()->rowCount(); ++row) {
      table().setCurrentIndex(table().model()->index(row, 0));
      trigger("openDocumentAction");
      EXPECT_EQ(error(), QString());
      if (page() != u"reader"_s) continue;
      ++shown;
      trigger("closeDocumentAction");
    }
  }
  EXPECT_GT(shown, 3);
}

TEST_F(RealInClient, SearchesWordsAfterAnIndexWasMade) {
  start();
  openFile();
  trigger("createIndexAction");
  EXPECT_EQ(error(), QString());
  EXPECT_FALSE(part<QAction>("createIndexAction").isEnabled());
  EXPECT_TRUE(part<QAction>("updateIndexAction").isEnabled());
  EXPECT_TRUE(window->windowTitle().contains(u"read-only copy of"_s));
}

TEST_F(RealInClient, GivingUpTheDialogOpensNothing) {
  start();
  openMail();
  trigger("openFileAction");
  EXPECT_EQ(choice->asked, 1);
  EXPECT_EQ(workspace->client().database()->path, u"mail.nsf"_s);
  EXPECT_FALSE(window->windowTitle().contains(u"read-only"_s));
}

TEST_F(RealInClient, AFileThatIsNoneIsTold) {
  start();
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write("no database at all");
  file.close();
  openFile();
  EXPECT_TRUE(error().contains(u"far away.nsf"_s)) << error().toStdString();
  EXPECT_FALSE(workspace->client().database());
}

}  // namespace
}  // namespace lens
