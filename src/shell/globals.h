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

  QString gDataDir;  // Notes data directory, read once at the start
  QString gServer;   // server of the last listing of databases; empty for this machine
  QString gDocKind;  // "UIDOC", "PROFILE" or "DESIGN": what fldList shows

  KeyedCollection<QString> gDocTypes;         // item type code as text -> sentence
  KeyedCollection<QString> gAttachmentSizes;  // attachment name -> size in bytes as text
  QStringList gRemoteHistory;
  QStringList gContentPages;

  bool gDesignStop = false;     // a request: raised by Command1
  bool gIdScanRunning = false;  // a permission: withdrawn by cmdStop
  bool gEnding = false;         // the process is on its way out
};

}  // namespace lens
