#include "host/sound.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QtEndian>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kSpareMs = 1000, kDyingMs = 200;
constexpr qsizetype kHeadSize = 12, kChunkHead = 8, kSmallestFormat = 16, kBytesPerSecond = 8;
// Below this nothing can be heard; a length made of it would keep the program waiting for hours.
constexpr quint32 kFewestBytesPerSecond = 1000;
// Longer files are no signal at the end of a run.
constexpr qint64 kLargest = 64 << 20;

quint32 number(QByteArrayView bytes, qsizetype at) {
  return qFromLittleEndian<quint32>(bytes.data() + at);
}

QString findPlayer() {
  for (const QString& name : {u"paplay"_s, u"aplay"_s})
    if (const QString program = QStandardPaths::findExecutable(name); !program.isEmpty()) return program;
  return {};
}

std::optional<qint64> lengthOfFile(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || file.size() > kLargest || !file.open(QIODevice::ReadOnly)) return {};
  return soundLength(file.readAll());
}

}  // namespace

std::optional<qint64> soundLength(QByteArrayView file) {
  if (!file.startsWith("RIFF") || file.size() < kHeadSize || file.sliced(8, 4) != "WAVE") return {};
  quint32 bytesPerSecond = 0;
  for (qsizetype at = kHeadSize; at + kChunkHead <= file.size();) {
    const QByteArrayView name = file.sliced(at, 4);
    const qsizetype there = file.size() - at - kChunkHead;
    const qsizetype size = qMin<qsizetype>(number(file, at + 4), there);
    if (name == "fmt " && size >= kSmallestFormat)
      bytesPerSecond = number(file, at + kChunkHead + kBytesPerSecond);
    if (name == "data") {
      if (bytesPerSecond < kFewestBytesPerSecond) return {};
      return qint64(size) * 1000 / bytesPerSecond;
    }
    at += kChunkHead + size + size % 2;
  }
  return {};
}

void playSoundFile(const QString& path) {
  const std::optional<qint64> length = lengthOfFile(path);
  const QString player = findPlayer();
  if (!length || player.isEmpty()) return;
  auto* const process = new QProcess;
  process->setStandardOutputFile(QProcess::nullDevice());
  process->setStandardErrorFile(QProcess::nullDevice());
  process->start(player, {path});
  const auto hasEnded = [process](qint64 withinMs) {
    return process->waitForFinished(int(withinMs)) || process->state() == QProcess::NotRunning;
  };
  if (!hasEnded(*length + kSpareMs)) process->kill();
  if (hasEnded(kDyingMs)) {
    delete process;
    return;
  }
  // One that waits for a broken device may not even die at once: nobody waits for it any longer.
  QObject::connect(process, &QProcess::finished, process, &QObject::deleteLater);
}

}  // namespace lens
