#include "embedded/mime/mime_entity.h"

#include "embedded/mime/mime_decoding.h"
#include "embedded/mime/mime_headers.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kMostLevels = 32;
constexpr int kMostEntities = 10000;

// What stands between the boundary lines of a body, without the line ends that belong to them. The
// text before the first and behind the closing line is left out; a missing closing line is the end.
QVector<QByteArrayView> partsOf(QByteArrayView body, const QByteArray& boundary) {
  QVector<QByteArrayView> parts;
  const QByteArray opening = "--" + boundary;
  const QByteArray closing = opening + "--";
  mime::LineReader reader(body);
  qsizetype begin = -1;
  qsizetype end = 0;  // of the line before
  while (!reader.atEnd()) {
    const qsizetype lineBegin = reader.position();
    const QByteArrayView line = reader.next();
    if (line.startsWith(opening)) {
      // Blanks may follow the boundary; any other text makes it a line of the part.
      QByteArrayView marker = line;
      while (marker.size() > opening.size() && (marker.back() == ' ' || marker.back() == '\t'))
        marker.chop(1);
      const bool closes = marker == closing;
      if (closes || marker == opening) {
        if (begin >= 0) parts.push_back(body.sliced(begin, qMax(end - begin, qsizetype(0))));
        begin = reader.position();
        if (closes || parts.size() >= kMostEntities) return parts;
      }
    }
    end = lineBegin + line.size();
  }
  // A message cut right behind a boundary has no part there.
  if (begin >= 0 && begin < body.size()) parts.push_back(body.sliced(begin));
  return parts;
}

}  // namespace

struct MimeEntity::Parser {
  QByteArray source;
  int left = kMostEntities;

  std::shared_ptr<MimeEntity> parse(QByteArrayView text, int level) {
    --left;
    auto entity = std::make_shared<MimeEntity>();
    mime::Head head = mime::readHead(text);
    entity->source_ = source;
    entity->body_ = text.sliced(head.length);
    entity->headers_ = std::move(head.headers);
    const QByteArray boundary = mime::announcedBoundary(entity->headers_);
    if (boundary.isEmpty() || level >= kMostLevels) return entity;
    for (const QByteArrayView part : partsOf(entity->body_, boundary)) {
      if (left <= 0) break;
      entity->children_.push_back(parse(part, level + 1));
    }
    return entity;
  }
};

std::shared_ptr<MimeEntity> MimeEntity::parse(QByteArrayView message) {
  Parser parser{message.toByteArray()};
  return parser.parse(parser.source, 1);
}

QString MimeEntity::contentType() const {
  const QString value = header(u"Content-Type");
  const QString type = value.section(u';', 0, 0).section(u'/', 0, 0).trimmed().toLower();
  return type.isEmpty() ? u"text"_s : type;
}

QString MimeEntity::contentSubType() const {
  const QString value = header(u"Content-Type");
  const QString type = value.section(u';', 0, 0).section(u'/', 1).trimmed().toLower();
  return type.isEmpty() && contentType() == QLatin1String("text") ? u"plain"_s : type;
}

QString MimeEntity::parameter(QStringView name) const {
  return mime::headerParameter(header(u"Content-Type"), name);
}

QString MimeEntity::header(QStringView name) const {
  return mime::headerValue(headers_, name);
}

QByteArray MimeEntity::contentAsBytes() const {
  // A multipart is never encoded as a whole, whatever its head says.
  if (contentType() == QLatin1String("multipart")) return body_.toByteArray();
  const QString encoding = header(u"Content-Transfer-Encoding").toLower();
  if (encoding == QLatin1String("quoted-printable")) return mime::decodeQuotedPrintable(body_);
  if (encoding == QLatin1String("base64")) return mime::decodeBase64(body_);
  return body_.toByteArray();
}

QString MimeEntity::contentAsText() const {
  return mime::decodeText(contentAsBytes(), parameter(u"charset"));
}

}  // namespace lens
