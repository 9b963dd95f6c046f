// Steps that operations of the bulk tool share.
#pragma once

#include <functional>

#include "bulk/replic_desk.h"
#include "shell/error_modes.h"

namespace lens {

// The source server's name and the path of the row: a row is opened as it is listed, on the server that the
// box names at that moment.
NotesDatabase openListedSource(ReplicDesk& desk, const QString& path);

// The database of gDbPath into gDb, on the server that the box names. On this machine a failure is the
// mode's; on a server it is told and gives false, and the mode passes over failures from then on.
bool openToldDatabase(ReplicDesk& desk, Statements& step);

// Tells what a run cannot begin without.
void refuse(ReplicDesk& desk, const QString& text, const QString& title);

// Whether the row of the list's index is there and marked, rows that are marked elsewhere not counting. The
// user is told to choose one where it is not.
bool requireChosen(ReplicDesk& desk, const ListBox& list, const QString& refusal, const QString& title);

// Hands on each document of the entries, with events taken behind each, and counts every entry, until all
// are through or a stop is asked for.
void forEachDocument(ReplicDesk& desk, const NotesViewEntryCollection& entries,
                     const std::function<void(const NotesDocument&)>& work);

// One more in the counter of processed entries, which is painted at once.
void countProcessed(FrmReplic& window);

// What ends a run, a stopped one too: the sound, then the flag of the stop request is clear for the next run.
void endRunWithSound(ReplicDesk& desk);

}  // namespace lens
