#include "embedded/format/unid.h"

#include <QRandomGenerator>
#include <QtEndian>

#include "embedded/format/timedate.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

int hexDigit(QChar digit) {
  const char16_t unit = digit.unicode();
  if (unit >= u'0' && unit <= u'9') return unit - u'0';
  if (unit >= u'A' && unit <= u'F') return unit - u'A' + 10;
  if (unit >= u'a' && unit <= u'f') return unit - u'a' + 10;
  return -1;
}

bool parseHalf(QStringView text, quint64& out) {
  out = 0;
  for (QChar digit : text) {
    const int value = hexDigit(digit);
    if (value < 0) return false;
    out = out << 4 | quint64(value);
  }
  return true;
}

}  // namespace

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
  if (text.size() != 32 || !parseHalf(text.first(16), unid.file_) || !parseHalf(text.last(16), unid.note_))
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
  static constexpr char16_t kDigits[] = u"0123456789ABCDEF";
  QString text(32, Qt::Uninitialized);
  for (int place = 0; place < 16; ++place) {
    text[place] = kDigits[file_ >> (60 - 4 * place) & 0xF];
    text[place + 16] = kDigits[note_ >> (60 - 4 * place) & 0xF];
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
