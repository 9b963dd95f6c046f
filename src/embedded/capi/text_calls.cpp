// The functions of the C API that write texts: paths, times, sentences, other character sets.
#include "embedded/capi/call_support.h"
#include "embedded/capi/embedded_capi.h"
#include "embedded/format/lmbcs.h"
#include "notes/code_page.h"

namespace lens {
namespace {

constexpr qsizetype kLongestPath = 255;
constexpr quint16 kNulEnded = 0xFFFF;

namespace translation {
constexpr quint16 ToLmbcs = 0, FromLmbcs = 1, Upper = 3, Lower = 4, Unaccent = 5, LmbcsToUtf16 = 20,
                  LmbcsToUtf8 = 22, Utf16ToLmbcs = 23, Utf8ToLmbcs = 24;
}  // namespace translation

QByteArray utf16Bytes(QStringView text) {
  return QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

QString fromUtf16Bytes(const QByteArray& bytes, bool nulEnded) {
  QString text(bytes.size() / 2, Qt::Uninitialized);
  std::memcpy(text.data(), bytes.constData(), size_t(text.size()) * 2);
  const qsizetype end = nulEnded ? text.indexOf(QChar(0)) : -1;
  return end < 0 ? text : text.first(end);
}

// Base letters stay, marks on them go.
QString withoutAccents(const QString& text) {
  QString plain;
  for (const QChar c : text.normalized(QString::NormalizationForm_D))
    if (c.category() != QChar::Mark_NonSpacing) plain.append(c);
  return plain.normalized(QString::NormalizationForm_C);
}

// The bytes of as many whole characters as fit.
QByteArray fitting(QStringView text, qsizetype limit, QByteArray (*encode)(QStringView)) {
  const QByteArray whole = encode(text);
  if (whole.size() <= limit) return whole;
  qsizetype fits = 0, tooLong = text.size();
  while (tooLong - fits > 1) {
    const qsizetype middle = (fits + tooLong) / 2;
    (encode(text.first(middle)).size() <= limit ? fits : tooLong) = middle;
  }
  if (fits > 0 && text[fits - 1].isHighSurrogate()) --fits;
  return encode(text.first(fits));
}

}  // namespace

Status EmbeddedCApi::OSPathNetConstruct(int, const QByteArray& server, const QByteArray& file,
                                        QByteArray& buffer) {
  const QByteArray name = upToNul(server).trimmed();
  const QByteArray path = upToNul(file);
  // In UTF-8 a path of the same length takes more bytes.
  const bool marked = isMarkedName(name) || isMarkedName(path);
  const qsizetype longest = marked ? qMax(kLongestPath, buffer.size() - 1) : kLongestPath;
  put(name.isEmpty() ? path : name + "!!" + path, buffer, longest);
  if (buffer.size() > longest) buffer[std::min(longest, upToNul(buffer).size())] = '\0';
  return status::Ok;
}

Status EmbeddedCApi::ConvertTIMEDATEToText(const TimeDate& time, QByteArray& buffer, quint16 limit,
                                           quint16& length) {
  length = 0;
  const DateTime local = localOf(time);
  if (!local.date.isValid() && !local.time.isValid()) return status::BadTime;
  const Regional& regional = workspace_->regional();
  // Half of the regions write what the code page lacks; readers would find question marks.
  const QString written = regional.text(local);
  QByteArray text = toCodePage(written);
  if (fromCodePage(text) != written) text = toCodePage(regional.plainText(local));
  length = put(text, buffer, limit);
  return status::Ok;
}

quint16 EmbeddedCApi::OSTranslate(quint16 mode, const QByteArray& source, quint16 length, QByteArray& target,
                                  quint16 limit) {
  const bool nulEnded = length == kNulEnded;
  const QByteArray given = nulEnded ? source : source.first(std::min<qsizetype>(length, source.size()));
  const QByteArray bytes = nulEnded ? upToNul(source) : given;
  const auto write = [&](const QString& text, QByteArray (*encode)(QStringView)) {
    return put(fitting(text, limit, encode), target, limit);
  };
  const auto writeStored = [&](const QString& text) {
    const quint16 written = write(text, toLmbcs);
    translated_ = upToNul(target.first(std::min<qsizetype>(written, target.size())));
    return written;
  };
  const auto toUtf8 = [](QStringView text) { return text.toUtf8(); };
  switch (mode) {
    case translation::ToLmbcs:
      return writeStored(fromCodePage(bytes));
    case translation::FromLmbcs:
      return write(fromLmbcs(bytes), toCodePage);
    case translation::Upper:
      return writeStored(fromLmbcs(bytes).toUpper());
    case translation::Lower:
      return writeStored(fromLmbcs(bytes).toLower());
    case translation::Unaccent:
      return writeStored(withoutAccents(fromLmbcs(bytes)));
    case translation::LmbcsToUtf8:
      return write(fromLmbcs(bytes), toUtf8);
    case translation::Utf8ToLmbcs:
      return writeStored(QString::fromUtf8(bytes));
    case translation::Utf16ToLmbcs:
      return writeStored(fromUtf16Bytes(given, nulEnded));
    case translation::LmbcsToUtf16: {
      const quint16 written = write(fromLmbcs(bytes), utf16Bytes);
      // The second half of the character that ends the text.
      if (written + 1 < limit && written + 1 < target.size()) target[written + 1] = '\0';
      return written;
    }
    default:
      return 0;
  }
}

quint16 EmbeddedCApi::OSLoadString(int, Status status, QByteArray& buffer, quint16 limit) {
  const quint16 length = put(toLmbcs(statusText(status)), buffer, limit - 1);
  // Callers read up to the NUL, whatever their buffer held before.
  if (length < limit && length < buffer.size()) buffer[length] = '\0';
  return length;
}

}  // namespace lens
