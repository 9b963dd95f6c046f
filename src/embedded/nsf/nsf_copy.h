// A real database put into a store of ours, so that everything that works on those works on it.
#pragma once

#include <QString>
#include <functional>

#include "embedded/nsf/nsf_database.h"
#include "embedded/store/database.h"

namespace lens {

struct NsfCopyCounts {
  int notes = 0, stubs = 0;
  // Not taken: placeholders for parents that are not there, and what was deleted softly; and what has the ID
  // or UNID of another note.
  int hidden = 0, doubled = 0;
};

// Reads the notes into a new database with their IDs, UNIDs, sequence numbers, times, classes, item flags and
// order of items. Behind the items of the note of the access control list comes the list itself
// (nsf_acl_items.h). Bytes of attachments stay where they are. The report
// of the source is complete afterwards. How many notes of all were read is told on the way. Raises what
// creating and writing a database raises.
using NsfCopyProgress = std::function<void(qint64 done, qint64 all)>;
NsfCopyCounts copyNsf(NsfDatabase& source, const QString& target, const NsfCopyProgress& tell = {});

// How its header describes a real database.
DatabaseInfo infoOfNsf(const NsfProperties& properties);

}  // namespace lens
