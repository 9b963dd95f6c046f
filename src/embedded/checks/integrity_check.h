// Whether a database is whole: its file, every note in it, and the bytes of every attachment.
#pragma once

#include "embedded/checks/note_walk.h"

namespace lens {

struct IntegrityFault {
  NoteId note;   // null where the file as a whole is meant
  QString what;  // for people: what is wrong, with the item or the place in the file
};

struct IntegrityReport {
  qint64 notes = 0;        // live notes that can be read
  qint64 attachments = 0;  // files whose bytes are as they were stored
  qint64 faults = 0;
  bool cancelled = false;
};

// Tells each fault as it is found. Changes nothing. Raises what a file raises that cannot be read at all.
IntegrityReport checkIntegrity(Database& database, const std::function<void(const IntegrityFault&)>& tell,
                               const CheckProgress& progress = {});

}  // namespace lens
