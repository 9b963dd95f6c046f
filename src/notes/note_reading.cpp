#include "notes/note_reading.h"

#include "notes/literals.h"

namespace lens {

QByteArray networkPath(CApi& api, const QString& server, const QString& filePath) {
  QByteArray buffer(1024, ' ');
  api.OSPathNetConstruct(0, api.nativeName(server), api.nativeName(filePath), buffer);
  // Blanks and NULs of the fixed buffer stand around and behind the path.
  return buffer.trimmed().replace('\0', "").trimmed();
}

QByteArray networkPath(CApi& api, const NotesDatabase& database) {
  const QString server = database.server();
  return networkPath(api, server, database.filePath());
}

qint64 contentLength(quint16 itemType, quint32 valueLength) {
  constexpr quint16 kTextList = 0x501, kNoteRefs = 4;
  if (itemType == kTextList) return qint64(valueLength) - 6;
  if (itemType == kNoteRefs) return qint64(valueLength) - 2;
  return valueLength;
}

QString legibleText(QByteArrayView bytes, qint16 count) {
  QString text;
  for (qsizetype i = 0; i < count && i < bytes.size(); ++i) {
    const auto byte = quint8(bytes[i]);
    if (byte == 0) break;
    const bool control = byte < 32 && byte != 10 && byte != 13;
    text += byte > 125 || control ? QChar(u' ') : QChar(byte);
  }
  return text;
}

QString actionText(QByteArrayView value, qsizetype pointer, qint16 count) {
  const bool inside = pointer >= 0 && pointer < value.size();
  return inside ? legibleText(value.sliced(pointer + 1), count) : QString();
}

}  // namespace lens
