// MIME messages as a tree of entities, parsed from a stream or from the MIME items of a note.
//
// All limits are there for messages made to harm: 32 levels, 10,000 entities, 1,000 header lines of
// 64 KB in an entity. What lies beyond stays text of the entity it stands in, or is no header.
#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>
#include <memory>

#include "embedded/format/note.h"

namespace lens {

class MimeEntity {
 public:
  // Parses headers and body; multiparts become children down to a bounded depth (deeper ones stay
  // text of their parent). Malformed input gives the best reading, never a failure.
  static std::shared_ptr<MimeEntity> parse(QByteArrayView message);

  // "multipart", "text", ...: the type without its subtype, lower case; "text" when it is missing.
  QString contentType() const;
  QString contentSubType() const;
  // A parameter of Content-Type ("charset", "boundary"), "" when it is missing.
  QString parameter(QStringView name) const;
  // The first header of that name without regard to case, unfolded and with encoded words decoded; ""
  // when it is missing.
  QString header(QStringView name) const;
  const QVector<QPair<QString, QString>>& headers() const { return headers_; }
  // The decoded body (quoted-printable, base64, 7bit, 8bit, binary) in the entity's character set;
  // bytes that are no text in that set become U+FFFD. Without a known character set the text is UTF-8
  // when it can be, else Latin-1. For a multipart it is the raw text of its body, parts included.
  QString contentAsText() const;
  QByteArray contentAsBytes() const;

  const QVector<std::shared_ptr<MimeEntity>>& children() const { return children_; }

 private:
  struct Parser;

  QVector<QPair<QString, QString>> headers_;
  QByteArray source_;    // the whole message, shared by all its entities
  QByteArrayView body_;  // lies in source_
  QVector<std::shared_ptr<MimeEntity>> children_;
};

// What an item of type MIME_PART holds. Boundary and headers are pieces of the stream as they stand
// there: dashes, line ends and the blank line behind the headers included.
struct MimePart {
  quint32 flags = 0;  // 1 boundary, 2 headers, 4 body in an object; 1 and 2 are set when written
  quint8 kind = 2;    // 1 prolog, 2 body, 3 epilog, 4 retrieve info, 5 message
  QByteArray boundary, headers, body;
};
// Type word included. Raises 6 when the three together exceed 65,535 bytes.
QByteArray mimePartValue(const MimePart& part);
// False when the value is cut short or its lengths contradict each other; the part is unchanged then.
bool readMimePart(QByteArrayView data, MimePart& part);

// Splits a whole message into MIME_PART values in order, one per part, a part of more than 64 KB in
// several; joining them gives the message back.
QVector<QByteArray> mimePartValues(QByteArrayView message);
// The message of all MIME_PART items of a note in order; empty when there are none. Unreadable ones
// are passed over.
QByteArray mimeMessage(const Note& note);

}  // namespace lens
