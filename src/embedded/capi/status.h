// Status codes of the embedded C API and their texts.
#pragma once

#include "notes/capi.h"

namespace lens {

// Every status of the engine with the sentence that people read; the reasons of formulas are in
// formula/faults.h.
#define LENS_STATUSES(STATUS)                                                                  \
  STATUS(NoFile, 0x0103, "File does not exist")                                                \
  STATUS(FileExists, 0x0104, "File already exists")                                            \
  STATUS(NoMemory, 0x0107, "Insufficient memory.")                                             \
  STATUS(BadHandle, 0x0170, "Handle is not valid or no longer in use")                         \
  STATUS(Locked, 0x0171, "Memory or file is still in use")                                     \
  STATUS(BadPath, 0x0172, "Path leads out of the directory of databases")                      \
  STATUS(CannotAccess, 0x0173, "File cannot be read or written")                               \
  STATUS(NotADatabase, 0x0201, "File is not a database")                                       \
  STATUS(EditConflict, 0x0205, "Someone else modified this document at the same time")         \
  STATUS(BadNoteId, 0x0214, "Invalid document identifier")                                     \
  STATUS(NewerVersion, 0x0219, "Invalid NSF version")                                          \
  STATUS(NotForDirectories, 0x021C, "Function is not available for directories")               \
  STATUS(NoItem, 0x0222, "Note item not found")                                                \
  STATUS(NoteDeleted, 0x0225, "Document has been deleted")                                     \
  STATUS(NoNote, 0x0227, "Invalid or nonexistent document")                                    \
  STATUS(BadClass, 0x0232, "Invalid NSF Class")                                                \
  STATUS(DamagedNote, 0x0236, "Document is damaged and cannot be read")                        \
  STATUS(NoSpecialNote, 0x0242, "Special database object cannot be located")                   \
  STATUS(NotAuthorized, 0x0246, "You are not authorized to perform that operation")            \
  STATUS(NoAccess, 0x024B, "You are not authorized to access that database")                   \
  STATUS(NoDeletion, 0x024C, "You are not authorized to delete that database")                 \
  STATUS(HasResponses, 0x02F0, "A document with responses cannot go without a stub")           \
  STATUS(NotInIndex, 0x0404, "Entry not found in index")                                       \
  STATUS(BadTime, 0x040D, "Invalid Time or Date Encountered")                                  \
  STATUS(NoListEntry, 0x0605, "No such entry")                                                 \
  STATUS(NoServer, 0x0803, "Unable to find path to server")                                    \
  STATUS(ServerSilent, 0x0807, "Server not responding")                                        \
  STATUS(NoConsole, 0x0812, "You are not authorized to use the remote console on this server") \
  STATUS(NoReply, 0x09B3, "No response from server for this command")                          \
  STATUS(Failed, 0x0FFE, "The database engine reported a failure")

namespace status {
inline constexpr Status Ok = 0;
#define LENS_STATUS_NUMBER(name, number, text) inline constexpr Status name = number;
LENS_STATUSES(LENS_STATUS_NUMBER)
#undef LENS_STATUS_NUMBER
}  // namespace status

// The text of an error number (marks are ignored); "" when it is unknown.
QString statusText(Status status);

// The status that tells a failure of the engine best.
Status statusOf(const RuntimeError& error);

}  // namespace lens
