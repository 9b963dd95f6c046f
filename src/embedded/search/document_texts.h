// What a document says, field by field: what the full-text index keeps of it.
#pragma once

#include "embedded/format/note.h"

namespace lens {

class FieldSink {
 public:
  virtual ~FieldSink() = default;
  // Calls of one item follow each other; of a list one call for each entry.
  virtual void text(const QString& field, QStringView text) = 0;
  virtual void number(const QString& field, double number) = 0;
  virtual void time(const QString& field, const TimeDate& time) = 0;
  // What lies between two times, which are told as times as well.
  virtual void span(const QString& field, const TimeDate& from, const TimeDate& to) = 0;
};

// Bytes that end early give what can be read of them.
void readDocument(const Note& note, FieldSink& sink);

}  // namespace lens
