// Sound files, played by a program of the desktop.
#pragma once

#include <QByteArrayView>
#include <QString>
#include <optional>

namespace lens {

// How long the bytes of a WAVE file sound, in milliseconds; nothing for any other bytes.
std::optional<qint64> soundLength(QByteArrayView file);

// Plays a file to its end. No player, no device, or what is no WAVE file means silence. A player that hangs
// is given up one second behind the end of the sound.
void playSoundFile(const QString& path);

}  // namespace lens
