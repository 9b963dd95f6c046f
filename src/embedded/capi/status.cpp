#include "embedded/capi/status.h"

#include "embedded/formula/faults.h"
#include "embedded/workspace.h"

namespace lens {
namespace {

struct StatusText {
  Status status;
  const char* text;
};

constexpr StatusText kTexts[] = {
    {status::NoFile, "File does not exist"},
    {status::FileExists, "File already exists"},
    {status::NoMemory, "Insufficient memory."},
    {status::BadHandle, "Handle is not valid or no longer in use"},
    {status::Locked, "Memory or file is still in use"},
    {status::BadPath, "Path leads out of the directory of databases"},
    {status::CannotAccess, "File cannot be read or written"},
    {status::NotADatabase, "File is not a database"},
    {0x0205, "Someone else modified this document at the same time"},
    {status::BadNoteId, "Invalid document identifier"},
    {status::NewerVersion, "Invalid NSF version"},
    {0x021C, "Function is not available for directories"},
    {status::NoItem, "Note item not found"},
    {status::NoteDeleted, "Document has been deleted"},
    {status::NoNote, "Invalid or nonexistent document"},
    {status::BadClass, "Invalid NSF Class"},
    {status::DamagedNote, "Document is damaged and cannot be read"},
    {status::NoSpecialNote, "Special database object cannot be located"},
    {0x0246, "You are not authorized to perform that operation"},
    {0x024B, "You are not authorized to access that database"},
    {0x024C, "You are not authorized to delete that database"},
    {status::NotInIndex, "Entry not found in index"},
    {status::BadTime, "Invalid Time or Date Encountered"},
    {status::NoListEntry, "No such entry"},
    {status::NoServer, "Unable to find path to server"},
    {0x0807, "Server not responding"},
    {0x0812, "You are not authorized to use the remote console on this server"},
    {0x09B3, "No response from server for this command"},
    {status::Failed, "The database engine reported a failure"},
};

}  // namespace

QString statusText(Status status) {
  for (const StatusText& row : kTexts)
    if (row.status == (status & kErrorMask)) return QString::fromLatin1(row.text);
  return formula::faultText(status & kErrorMask);
}

Status statusOf(const RuntimeError& error) {
  switch (error.number()) {
    case err::FileNotFound:
    case err::PathNotFound:
    case workspacefault::NoSuchFile:
      return status::NoFile;
    case 58:
    case workspacefault::FileExists:
      return status::FileExists;
    case enginefault::NotADatabase:
      return status::NotADatabase;
    case enginefault::NewerSchema:
      return status::NewerVersion;
    case enginefault::Damaged:
      return status::DamagedNote;
    case enginefault::UnknownNote:
      return status::NoNote;
    case workspacefault::UnknownServer:
      return status::NoServer;
    case workspacefault::BadPath:
      return status::BadPath;
    case workspacefault::InUse:
      return status::Locked;
    case err::PermissionDenied:
    case err::PathFileAccess:
    case workspacefault::CannotOpen:
    case enginefault::CannotOpen:
    case enginefault::NotSaved:
      return status::CannotAccess;
    default:
      return status::Failed;
  }
}

}  // namespace lens
