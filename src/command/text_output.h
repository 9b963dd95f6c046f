// Texts for people. What a document holds may be written by anybody: characters that a terminal would take
// for orders, or that turn the direction of a line, are shown as a mark.
#pragma once

#include <QByteArray>
#include <QStringView>

namespace lens {

// As UTF-8 on one line: line ends and tabs become blanks.
void appendPrintable(QByteArray& line, QStringView text);
// The same from UTF-8; plain ASCII, which nearly all of it is, is copied as it lies.
void appendPrintableUtf8(QByteArray& line, QByteArrayView utf8);
// Filled with blanks up to the width, in characters, and two blanks behind it. A longer text stays whole.
void appendColumn(QByteArray& line, QStringView text, qsizetype width);

// Where a line of text goes on: its lines one below the other, those behind the first moved in.
void appendLines(QByteArray& out, QStringView text, qsizetype indent);

// 8 hexadecimal digits, as note IDs are shown.
void appendEightDigits(QByteArray& line, quint32 number);

// "1 note", "2 notes".
QString counted(qint64 count, const QString& one, const QString& many);

}  // namespace lens
