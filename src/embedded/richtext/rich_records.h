// The bytes of single rich text records: header, length, fields.
#pragma once

#include <QVector>

#include "embedded/richtext/rich_element.h"

namespace lens::richrecord {

inline constexpr quint8 Paragraph = 129, ParagraphDefinition = 130, ParagraphReference = 131, Text = 133,
                        IndexedLink = 145, Link = 146, TableBegin = 163, TableCell = 164, TableEnd = 165,
                        HotspotBegin = 169, HotspotEnd = 170, NestedTableBegin = 207, NestedTableCell = 208,
                        NestedTableEnd = 209;

// A text record's data: a font, then the text. At most so many bytes; with the header its length stays even.
inline constexpr qsizetype kFontSize = 4;
inline constexpr qsizetype kLongestData = 0xFFFE - 4;

// Length of the record that the bytes begin with, header included; 0 when it is not there as a whole.
qsizetype wholeLength(QByteArrayView bytes);

// The word that names the type of a record: the kind, and FFh above it where the length is a word. Of all
// others the upper byte is 0.
quint16 typeWord(QByteArrayView record);
// Whether the word names the type of the record. Some writers leave the upper byte away, some write the
// record's second byte as it is.
bool isTypeOf(uint word, QByteArrayView record);

// Font and text of a text record; a view into it.
QByteArrayView textData(QByteArrayView record);

// Reads one whole record; whatever is not known or too short for its fields becomes Raw.
RichElement read(QByteArrayView record);

// Records from their data. Both raise 6 when the data does not fit the length word.
QByteArray byteRecord(quint8 kind, QByteArrayView data = {});
QByteArray wordRecord(quint8 kind, QByteArrayView data);

// The records of a text of any length, cut between characters where one record is full. Line ends of
// every kind become the stored one.
QVector<QByteArray> textRecords(const QString& text, const RichFont& font);

}  // namespace lens::richrecord
