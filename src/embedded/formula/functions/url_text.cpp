#include "embedded/formula/functions/url_text.h"

#include <unicode/ucnv.h>

#include <QByteArray>
#include <algorithm>
#include <memory>

#include "embedded/format/hex_digits.h"
#include "embedded/formula/functions/text_units.h"
#include "notes/code_page.h"

namespace lens::formula {
namespace {

struct CloseConverter {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, CloseConverter>;

// A character set, opened once for all elements.
class CharacterSet {
 public:
  // Raises a Fault for a name that is none.
  explicit CharacterSet(QStringView name) {
    if (is(name, u"Domino") || is(name, u"UTF-8") || is(name, u"UTF8")) return;
    kind_ = Kind::Platform;
    if (is(name, u"Platform")) return;
    kind_ = Kind::Named;
    // Only names that cannot be taken for a path or an option reach ICU.
    const auto plain = [](QChar c) {
      return c.unicode() < 0x80 && (c.isLetterOrNumber() || c == u'-' || c == u'_' || c == u'.' || c == u':');
    };
    if (name.isEmpty() || name.size() > 60 || !std::all_of(name.begin(), name.end(), plain))
      throw Fault{fault::CannotCompute};
    UErrorCode status = U_ZERO_ERROR;
    converter_.reset(ucnv_open(name.toLatin1().constData(), &status));
    if (U_FAILURE(status)) throw Fault{fault::CannotCompute};
  }

  QByteArray encoded(QStringView text) const {
    if (kind_ == Kind::Domino) return text.toUtf8();
    if (kind_ == Kind::Platform) return toCodePage(text);
    QByteArray bytes(text.size() * 8 + 32, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    const int32_t size = ucnv_fromUChars(converter_.get(), bytes.data(), int32_t(bytes.size()), text.utf16(),
                                         int32_t(text.size()), &status);
    if (U_FAILURE(status)) throw Fault{fault::CannotCompute};
    bytes.truncate(size);
    return bytes;
  }

  QString decoded(const QByteArray& bytes) const {
    if (kind_ == Kind::Domino) return QString::fromUtf8(bytes);
    if (kind_ == Kind::Platform) return fromCodePage(bytes);
    QString text(bytes.size() * 2 + 16, Qt::Uninitialized);
    UErrorCode status = U_ZERO_ERROR;
    const int32_t size =
        ucnv_toUChars(converter_.get(), reinterpret_cast<UChar*>(text.data()), int32_t(text.size()),
                      bytes.constData(), int32_t(bytes.size()), &status);
    if (U_FAILURE(status)) throw Fault{fault::CannotCompute};
    text.truncate(size);
    return text;
  }

 private:
  enum class Kind { Domino, Platform, Named };
  static bool is(QStringView name, QStringView wanted) {
    return name.compare(wanted, Qt::CaseInsensitive) == 0;
  }
  Kind kind_ = Kind::Domino;
  Converter converter_;
};

// Letters, digits and the signs that have no meaning in an address.
bool staysPlain(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         (byte != '\0' && std::strchr("-_.!~*'()", byte));
}

Text escaped(const QByteArray& bytes) {
  qsizetype size = 0;
  for (const char byte : bytes) size += staysPlain(byte) ? 1 : 3;
  if (size > kMaxBytes) throw Fault{fault::TextTooLong};
  char16_t* out;
  Text text = Text::ofSize(size, out);
  for (const char byte : bytes) {
    if (staysPlain(byte)) {
      *out++ = char16_t(byte);
      continue;
    }
    *out++ = u'%';
    *out++ = char16_t(kHexDigits[quint8(byte) >> 4]);
    *out++ = char16_t(kHexDigits[quint8(byte) & 15]);
  }
  return text;
}

// The bytes of an ASCII stretch. A "%" that begins no escape stays as it is.
QByteArray unescaped(QStringView text) {
  QByteArray result;
  result.reserve(text.size());
  for (qsizetype at = 0; at < text.size(); ++at) {
    const bool room = text[at] == u'%' && at + 2 < text.size();
    const int high = room ? hexDigit(text[at + 1].unicode()) : -1;
    const int low = room ? hexDigit(text[at + 2].unicode()) : -1;
    if (high < 0 || low < 0) {
      result.append(char(text[at].unicode()));
      continue;
    }
    result.append(char(high * 16 + low));
    at += 2;
  }
  return result;
}

// What stands unescaped beyond ASCII is text already, whatever the character set.
QString decodedText(QStringView text, const CharacterSet& set) {
  QString result;
  for (qsizetype at = 0; at < text.size();) {
    qsizetype end = at;
    while (end < text.size() && text[end].unicode() < 0x80) ++end;
    if (end > at) result.append(set.decoded(unescaped(text.sliced(at, end - at))));
    for (at = end; at < text.size() && text[at].unicode() >= 0x80; ++at) result.append(text[at]);
  }
  return result;
}

}  // namespace

Value urlEncode(const Call& call) {
  const CharacterSet set(call[0].text());
  return mapViews(call, call[1], [&](QStringView text) { return escaped(set.encoded(text)); });
}

Value urlDecode(const Call& call) {
  const CharacterSet set(call[0].text());
  return mapViews(call, call[1], [&](QStringView text) { return Text(decodedText(text, set)); });
}

}  // namespace lens::formula
