// What windows keep between starts.
#include "controls/kept_settings.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QScreen>
#include <QTemporaryDir>
#include <QTest>

namespace lens {
namespace {
using namespace Qt::StringLiterals;

class KeptSettingsTest : public testing::Test {
 protected:
  QString file() const { return directory.filePath(u"windows.ini"_s); }
  QTemporaryDir directory;
};

TEST_F(KeptSettingsTest, AreInTheFileAtOnce) {
  KeptSettings settings(file());
  EXPECT_FALSE(settings.value(u"a/b"_s).isValid());
  settings.set(u"a/b"_s, 5);
  EXPECT_EQ(KeptSettings(file()).value(u"a/b"_s).toInt(), 5);
  settings.set(u"a/b"_s, {});
  EXPECT_FALSE(KeptSettings(file()).value(u"a/b"_s).isValid());
}

TEST_F(KeptSettingsTest, WithoutAFileOrWithOneThatCannotBeUsedKeepNothingAndSayNothing) {
  KeptSettings none;
  none.set(u"a"_s, 5);
  EXPECT_FALSE(none.value(u"a"_s).isValid());
  QFile junk(file());
  ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
  junk.write(QByteArray(1000, '\xff') + "[client\n=\n\0x@ByteArray(");
  junk.close();
  EXPECT_FALSE(KeptSettings(file()).value(u"client/place"_s).isValid());
  KeptSettings nowhere(file() + u"/below/a/file.ini"_s);
  nowhere.set(u"a"_s, 5);
}

TEST_F(KeptSettingsTest, AWindowComesUpWhereItWas) {
  KeptSettings settings(file());
  {
    QWidget window;
    auto* place = new KeptPlace(window, settings, u"w/place"_s);
    EXPECT_FALSE(place->restore());
    window.setGeometry(40, 50, 300, 200);
    window.show();
    window.setGeometry(60, 70, 320, 240);
    window.close();
  }
  QWidget window;
  EXPECT_TRUE((new KeptPlace(window, settings, u"w/place"_s))->restore());
  EXPECT_EQ(window.geometry(), QRect(60, 70, 320, 240));
}

// The end of the process runs nothing of the window.
TEST_F(KeptSettingsTest, APlaceIsKeptSoonAfterTheUserCameToRest) {
  KeptSettings settings(file());
  QWidget window;
  new KeptPlace(window, settings, u"w/place"_s);
  window.show();
  window.resize(333, 222);
  ASSERT_TRUE(QTest::qWaitFor([&] { return settings.value(u"w/place"_s).isValid(); }));
  QWidget other;
  EXPECT_TRUE((new KeptPlace(other, settings, u"w/place"_s))->restore());
  EXPECT_EQ(other.size(), QSize(333, 222));
}

TEST_F(KeptSettingsTest, APlaceThatIsNoneOrOutsideTheScreenIsNotTaken) {
  KeptSettings settings(file());
  settings.set(u"w/place"_s, QByteArray("junk"));
  QWidget window;
  auto* place = new KeptPlace(window, settings, u"w/place"_s);
  EXPECT_FALSE(place->restore());
  {
    QWidget far;
    far.setGeometry(30'000, 30'000, 300, 200);
    settings.set(u"w/place"_s, far.saveGeometry());
  }
  place->restore();
  EXPECT_TRUE(window.screen()->availableGeometry().intersects(window.geometry()));
}

}  // namespace
}  // namespace lens
