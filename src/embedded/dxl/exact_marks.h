// Attributes of a namespace of our own beside those of DXL.
//
// An export carries them where DXL alone would lose something: a name with characters that XML cannot
// hold, flags without an attribute, a time without a text. They stand in addition to what DXL has for
// the place, and readers that do not know the namespace pass over them.
#pragma once

#include <QString>

namespace lens {

class DxlReader;

namespace exactmark {
inline constexpr QStringView kNamespace = u"urn:tessaly-lens:dxl";
inline constexpr QStringView kPrefix = u"lens";
// Of "database": the database has no icon note, and the import is to make none; whether it is a public
// address book.
inline constexpr QStringView kWhole = u"whole", kAddressBook = u"publicaddressbook";
// Of a note: UNID of its parent, "" for none, where "$REF" tells another.
inline constexpr QStringView kParent = u"parentunid";
// Of a note: its class with all marks in hexadecimal, where its element has no word for it.
inline constexpr QStringView kClass = u"class";
// Of a design element: where each item stands in the note, in the order in which they come.
inline constexpr QStringView kOrder = u"itemorder";
// Of "acl": what "noteinfo" tells of other notes: UNID, sequence, then in hexadecimal class and the times of
// sequence, creation, change, access and addition.
inline constexpr QStringView kHeader = u"noteinfo";
// Of "acl": its note has more than the element can hold and stands among the notes too, from which an import
// takes it.
inline constexpr QStringView kNoteFollows = u"notefollows";
// Of "item": flags in hexadecimal.
inline constexpr QStringView kFlags = u"itemflags";
// Of "rawitemdata": the value was stored with counts that lead outside.
inline constexpr QStringView kAsStored = u"asstored";
// Of "datetime": 16 hexadecimal digits, second word first.
inline constexpr QStringView kTime = u"timedate";
// Of "rawitemdata" and of "formula" in compiled form: the whole item value in base64, in which formulas stand
// as source that only we read. What the element says has them compiled.
inline constexpr QStringView kStored = u"stored";
// Of "formula" with source text: the compiled form that it was stored in, in base64.
inline constexpr QStringView kCompiled = u"compiled";
// Of "file": the whole item value in base64; its object ID is another after the import.
inline constexpr QStringView kValue = u"itemvalue";
}  // namespace exactmark

// The mark of the start tag at hand; false when it is not there.
bool readMark(const DxlReader& in, QStringView mark, QString& value);
// An attribute whose characters XML may not hold: "exact" + its name has them percent-encoded then.
QString exactAttribute(const DxlReader& in, QStringView name);
// Whether the attribute is there at all, in either form.
bool hasExactAttribute(const DxlReader& in, QStringView name);

QString exactMarkOf(QStringView attribute);
QString percentEncoded(const QString& text);

// How many UTF-16 units of the text make the XML character at the place; 0 when they make none.
qsizetype xmlUnits(QStringView text, qsizetype at);
// Whether XML can hold every character.
bool isXmlText(QStringView text);
// The text with U+FFFD for characters that XML cannot hold.
QString xmlText(QString text);

}  // namespace lens
