#include "command/text_output.h"

#include <QList>
#include <algorithm>

#include "notes/literals.h"

namespace lens {
namespace {

bool isPlain(QByteArrayView text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c < 0x7F; });
}

// Marks that turn the direction of what stands behind them.
bool turnsDirection(QChar c) {
  return (c >= u'\u202A' && c <= u'\u202E') || (c >= u'\u2066' && c <= u'\u2069');
}

QChar shown(QChar c) {
  if (c == u'\n' || c == u'\r' || c == u'\t' || c == u'\u2028' || c == u'\u2029') return u' ';
  const bool control = c < u' ' || (c >= u'\u007F' && c < u'\u00A0');
  return control || turnsDirection(c) ? QChar(QChar::ReplacementCharacter) : c;
}

}  // namespace

void appendPrintable(QByteArray& line, QStringView text) {
  QString clean = text.toString();
  clean.replace(u"\r\n"_s, u" "_s);
  for (QChar& c : clean) c = shown(c);
  line += clean.toUtf8();
}

void appendPrintableUtf8(QByteArray& line, QByteArrayView utf8) {
  if (isPlain(utf8))
    line.append(utf8.data(), utf8.size());
  else
    appendPrintable(line, QString::fromUtf8(utf8));
}

void appendColumn(QByteArray& line, QStringView text, qsizetype width) {
  appendPrintable(line, text);
  line.append(std::max<qsizetype>(0, width - text.size()) + 2, ' ');
}

void appendLines(QByteArray& out, QStringView text, qsizetype indent) {
  QString plain = text.toString();
  plain.replace(u"\r\n"_s, u"\n"_s);
  bool first = true;
  for (const QStringView part : QStringView(plain).split(u'\n')) {
    if (!first) out.append('\n').append(indent, ' ');
    first = false;
    appendPrintable(out, part);
  }
}

void appendEightDigits(QByteArray& line, quint32 number) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  char text[8];
  for (int place = 0; place < 8; ++place) text[place] = kDigits[number >> (28 - 4 * place) & 0xF];
  line.append(text, sizeof text);
}

QString counted(qint64 count, const QString& one, const QString& many) {
  return QString::number(count) + u' ' + (count == 1 ? one : many);
}

}  // namespace lens
