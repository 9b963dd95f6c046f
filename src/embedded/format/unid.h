// The universal ID of a note: the same in every replica.
#pragma once

#include <QByteArray>
#include <QString>

namespace lens {

// 16 bytes; written as 32 hexadecimal digits.
class Unid {
 public:
  Unid() = default;
  static Unid fromBytes(QByteArrayView bytes);     // exactly 16
  static bool parse(QStringView text, Unid& out);  // exactly 32 hexadecimal digits
  static Unid fromText(QStringView text);          // the same; anything else raises 5
  // A new one: random file half, creation time half.
  static Unid create();
  QString text() const;
  QByteArray bytes() const;
  bool isNull() const { return file_ == 0 && note_ == 0; }
  bool operator==(const Unid&) const = default;

 private:
  quint64 file_ = 0;  // as printed: first 16 digits, then last 16
  quint64 note_ = 0;
};

// A replica ID or a half of a UNID: exactly 16 hexadecimal digits, the high end first.
bool parseHexId(QStringView text, quint64& out);

}  // namespace lens
