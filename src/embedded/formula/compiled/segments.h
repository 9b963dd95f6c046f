// The pieces of a compiled formula. Everything little-endian:
//
//   u16 total size, then segments: u16 type, u16 size of the segment, data. Types:
//     0 main expression: code            1 "name := ..."        5 names of a view's columns
//     2 column's expression, or DEFAULT  3 "FIELD name := ..."  6 "ENVIRONMENT name := ..."
//     4 in a view: columns before, selection behind             7 layout of the statement before, or a remark
//     8 other expressions: code          9 hidden formula       10 functions of code 0x100 and more
//   Names stand before their code: u16 length, LMBCS, filled up to an even length.
//   Layouts: compiled/layout.h. Code: compiled/code_reader.h. Names of codes: compiled/codes.h.
#pragma once

#include <QByteArray>
#include <vector>

#include "embedded/formula/tree.h"

namespace lens::formula {

namespace segment {
inline constexpr quint16 Main = 0, Variable = 1, Column = 2, Field = 3, Divider = 4, Columns = 5,
                         Environment = 6, Layout = 7, Expression = 8, Hidden = 9, FarFunctions = 10;
inline constexpr qsizetype kHead = 4;
// Of a formula and of a segment: an even number of 16 bits.
inline constexpr qsizetype kMostBytes = 0xFFFE;

// Whether a name stands before the code, and what the name's assignment is called.
bool hasName(quint16 type);
bool hasCode(quint16 type);
Node::Modifier modifierOf(quint16 type);
quint16 typeOf(Node::Modifier modifier);
}  // namespace segment

// Why bytes are no formula, and where: from the beginning of what was given to read.
struct Unreadable {
  const char* reason;
  qsizetype at = 0;
};

struct Segment {
  quint16 type = 0;
  QByteArrayView data;
};

// All segments of a formula with its size word; throws an Unreadable when they do not fill the bytes.
std::vector<Segment> readSegments(QByteArrayView bytes);
// Counted bytes at the beginning of a segment; what stands behind them is left in the data. Throws, too.
QByteArrayView takeCounted(QByteArrayView& data);

// The way back. The data must fit.
void appendCounted(QByteArray& data, QByteArrayView text);
void appendSegment(QByteArray& segments, quint16 type, QByteArrayView data);
// The whole formula; empty when it is too large.
QByteArray framed(QByteArrayView segments, bool usesFar);

}  // namespace lens::formula
