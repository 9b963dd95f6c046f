#include "host/sound.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QtEndian>

#ifdef Q_OS_UNIX
#include <signal.h>
#endif

namespace lens {
namespace {
using namespace Qt::StringLiterals;

QByteArray number32(quint32 value) {
  value = qToLittleEndian(value);
  return QByteArray(reinterpret_cast<const char*>(&value), 4);
}
QByteArray chunk(const QByteArray& name, const QByteArray& bytes) {
  return name + number32(quint32(bytes.size())) + bytes + QByteArray(bytes.size() % 2, '\0');
}
// One channel of 8 bits: as many bytes as samples.
QByteArray format(quint32 bytesPerSecond) {
  return chunk("fmt ", QByteArray("\1\0\1\0", 4) + number32(bytesPerSecond) + number32(bytesPerSecond) +
                           QByteArray("\1\0\10\0", 4));
}
QByteArray wave(const QByteArray& chunks) {
  return "RIFF" + number32(quint32(chunks.size() + 4)) + "WAVE" + chunks;
}
QByteArray sound(int milliseconds) {
  return wave(format(8000) + chunk("data", QByteArray(8 * milliseconds, '\x80')));
}

TEST(SoundLength, IsTheDataByItsRate) {
  EXPECT_EQ(soundLength(sound(250)), 250);
  EXPECT_EQ(soundLength(sound(0)), 0);
  EXPECT_EQ(soundLength(wave(chunk("LIST", "odd") + format(8000) + chunk("data", QByteArray(80, 'x')))), 10);
}

// A file that claims more than it holds is no longer than what it holds.
TEST(SoundLength, TrustsNoNumber) {
  EXPECT_EQ(soundLength(wave(format(8000) + "data\xFF\xFF\xFF\xFF" + QByteArray(800, 'x'))), 100);
  EXPECT_EQ(soundLength(wave(format(1) + chunk("data", QByteArray(800, 'x')))), std::nullopt);
  EXPECT_EQ(soundLength(wave(chunk("data", "x"))), std::nullopt) << "no format";
  EXPECT_EQ(soundLength(wave(format(8000))), std::nullopt) << "no data";
  EXPECT_EQ(soundLength(wave("fmt \xFF\xFF\xFF\xFF")), std::nullopt);
  EXPECT_EQ(soundLength("RIFF"), std::nullopt);
  EXPECT_EQ(soundLength({}), std::nullopt);
  EXPECT_EQ(soundLength("no sound at all, but text"), std::nullopt);
  const QByteArray whole = sound(3);
  for (qsizetype size = 0; size < whole.size(); ++size) soundLength(whole.first(size));
}

#ifdef Q_OS_LINUX
// A player on the search path that writes its number down and then does what the test says.
class Player {
 public:
  explicit Player(const QByteArray& script) : path_(qgetenv("PATH")) {
    QFile file(directory.filePath(u"paplay"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("#!/bin/sh\necho $$ >" + number().toUtf8() + "\n" + script + "\n");
    file.close();
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("PATH", directory.path().toUtf8() + ':' + path_);
  }
  ~Player() { qputenv("PATH", path_); }
  QString write(const QByteArray& bytes) {
    QFile file(directory.filePath(u"done.wav"_s));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
    return file.fileName();
  }
  // 0 when it was never started.
  int process() const {
    QFile file(number());
    return file.open(QIODevice::ReadOnly) ? file.readAll().trimmed().toInt() : 0;
  }

 private:
  QString number() const { return directory.filePath(u"number"_s); }
  QTemporaryDir directory;
  QByteArray path_;
};

// It would hang for an hour; the test itself would not end then.
TEST(PlayingASound, GivesAPlayerUpThatHangs) {
  Player player("trap '' TERM; exec sleep 3600");
  playSoundFile(player.write(sound(10)));
  ASSERT_GT(player.process(), 0);
  while (::kill(player.process(), 0) == 0) {
    QFile state(u"/proc/%1/stat"_s.arg(player.process()));
    if (state.open(QIODevice::ReadOnly) && state.readAll().contains(") Z ")) break;
    QThread::msleep(1);
  }
}

TEST(PlayingASound, WaitsForItsEnd) {
  Player player("sleep 0.2; echo >\"$1.end\"");
  const QString path = player.write(sound(3600));
  playSoundFile(path);
  EXPECT_TRUE(QFile::exists(path + u".end"_s));
}

TEST(PlayingASound, AsksNoPlayerForWhatIsNoSound) {
  Player player("exit 0");
  playSoundFile(player.write("no sound"));
  playSoundFile(u"/no/such/done.wav"_s);
  playSoundFile(u"/dev/zero"_s);
  EXPECT_EQ(player.process(), 0);
  playSoundFile(player.write(sound(10)));
  EXPECT_GT(player.process(), 0);
}
#endif

}  // namespace
}  // namespace lens
