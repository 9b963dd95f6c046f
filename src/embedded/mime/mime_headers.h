// The head of a MIME entity: header lines, encoded words, parameters.
#pragma once

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QVector>

namespace lens::mime {

// Steps through text line by line; lines end with LF or CR LF, the last one with the text.
class LineReader {
 public:
  explicit LineReader(QByteArrayView text, qsizetype at = 0) : text_(text), at_(at) {}
  bool atEnd() const { return at_ >= text_.size(); }
  qsizetype position() const { return at_; }
  // The next line without its end.
  QByteArrayView next();

 private:
  QByteArrayView text_;
  qsizetype at_;
};

struct Head {
  QVector<QPair<QString, QString>> headers;
  qsizetype length = 0;  // up to the body, the blank line included
};
// Lines that are no header are passed over; text that begins with such a line has no head at all. A
// line that begins like a boundary ends the head without a blank line.
Head readHead(QByteArrayView entity);

QString decodeEncodedWords(QStringView value);

// A parameter of a structured header value, "" when it is missing.
QString headerParameter(QStringView value, QStringView name);

// First header of that name, "" when it is missing.
QString headerValue(const QVector<QPair<QString, QString>>& headers, QStringView name);

// The boundary that the headers announce; empty when they announce no multipart.
QByteArray announcedBoundary(const QVector<QPair<QString, QString>>& headers);

}  // namespace lens::mime
