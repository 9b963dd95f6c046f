// The documents that people put into folders.
//
// They are kept in a table of the database (folder_document) by UNID, so that a copy of the file has them
// too; what was taken out stays written down as such. What belongs to a document goes with it, and so does
// what belongs to a folder: a document that comes back is in no folder. Replicas tell each other
// (shareFolders). DXL has no place for it, so an export leaves it out.
#pragma once

#include <QVector>

#include "embedded/format/engine_fault.h"
#include "embedded/store/database.h"

namespace lens {

// Raise kNoFolder when the note is no folder, UnknownNote when the folder or one of the documents is not
// there; nothing is changed then. A document that is in the folder already stays.
void addToFolder(Database& database, NoteId folder, const QVector<NoteId>& documents);
// Documents that are not in it, or not there, are passed over.
void removeFromFolder(Database& database, NoteId folder, const QVector<NoteId>& documents);

// Two replicas: of what was done with a document in a folder, the later counts on both sides. Folders and
// documents that only one side has are passed over; a side that can only be read gives and takes nothing.
void shareFolders(Database& a, Database& b);

// Number that grows with every change of what is in the folder; 0 for none yet.
qint64 folderChange(const Database& database, const Unid& folder);
// Note IDs of what was put in or taken out since then, each once; documents that are there.
QVector<NoteId> folderChangesSince(const Database& database, const Unid& folder, qint64 change);
// Those that are in it, by note ID.
QVector<NoteId> folderDocuments(const Database& database, const Unid& folder);
bool isInFolder(const Database& database, const Unid& folder, const Unid& document);

}  // namespace lens
