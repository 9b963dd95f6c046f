#include "embedded/search/full_text_writer.h"

#include <QtEndian>
#include <algorithm>
#include <cmath>

#include "embedded/search/words.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens::fulltext {
namespace {

// The column of words: those of the fields without their numbers.
QString wordsOf(const QString& fields) {
  QString words;
  words.reserve(fields.size());
  for (QStringView word : QStringView(fields).split(u' ', Qt::SkipEmptyParts)) {
    if (word.front() == kEverywhere) continue;
    if (word.front() == kFieldMark) word = word.sliced(word.indexOf(kFieldMark, 1) + 1);
    words += word;
    words += u' ';
  }
  return words;
}

// False when the bytes are not what was packed; a length from a foreign file may be any number.
bool unpack(QByteArrayView packed, QString& fields) {
  constexpr qint64 kHead = 4, kDensest = 1100;  // zlib's densest packing, and a little
  if (packed.size() < kHead || qFromBigEndian<quint32>(packed.data()) > packed.size() * kDensest)
    return false;
  fields = QString::fromUtf8(qUncompress(reinterpret_cast<const uchar*>(packed.data()), packed.size()));
  return fields.startsWith(kEverywhere);
}

bool readIndexed(const Database& database, const NoteChange& change, Note& note) {
  try {
    return change.state == NoteState::Live && database.notes().read(change.id, note) &&
           noteclass::base(note.header.noteClass) == noteclass::Document && !isProfile(note);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    return false;
  }
}

}  // namespace

bool readComparable(const TimeDate& time, ValueKind& kind, double& number) {
  if (const QDateTime instant = instantOf(time); instant.isValid()) {
    kind = ValueKind::Instant;
    number = double(instant.toMSecsSinceEpoch());
    return true;
  }
  const DateTime local = localOf(time);
  kind = ValueKind::Day;
  number = double(local.date.toJulianDay());
  return local.date.isValid();
}

void Writer::bring(const Database& database, const NoteChange& change) {
  remove(change.id);
  Note note;
  if (readIndexed(database, change, note)) add(note);
}

void Writer::add(const Note& note) {
  note_ = note.header.id;
  fields_.resize(0);
  fields_ += kEverywhere;
  readDocument(note, *this);
  const QString words = wordsOf(fields_);
  Statement::Run(tables_.addWords, note_, words, fields_).step();
  const QByteArray packed = qCompress(fields_.toUtf8(), 1);
  Statement::Run(tables_.keep, note_, packed).step();
}

void Writer::remove(NoteId note) {
  QString fields;
  {
    Statement::Run row(tables_.kept, note);
    if (!row.step()) return;
    if (!unpack(row.blob(0), fields))
      throw RuntimeError(enginefault::Damaged, u"%1: the full-text index is damaged at note %2"_s.arg(
                                                   tables_.connection.path(), note.hexText()));
  }
  const QString words = wordsOf(fields);
  Statement::Run(tables_.removeWords, note, words, fields).step();
  Statement::Run(tables_.forget, note).step();
  Statement::Run(tables_.removeValues, note).step();
  Statement::Run(tables_.removeSpans, note).step();
}

// Numbers of fields are given once and never change.
const Writer::Field& Writer::field(const QString& name) {
  const auto known = known_.constFind(name);
  if (known != known_.constEnd()) return *known;
  const QString key = caseKey(name);
  qint64 number = tables_.fieldNumber(key);
  if (number == 0) {
    Statement::Run(tables_.addField, key).step();
    number = tables_.fieldNumber(key);
  }
  return *known_.insert(name, {number, fieldPrefix(number)});
}

void Writer::text(const QString& name, QStringView text) {
  const Field& of = field(name);
  forEachWord(text, [&](QStringView word) {
    fields_ += u' ';
    fields_ += of.prefix;
    fields_ += word;
  });
  fields_ += u' ';
  fields_ += kEnd;
}

void Writer::number(const QString& name, double number) {
  if (!std::isfinite(number)) return;
  text(name, QString::number(number, 'g', 15));
  value(name, ValueKind::Number, number);
}

void Writer::time(const QString& name, const TimeDate& time) {
  const DateTime local = localOf(time);
  QString shown = local.date.isValid() ? local.date.toString(Qt::ISODate) : QString();
  if (local.time.isValid()) shown += local.time.toString(u" HH:mm"_s);
  text(name, shown);
  ValueKind kind = {};
  double number = 0;
  if (readComparable(time, kind, number)) value(name, kind, number);
}

// From a date to an instant reaches nothing that could be compared; its ends count all the same.
void Writer::span(const QString& name, const TimeDate& from, const TimeDate& to) {
  ValueKind kind = {}, kindOfEnd = {};
  double first = 0, last = 0;
  if (!readComparable(from, kind, first) || !readComparable(to, kindOfEnd, last) || kind != kindOfEnd) return;
  const auto [low, high] = std::minmax(first, last);
  Statement::Run(tables_.addSpan, field(name).number, int(kind), low, high, note_).step();
}

void Writer::value(const QString& name, ValueKind kind, double number) {
  Statement::Run(tables_.addValue, field(name).number, int(kind), number, note_).step();
}

}  // namespace lens::fulltext
