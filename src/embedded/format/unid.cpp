#include "embedded/format/unid.h"

#include <QRandomGenerator>
#include <QtEndian>

#include "embedded/format/hex_digits.h"
#include "embedded/format/timedate.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

bool parseHexId(QStringView text, quint64& out) {
  quint64 number = 0;
  if (text.size() != 16) return false;
  for (const QChar digit : text) {
    const int value = hexDigit(digit.unicode());
    if (value < 0) return false;
    number = number << 4 | quint64(value);
  }
  out = number;
  return true;
}

// A half is two little-endian words of which the second is printed first: one little-endian number.
Unid Unid::fromBytes(QByteArrayView bytes) {
  Unid unid;
  if (bytes.size() != 16) return unid;
  unid.file_ = qFromLittleEndian<quint64>(bytes.data());
  unid.note_ = qFromLittleEndian<quint64>(bytes.data() + 8);
  return unid;
}

bool Unid::parse(QStringView text, Unid& out) {
  Unid unid;
  if (text.size() != 32 || !parseHexId(text.first(16), unid.file_) || !parseHexId(text.last(16), unid.note_))
    return false;
  out = unid;
  return true;
}

Unid Unid::fromText(QStringView text) {
  Unid unid;
  if (!parse(text, unid)) throw RuntimeError(err::InvalidCall, u"\"%1\" is no UNID"_s.arg(text.left(64)));
  return unid;
}

Unid Unid::create() {
  const TimeDate now = timeDateNow();
  Unid unid;
  do unid.file_ = QRandomGenerator::global()->generate64();
  while (unid.file_ == 0);
  unid.note_ = packTime(now);
  return unid;
}

QString Unid::text() const {
  QString text(32, Qt::Uninitialized);
  for (int place = 0; place < 16; ++place) {
    text[place] = QLatin1Char(kHexDigits[file_ >> (60 - 4 * place) & 0xF]);
    text[place + 16] = QLatin1Char(kHexDigits[note_ >> (60 - 4 * place) & 0xF]);
  }
  return text;
}

QByteArray Unid::bytes() const {
  QByteArray bytes(16, Qt::Uninitialized);
  qToLittleEndian(file_, bytes.data());
  qToLittleEndian(note_, bytes.data() + 8);
  return bytes;
}

}  // namespace lens
