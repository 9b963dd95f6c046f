#include "embedded/mime/mime_headers.h"

#include "embedded/mime/mime_decoding.h"

namespace lens::mime {
namespace {

constexpr qsizetype kMostHeaders = 1000;
constexpr qsizetype kLongestHeader = 64 * 1024;
constexpr qsizetype kLongestWord = 1000;  // far above what mail systems write

bool isFolded(QByteArrayView line) {
  return !line.isEmpty() && (line[0] == ' ' || line[0] == '\t');
}

// The length of the name before the colon, 0 when the line is no header.
qsizetype nameLength(QByteArrayView line) {
  const qsizetype colon = line.indexOf(':');
  if (colon <= 0 || isFolded(line)) return 0;
  const QByteArrayView name = line.first(colon).trimmed();
  for (const char c : name) {
    if (c <= ' ' || c > '~') return 0;
  }
  return name.size();
}

struct EncodedWord {
  QStringView charset;
  QByteArray bytes;
  qsizetype end = 0;  // behind the word
};

bool readEncodedWord(QStringView value, qsizetype at, EncodedWord& word) {
  if (!value.sliced(at).startsWith(u"=?")) return false;
  const qsizetype charsetEnd = value.indexOf(u'?', at + 2);
  if (charsetEnd < 0 || charsetEnd + 2 >= value.size() || value[charsetEnd + 2] != u'?') return false;
  const QStringView rest = value.sliced(charsetEnd + 3);
  const QStringView text = rest.first(qMax(rest.first(qMin(rest.size(), kLongestWord)).indexOf(u"?="), 0));
  if (!rest.sliced(text.size()).startsWith(u"?=")) return false;
  const QChar encoding = value[charsetEnd + 1].toUpper();
  if (encoding == u'B') {
    word.bytes = decodeBase64(text.toLatin1());
  } else if (encoding == u'Q') {
    word.bytes = decodeQuotedPrintable(text.toLatin1(), true);
  } else {
    return false;
  }
  word.charset = value.sliced(at + 2, charsetEnd - at - 2);
  const qsizetype language = word.charset.indexOf(u'*');
  if (language >= 0) word.charset = word.charset.first(language);
  word.end = charsetEnd + 3 + text.size() + 2;
  return true;
}

qsizetype skipBlanks(QStringView text, qsizetype at) {
  while (at < text.size() && text[at].isSpace()) ++at;
  return at;
}

// A quoted text or a word, which ends at a blank or semicolon; the place then is behind it.
QString takeParameterValue(QStringView value, qsizetype& at) {
  QString text;
  if (at < value.size() && value[at] == u'"') {
    for (++at; at < value.size() && value[at] != u'"'; ++at) {
      if (value[at] == u'\\' && at + 1 < value.size()) ++at;
      text.append(value[at]);
    }
    ++at;
    return text;
  }
  const qsizetype begin = at;
  while (at < value.size() && value[at] != u';' && !value[at].isSpace()) ++at;
  return value.sliced(begin, at - begin).toString();
}

}  // namespace

QByteArrayView LineReader::next() {
  const qsizetype begin = at_;
  const qsizetype feed = text_.indexOf('\n', begin);
  at_ = feed < 0 ? text_.size() : feed + 1;
  qsizetype end = feed < 0 ? text_.size() : feed;
  if (feed > begin && text_[feed - 1] == '\r') --end;
  return text_.sliced(begin, end - begin);
}

Head readHead(QByteArrayView entity) {
  QVector<QPair<QByteArrayView, QByteArray>> raw;
  LineReader reader(entity);
  Head head;
  bool known = false;  // the line before belongs to a header that is kept
  while (!reader.atEnd()) {
    const qsizetype begin = reader.position();
    const QByteArrayView line = reader.next();
    head.length = line.startsWith("--") ? begin : reader.position();
    if (line.isEmpty() || line.startsWith("--")) break;
    if (isFolded(line) && begin > 0) {
      if (known && raw.back().second.size() + line.size() <= kLongestHeader) raw.back().second.append(line);
      continue;
    }
    const qsizetype name = nameLength(line);
    if (name == 0 && begin == 0) return {};
    known = name > 0 && raw.size() < kMostHeaders;
    if (!known) continue;
    const QByteArrayView value = line.sliced(line.indexOf(':') + 1);
    raw.push_back({line.first(name), value.first(qMin(value.size(), kLongestHeader)).toByteArray()});
  }
  for (const auto& [name, value] : raw) {
    const QString text = decodeText(value, {}).trimmed();
    head.headers.push_back({QString::fromLatin1(name), decodeEncodedWords(text)});
  }
  return head;
}

QString decodeEncodedWords(QStringView value) {
  QString text;
  QByteArray pending;  // bytes of words side by side: a character may be spread over two
  QStringView charset;
  const auto flush = [&] {
    text.append(decodeText(pending, charset));
    pending.clear();
  };
  bool afterWord = false;
  for (qsizetype at = 0; at < value.size();) {
    const qsizetype next = afterWord ? skipBlanks(value, at) : at;
    EncodedWord word;
    if (next < value.size() && readEncodedWord(value, next, word)) {
      if (afterWord && word.charset.compare(charset, Qt::CaseInsensitive) != 0) flush();
      charset = word.charset;
      pending.append(word.bytes);
      at = word.end;
      afterWord = true;
      continue;
    }
    if (afterWord) flush();
    afterWord = false;
    text.append(value[at++]);
  }
  if (afterWord) flush();
  return text;
}

QString headerParameter(QStringView value, QStringView name) {
  qsizetype at = value.indexOf(u';');
  while (at >= 0 && at < value.size()) {
    const qsizetype begin = skipBlanks(value, at + 1);
    qsizetype end = begin;
    while (end < value.size() && value[end] != u'=' && value[end] != u';') ++end;
    if (end == value.size()) return {};
    at = end;
    if (value[end] == u';') continue;
    at = skipBlanks(value, end + 1);
    const QString text = takeParameterValue(value, at);
    if (value.sliced(begin, end - begin).trimmed().compare(name, Qt::CaseInsensitive) == 0) return text;
    while (at < value.size() && value[at] != u';') ++at;
  }
  return {};
}

QString headerValue(const QVector<QPair<QString, QString>>& headers, QStringView name) {
  for (const auto& [header, value] : headers) {
    if (name.compare(header, Qt::CaseInsensitive) == 0) return value;
  }
  return {};
}

QByteArray announcedBoundary(const QVector<QPair<QString, QString>>& headers) {
  const QString type = headerValue(headers, u"Content-Type");
  if (!type.startsWith(QLatin1String("multipart/"), Qt::CaseInsensitive)) return {};
  return headerParameter(type, u"boundary").toUtf8();
}

}  // namespace lens::mime
