// MIME_PART values: from a message to its parts and back.
#include <QSet>

#include "embedded/mime/mime_entity.h"
#include "embedded/mime/mime_headers.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr quint32 kHasBoundary = 1, kHasHeaders = 2, kBodyInObject = 4;
constexpr quint8 kProlog = 1, kBody = 2, kEpilog = 3, kRetrieveInfo = 4;
constexpr qsizetype kLongestPart = 0xFFFF;

// Walks over a message and gathers its parts as pieces of it.
class Splitter {
 public:
  explicit Splitter(QByteArrayView message) : message_(message) {}

  QVector<QByteArray> split() {
    beginPart(0, 0, false);
    while (at_ < message_.size()) {
      mime::LineReader reader(message_, at_);
      const QByteArrayView line = reader.next();
      bool closes = false;
      if (isBoundary(line, closes)) {
        endPart(at_);
        beginPart(at_, reader.position(), closes);
      } else {
        at_ = reader.position();
      }
    }
    endPart(message_.size());
    return values_;
  }

 private:
  bool isBoundary(QByteArrayView line, bool& closes) const {
    if (!line.startsWith("--") || boundaries_.isEmpty()) return false;
    QByteArray marker = line.sliced(2).toByteArray();
    while (marker.endsWith(' ') || marker.endsWith('\t')) marker.chop(1);
    if (boundaries_.contains(marker)) return true;
    closes = marker.endsWith("--");
    return closes && boundaries_.contains(marker.chopped(2));
  }

  // The boundary line stands from one place to the other; a part behind a closing one has no head.
  void beginPart(qsizetype boundary, qsizetype head, bool closes) {
    boundary_ = boundary;
    head_ = head;
    body_ = head;
    kind_ = closes ? kEpilog : kBody;
    if (!closes) {
      const mime::Head read = mime::readHead(message_.sliced(head));
      const QByteArray announced = mime::announcedBoundary(read.headers);
      body_ = head + read.length;
      if (!announced.isEmpty()) {
        boundaries_.insert(announced);
        kind_ = kProlog;
      }
    }
    at_ = body_;
  }

  void endPart(qsizetype end) {
    if (end == boundary_) return;
    MimePart part;
    part.kind = kind_;
    qsizetype body = body_;
    const bool wholeLine = boundary_ == head_ || message_[head_ - 1] == '\n';
    if (wholeLine && body_ - boundary_ <= kLongestPart) {
      part.boundary = piece(boundary_, head_);
      part.headers = piece(head_, body_);
    } else {
      body = boundary_;
    }
    do {
      const qsizetype room = kLongestPart - part.boundary.size() - part.headers.size();
      const qsizetype next = qMin(body + room, end);
      part.body = piece(body, next);
      values_.push_back(mimePartValue(part));
      part = {};
      body = next;
    } while (body < end);
  }

  QByteArray piece(qsizetype begin, qsizetype end) const {
    return message_.sliced(begin, end - begin).toByteArray();
  }

  QByteArrayView message_;
  QVector<QByteArray> values_;
  QSet<QByteArray> boundaries_;
  qsizetype at_ = 0;
  qsizetype boundary_ = 0, head_ = 0, body_ = 0;  // where the pieces of the part begin
  quint8 kind_ = kBody;
};

// Other programs leave dashes and line ends away; the stream needs them.
void appendPart(QByteArray& message, const MimePart& part) {
  if (!part.boundary.isEmpty()) {
    const bool ownLine = part.boundary.startsWith('\r') || part.boundary.startsWith('\n');
    if (!ownLine && !message.isEmpty() && !message.endsWith('\n')) message.append("\r\n");
    if (!part.boundary.trimmed().startsWith("--")) message.append("--");
    message.append(part.boundary);
    if (!part.boundary.endsWith('\n')) message.append("\r\n");
  }
  message.append(part.headers);
  const bool blankLine = part.headers.isEmpty() || part.headers == "\n" || part.headers == "\r\n" ||
                         part.headers.endsWith("\n\n") || part.headers.endsWith("\n\r\n");
  const bool needed = !part.body.isEmpty() && !part.body.startsWith("--");
  if (needed && !blankLine) message.append(part.headers.endsWith('\n') ? "\r\n" : "\r\n\r\n");
  message.append(part.body);
}

}  // namespace

QByteArray mimePartValue(const MimePart& part) {
  const qsizetype count = part.boundary.size() + part.headers.size() + part.body.size();
  if (count > kLongestPart) {
    throw RuntimeError(err::Overflow, u"A MIME part cannot hold %1 bytes."_s.arg(count));
  }
  constexpr quint16 kVersion = 2;
  const quint32 flags = (part.flags & ~(kHasBoundary | kHasHeaders)) |
                        (part.boundary.isEmpty() ? 0 : kHasBoundary) |
                        (part.headers.isEmpty() ? 0 : kHasHeaders);
  QByteArray value;
  value.reserve(count + 22);
  appendU16(value, itemtype::MimePart);
  appendU16(value, kVersion);
  appendU32(value, flags);
  value.append(char(part.kind));
  value.append('\0');
  appendU16(value, quint16(count));
  appendU16(value, quint16(part.boundary.size()));
  appendU16(value, quint16(part.headers.size()));
  value.append(6, '\0');
  return value.append(part.boundary).append(part.headers).append(part.body);
}

bool readMimePart(QByteArrayView data, MimePart& part) {
  ByteReader reader(data);
  MimePart read;
  reader.skip(2);
  read.flags = reader.u32();
  read.kind = reader.u8();
  reader.skip(1);
  const qsizetype count = reader.u16();
  const qsizetype boundary = reader.u16();
  const qsizetype headers = reader.u16();
  reader.skip(6);
  if (reader.failed() || boundary + headers > count) return false;
  // The count of a part whose body lies elsewhere may include it.
  const qsizetype here = (read.flags & kBodyInObject) != 0 ? qMin(count, reader.left()) : count;
  if (!reader.has(here) || boundary + headers > here) return false;
  read.boundary = reader.take(boundary).toByteArray();
  read.headers = reader.take(headers).toByteArray();
  read.body = reader.take(here - boundary - headers).toByteArray();
  part = std::move(read);
  return true;
}

QVector<QByteArray> mimePartValues(QByteArrayView message) {
  return Splitter(message).split();
}

QByteArray mimeMessage(const Note& note) {
  QByteArray message;
  for (const Item& item : note.items) {
    MimePart part;
    if (item.value.size() < 2 || item.type() != itemtype::MimePart) continue;
    if (readMimePart(item.data(), part) && part.kind != kRetrieveInfo) appendPart(message, part);
  }
  return message;
}

}  // namespace lens
