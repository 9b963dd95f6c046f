#include "command/document_lines.h"

#include <QtEndian>

#include "command/text_output.h"
#include "embedded/format/lmbcs.h"
#include "notes/literals.h"
#include "records/json_output.h"
#include "records/shown_note.h"

namespace lens {
namespace {

constexpr qsizetype kFormWidth = 20;
constexpr qsizetype kTypeWord = 2;
const QString kForm = u"Form"_s, kSubject = u"Subject"_s;

// As Unid::text() has it, which would take longer than the rest of the line.
QByteArray unidDigits(const Unid& unid) {
  const QByteArray bytes = unid.bytes();
  QByteArray digits;
  digits.reserve(2 * bytes.size());
  for (const qsizetype half : {0, 8}) {
    const auto number = qFromLittleEndian<quint64>(bytes.constData() + half);
    appendEightDigits(digits, quint32(number >> 32));
    appendEightDigits(digits, quint32(number));
  }
  return digits;
}

}  // namespace

DocumentLines::DocumentLines(Output& out, bool json, const Regional& regional)
    : out_(out), json_(json), regional_(regional), wanted_({ItemName(kForm), ItemName(kSubject)}) {}

void DocumentLines::add(const NotesDocument& document) {
  write(document.noteId().toUInt(nullptr, 16), json_ ? document.universalId().toLatin1() : QByteArray(),
        firstText(document, kForm, regional_).toUtf8(), firstText(document, kSubject, regional_).toUtf8());
}

void DocumentLines::add(const PackedNote& note) {
  wanted_.find(note.items, 0, places_);
  QByteArray formRoom, subjectRoom;
  write(note.header.id.value(), json_ ? unidDigits(note.header.unid) : QByteArray(),
        textAt(note, places_[0], formRoom), textAt(note, places_[1], subjectRoom));
}

// A plain text is ASCII in stored form and in UTF-8 alike.
QByteArrayView DocumentLines::textAt(const PackedNote& note, qint32 place, QByteArray& room) const {
  if (place < 0) return {};
  const QByteArrayView value = note.items[place].value;
  const QByteArrayView data = value.sliced(kTypeWord);
  if (ByteReader(value).u16() == itemtype::Text && isPlainLmbcs(data)) return data;
  const Value values = itemValues(note.items[place].toItem());
  if (values.isArray() && values.upperBound() >= 0) room = textOf(values.at(0), regional_).toUtf8();
  return room;
}

void DocumentLines::write(quint32 noteId, const QByteArray& unid, QByteArrayView form,
                          QByteArrayView subject) {
  line_.resize(0);
  if (json_) {
    line_ += "{\"noteId\":\"";
    appendEightDigits(line_, noteId);
    line_ += "\",\"unid\":\"";
    line_ += unid;
    line_ += "\",\"form\":";
    appendJsonUtf8(line_, form);
    line_ += ",\"subject\":";
    appendJsonUtf8(line_, subject);
    line_ += '}';
  } else {
    appendEightDigits(line_, noteId);
    line_ += "  ";
    const qsizetype before = line_.size();
    appendPrintableUtf8(line_, form);
    line_.append(qMax<qsizetype>(0, kFormWidth - (line_.size() - before)) + 2, ' ');
    appendPrintableUtf8(line_, subject);
  }
  out_.line(line_);
}

}  // namespace lens
