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

#include <QtGlobal>

namespace lens::formula {

namespace segment {
inline constexpr quint16 Main = 0, Variable = 1, Column = 2, Field = 3, Divider = 4, Columns = 5,
                         Environment = 6, Layout = 7, Expression = 8, Hidden = 9, FarFunctions = 10;
inline constexpr qsizetype kHead = 4;
}  // namespace segment

}  // namespace lens::formula
