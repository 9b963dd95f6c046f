// Base64 that arrives in pieces. White space is passed over; anything else that is no base64 is a
// fault, so that a damaged attachment is noticed and not quietly shortened.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

namespace lens {

class Base64Decoder {
 public:
  // Decodes a piece onto bytes(). False at a character that does not belong; offender() is it then.
  bool feed(QStringView text);
  // Whether the text so far ends where base64 may end.
  bool complete() const { return count_ == 0; }
  const QByteArray& bytes() const { return bytes_; }
  // Forgets the bytes, keeps the state between two pieces.
  void clear() { bytes_.resize(0); }
  QChar offender() const { return offender_; }

 private:
  QByteArray bytes_;
  quint32 bits_ = 0;
  int count_ = 0;    // characters of the group at hand, padding included
  int padding_ = 0;  // "=" characters seen; nothing may follow a padded group
  QChar offender_;
};

}  // namespace lens
