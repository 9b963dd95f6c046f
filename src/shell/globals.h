// The state that ties the subsystems together. It lives as long as the process and belongs to the
// user-interface thread. A test makes its own.
#pragma once

#include <QString>
#include <QStringList>

#include "notes/objects/notes_session.h"
#include "shell/keyed_collection.h"

namespace lens {

struct Globals {
  NotesSession gSession;          // back-end kind after the start, the client's from the first capture on
  NotesUIWorkspace gUIWorkspace;  // from one capture to the next
  NotesDatabase gDb;              // database of the last listing
  NotesDocument gDoc;             // document behind fldList
  NotesRichTextItem gRTItem;      // rich text item in work
  NotesNoteCollection gNoteColl;  // note collection of the design browser

  QString gDataDir;     // Notes data directory, read once at the start
  QString gServer;      // server of the last listing of databases; empty for this machine
  QString gDbPath;      // source database that an operation of the bulk tool opened last
  QString gDestDbPath;  // target database that an operation of the bulk tool opened last
  QString gDocKind;     // "UIDOC", "PROFILE" or "DESIGN": what fldList shows

  KeyedCollection<QString> gDocTypes;         // item type code as text -> sentence
  KeyedCollection<QString> gAttachmentSizes;  // attachment name -> size in bytes as text
  QStringList gRemoteHistory;
  QStringList gContentPages;

  bool gStopFlag = false;    // a request: a running loop of the bulk tool shall stop
  bool gSearchBusy = false;  // a search of the bulk tool runs: its databases are not to be opened meanwhile
  QString gIniPath;          // settings file of the bulk tool; found anew each time that it is used
  bool gDesignStop = false;  // a request: raised by Command1
  bool gIdScanRunning = false;  // a permission: withdrawn by cmdStop
  bool gEnding = false;         // the process is on its way out
};

}  // namespace lens
