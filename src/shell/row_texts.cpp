#include "shell/row_texts.h"

#include <algorithm>

#include "notes/runtime_error.h"
#include "shell/text_routines.h"

namespace lens {

QString fieldRow(const QString& name, qsizetype width, const QString& text) {
  return QString(name + kNameEnd).leftJustified(width) + text;
}

QString fieldName(const QString& row) {
  const qsizetype end = row.indexOf(kNameEnd);
  return end < 0 ? QString() : row.left(end);
}

QString requiredFieldName(const QString& row) {
  if (!row.contains(kNameEnd)) throw RuntimeError(err::InvalidCall);
  return fieldName(row);
}

QString namedNoteRow(const QString& name, const QString& noteId) {
  return name + u' ' + kIdMark + eightDigits(noteId);
}

QString sizeText(qint64 bytes) {
  if (bytes == kUnknownSize) return {};
  return QString::number(bytes) + u" bytes"_s;
}

QString fieldText(const QString& row) {
  const qsizetype end = row.indexOf(kNameEnd);
  return end < 0 ? QString() : trimBlanks(row.mid(end + kNameEnd.size()));
}

CollectionRow collectionRow(const QString& row) {
  const qsizetype mark = row.indexOf(kIdMark);
  if (mark < 0) return {QString(), row};
  // Rows are written with two blanks before the mark, so the name ends in one.
  const QString name = row.left(mark);
  const qsizetype alias = name.indexOf(u'|');
  return {trimBlanks(alias < 0 ? name : name.left(alias)), row.mid(mark + kIdMark.size())};
}

QString designTitle(const QString& row) {
  const qsizetype mark = row.indexOf(kIdMark);
  const QString title = mark > 0 ? trimBlanks(row.left(mark)) : row;
  return title.left(title.indexOf(u'|'));
}

QString listedNoteId(const QString& row) {
  const qsizetype mark = row.indexOf(kShortIdMark);
  return mark < 0 ? row : row.mid(mark + kShortIdMark.size());
}

bool isWholeNoteId(QStringView text) {
  return text.size() == 8 && std::all_of(text.begin(), text.end(), [](QChar c) {
           return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
         });
}

}  // namespace lens
