// Replication: two copies of a database, known by the same replica ID, exchange what each has not seen.
//
// Notes are told apart by UNID, their versions by the version vector that the store keeps
// (store/note_version.h): the version that came out of the other one goes to the other side, and a deletion
// stub counts as a version. Nothing is remembered of earlier runs, so a run that was cut short, a restored
// file or a copied one is settled by the next run; a note that was erased without a stub comes back.
//
// Of two versions that were changed on both sides since they were the same, one stays in every replica:
// a live one before a stub, then the one with the higher sequence number, then the later one. The other
// one is kept as a conflict document, a response of it with the item $Conflict. Its UNID follows from what
// it keeps, so that replicas that settle the same conflict apart from each other make one document. Equal
// contents are no conflict. Design notes and profiles leave no conflict document, for they are found by
// their names. A database has one icon, one access list, one about document (format/single_notes.h) and one
// profile of a name: of two the one that would stay is kept, and the other one gets a stub.
//
// What people put into folders and took out of them goes both ways too (views/folder_documents.h).
//
// Properties that are no notes (title, template names) stay what they are on each side.
#pragma once

#include "embedded/replication/replication_report.h"
#include "embedded/store/database.h"
#include "embedded/store/database_copy.h"

namespace lens {

// Both ways. Raises when the replica IDs differ or a side cannot be read or written; each side then
// holds what had arrived until there, note by note, and nothing half. A side that can only be read gives
// all it has before that raises.
ReplicationReport replicate(Database& here, Database& there);

// Makes a new file with the same replica ID and all notes and stubs that can be read; the report tells what
// was left out. It is staged, so that a failure leaves nothing, nor does the end that "go" may put to it,
// which is asked for each note. Raises 58 when there is a file at the path.
ReplicationReport createReplica(Database& source, const QString& path, const CopyProgress& go = {});

// Raises NotesLeftOut when notes were left out, for callers that take everything for granted otherwise.
void requireNothingLeftOut(const QString& path, const QStringList& leftOut);

}  // namespace lens
