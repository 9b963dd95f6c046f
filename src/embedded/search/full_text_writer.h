// Writing documents into an index of full text.
#pragma once

#include <QHash>

#include "embedded/search/document_texts.h"
#include "embedded/search/full_text_tables.h"
#include "embedded/store/database.h"

namespace lens::fulltext {

class Writer : FieldSink {
 public:
  // The tables must outlive this. Numbers of fields are kept: who makes the tables anew needs a new writer.
  explicit Writer(Tables& tables) : tables_(tables) {}

  // Puts the document as it is now in the place of what the index knows of it. Profiles, design notes and
  // what cannot be read are in no index. Raises Damaged when the index itself is.
  void bring(const Database& database, const NoteChange& change);

 private:
  struct Field {
    qint64 number;
    QString prefix;
  };
  void add(const Note& note);
  void remove(NoteId note);
  const Field& field(const QString& name);
  void text(const QString& name, QStringView text) override;
  void number(const QString& name, double number) override;
  void time(const QString& name, const TimeDate& time) override;
  void span(const QString& name, const TimeDate& from, const TimeDate& to) override;
  void value(const QString& name, ValueKind kind, double number);

  Tables& tables_;
  QHash<QString, Field> known_;
  NoteId note_;
  QString fields_;
};

// A time as it is compared: the instant, or the day of a date alone. False for what is neither.
bool readComparable(const TimeDate& time, ValueKind& kind, double& number);

}  // namespace lens::fulltext
