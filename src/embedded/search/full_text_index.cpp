// Making the index of full text and keeping it up to date.
#include <QHash>
#include <QtEndian>
#include <algorithm>
#include <cmath>

#include "embedded/search/document_texts.h"
#include "embedded/search/full_text.h"
#include "embedded/search/full_text_tables.h"
#include "embedded/search/words.h"
#include "embedded/store/packed_note.h"

namespace lens {
namespace {

using fulltext::Tables;
using fulltext::ValueKind;

// The column of words: those of the fields without their numbers.
QString wordsOf(const QString& fields) {
  QString words;
  words.reserve(fields.size());
  for (QStringView word : QStringView(fields).split(u' ', Qt::SkipEmptyParts)) {
    if (word.front() == fulltext::kEverywhere) continue;
    if (word.front() == fulltext::kFieldMark) word = word.sliced(word.indexOf(fulltext::kFieldMark, 1) + 1);
    words += word;
    words += u' ';
  }
  return words;
}

// False when the bytes are not what was packed; a length from a foreign file may be any number.
bool unpack(QByteArrayView packed, QString& fields) {
  constexpr qsizetype kHead = 4, kDensest = 1100;  // zlib's densest packing, and a little
  if (packed.size() < kHead || qFromBigEndian<quint32>(packed.data()) > packed.size() * kDensest)
    return false;
  fields = QString::fromUtf8(qUncompress(reinterpret_cast<const uchar*>(packed.data()), packed.size()));
  return fields.startsWith(fulltext::kEverywhere);
}

class Index : FieldSink {
 public:
  explicit Index(Tables& tables) : tables_(tables) {}

  void add(const Note& note) {
    note_ = note.header.id;
    fields_.resize(0);
    fields_ += fulltext::kEverywhere;
    readDocument(note, *this);
    const QString words = wordsOf(fields_);
    Statement::Run(tables_.addWords, note_, words, fields_).step();
    const QByteArray packed = qCompress(fields_.toUtf8(), 1);
    Statement::Run(tables_.keep, note_, packed).step();
  }
  void remove(quint32 note) {
    QString fields;
    {
      Statement::Run row(tables_.kept, note);
      if (!row.step()) return;
      if (!unpack(row.blob(0), fields))
        throw RuntimeError(enginefault::Damaged,
                           QStringLiteral("%1: the full-text index is damaged at note %2")
                               .arg(tables_.connection.path(), QString::number(note, 16).toUpper()));
    }
    const QString words = wordsOf(fields);
    Statement::Run(tables_.removeWords, note, words, fields).step();
    Statement::Run(tables_.forget, note).step();
    Statement::Run(tables_.removeValues, note).step();
  }

 private:
  struct Field {
    qint64 number;
    QString prefix;
  };

  // Numbers of fields are given once and never change.
  const Field& field(const QString& name) {
    const auto known = known_.constFind(name);
    if (known != known_.constEnd()) return *known;
    const QString key = fulltext::fieldKey(name);
    qint64 number = tables_.fieldNumber(key);
    if (number == 0) {
      Statement::Run(tables_.addField, key).step();
      number = tables_.fieldNumber(key);
    }
    return *known_.insert(name, {number, fulltext::fieldPrefix(number)});
  }

  void text(const QString& name, QStringView text) override {
    const Field& of = field(name);
    forEachWord(text, [&](QStringView word) {
      fields_ += u' ';
      fields_ += of.prefix;
      fields_ += word;
    });
    fields_ += u' ';
    fields_ += fulltext::kEnd;
  }
  void number(const QString& name, double number) override {
    if (!std::isfinite(number)) return;
    text(name, QString::number(number, 'g', 15));
    value(name, ValueKind::Number, number);
  }
  void time(const QString& name, const TimeDate& time) override {
    const DateTime local = localOf(time);
    QString shown = local.date.isValid() ? local.date.toString(Qt::ISODate) : QString();
    if (local.time.isValid()) shown += local.time.toString(QStringLiteral(" HH:mm"));
    text(name, shown);
    if (const QDateTime instant = instantOf(time); instant.isValid())
      value(name, ValueKind::Instant, double(instant.toMSecsSinceEpoch()));
    else if (local.date.isValid())
      value(name, ValueKind::Day, double(local.date.toJulianDay()));
  }
  void value(const QString& name, ValueKind kind, double number) {
    Statement::Run(tables_.addValue, field(name).number, int(kind), number, note_).step();
  }

  Tables& tables_;
  QHash<QString, Field> known_;
  quint32 note_ = 0;
  QString fields_;
};

void build(Database& database, Tables& tables) {
  tables.create();
  Index index(tables);
  database.scanPacked(noteclass::Document, [&](const PackedNote& note) {
    if (!isProfile(note)) index.add(note.unpack());
    return true;
  });
  tables.setChange(database.changeSequence());
}

bool readIndexed(const Database& database, const NoteChange& change, Note& note) {
  try {
    return change.state == NoteState::Live && database.read(change.id, note) &&
           noteclass::base(note.header.noteClass) == noteclass::Document && !isProfile(note);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
    return false;
  }
}

void update(Database& database, Tables& tables, qint64 since) {
  Index index(tables);
  const QVector<NoteChange> changes = database.changesSince(since);
  for (const NoteChange& change : changes) {
    index.remove(change.id);
    Note note;
    if (readIndexed(database, change, note)) index.add(note);
  }
  tables.setChange(database.changeSequence());
}

}  // namespace

bool hasFullTextIndex(const Database& database) {
  return Tables(database.connection()).exist();
}

void createFullTextIndex(Database& database) {
  try {
    if (hasFullTextIndex(database)) return refreshFullTextIndex(database);
  } catch (const RuntimeError& error) {
    if (error.number() != enginefault::Damaged) throw;
  }
  Tables tables(database.connection());
  Database::Transaction transaction(database);
  build(database, tables);
  transaction.commit();
}

void refreshFullTextIndex(Database& database) {
  Tables tables(database.connection());
  if (!tables.exist() || tables.change() == database.changeSequence()) return;
  Database::Transaction transaction(database);
  // Asked again: another process may have been faster.
  const qint64 since = tables.change();
  if (!tables.exist()) return;
  if (since < 0 || since > database.changeSequence())
    build(database, tables);
  else
    update(database, tables, since);
  transaction.commit();
}

void dropFullTextIndex(Database& database) {
  Database::Transaction transaction(database);
  Tables(database.connection()).drop();
  transaction.commit();
}

}  // namespace lens
