#include "embedded/mime/mime_decoding.h"

#include <unicode/ucnv.h>

#include <QStringDecoder>
#include <algorithm>
#include <limits>

#include "embedded/format/hex_digits.h"

namespace lens::mime {
namespace {

int base64Digit(char c) {
  if (c >= 'A' && c <= 'Z') return c - 'A';
  if (c >= 'a' && c <= 'z') return c - 'a' + 26;
  if (c >= '0' && c <= '9') return c - '0' + 52;
  if (c == '+') return 62;
  return c == '/' ? 63 : -1;
}

bool isBlank(char c) {
  return c == ' ' || c == '\t';
}

// Where the line that goes on at the place ends, when only blanks stand before its end; -1 otherwise.
qsizetype lineEndAfterBlanks(QByteArrayView text, qsizetype at) {
  while (at < text.size() && isBlank(text[at])) ++at;
  if (at + 1 < text.size() && text[at] == '\r' && text[at + 1] == '\n') return at;
  return at == text.size() || text[at] == '\n' ? at : -1;
}

qsizetype behindLineEnd(QByteArrayView text, qsizetype at) {
  if (at < text.size() && text[at] == '\r') ++at;
  return at < text.size() && text[at] == '\n' ? at + 1 : at;
}

// Blanks that a mail system left at line ends are no part of the text.
void dropBlanks(QByteArray& bytes, qsizetype from) {
  while (bytes.size() > from && isBlank(bytes.back())) bytes.chop(1);
}

// Names come from the message: only those that cannot be taken for a path or an option reach ICU.
bool isPlainName(QStringView name) {
  const auto allowed = [](QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'-' ||
           c == u'_' || c == u'.' || c == u':';
  };
  return !name.isEmpty() && name.size() <= 60 && std::all_of(name.begin(), name.end(), allowed);
}

bool decodeWithQt(QByteArrayView bytes, const QByteArray& charset, QString& text) {
  QStringDecoder decoder(charset.constData(), QStringConverter::Flag::Stateless);
  if (!decoder.isValid()) return false;
  text = decoder(bytes);
  return true;
}

bool decodeWithIcu(QByteArrayView bytes, const QByteArray& charset, QString& text) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* converter = ucnv_open(charset.constData(), &status);
  if (U_FAILURE(status)) return false;
  const qsizetype room = bytes.size() * 2 + 16;
  const bool fits = room <= std::numeric_limits<int32_t>::max();
  if (fits) {
    text.resize(room);
    const int32_t length = ucnv_toUChars(converter, reinterpret_cast<UChar*>(text.data()), int32_t(room),
                                         bytes.data(), int32_t(bytes.size()), &status);
    text.truncate(U_SUCCESS(status) ? qMin<qsizetype>(length, room) : 0);
  }
  ucnv_close(converter);
  return fits && U_SUCCESS(status);
}

}  // namespace

QByteArray decodeQuotedPrintable(QByteArrayView encoded, bool inHeader) {
  QByteArray bytes;
  bytes.reserve(encoded.size());
  qsizetype escaped = 0;  // blanks before it were written as escapes and stay
  for (qsizetype at = 0; at < encoded.size();) {
    const char c = encoded[at];
    if (c == '=') {
      const int high = at + 2 < encoded.size() ? hexDigit(char16_t(encoded[at + 1])) : -1;
      const int low = high < 0 ? -1 : hexDigit(char16_t(encoded[at + 2]));
      const qsizetype lineEnd = low < 0 ? lineEndAfterBlanks(encoded, at + 1) : -1;
      if (lineEnd >= 0) {
        at = behindLineEnd(encoded, lineEnd);
      } else {
        bytes.append(low < 0 ? '=' : char(high * 16 + low));
        at += low < 0 ? 1 : 3;
      }
      escaped = bytes.size();
      continue;
    }
    const bool endsLine = c == '\n' || (c == '\r' && at + 1 < encoded.size() && encoded[at + 1] == '\n');
    if (endsLine) dropBlanks(bytes, escaped);
    bytes.append(inHeader && c == '_' ? ' ' : c);
    if (endsLine || c == '\n') escaped = bytes.size();
    ++at;
  }
  return bytes;
}

QByteArray decodeBase64(QByteArrayView encoded) {
  QByteArray bytes;
  bytes.reserve(encoded.size() / 4 * 3 + 3);
  quint32 bits = 0;
  int count = 0;
  for (const char c : encoded) {
    const int digit = base64Digit(c);
    if (digit >= 0) {
      bits = (bits << 6 | quint32(digit)) & 0xFFFFFF;
      count += 6;
      if (count >= 8) {
        count -= 8;
        bytes.append(char(bits >> count));
      }
    } else if (c == '=') {
      // Padding ends a piece; another may follow that was encoded on its own.
      count = 0;
    }
  }
  return bytes;
}

QString decodeText(QByteArrayView bytes, QStringView charset) {
  const QStringView name = charset.trimmed();
  QString text;
  if (isPlainName(name)) {
    const QByteArray latin = name.toLatin1();
    if (decodeWithQt(bytes, latin, text) || decodeWithIcu(bytes, latin, text)) return text;
  }
  QStringDecoder utf8(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
  text = utf8(bytes);
  return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

}  // namespace lens::mime
