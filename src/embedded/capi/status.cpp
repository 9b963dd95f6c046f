#include "embedded/capi/status.h"

#include "embedded/formula/faults.h"
#include "embedded/workspace/workspace.h"

namespace lens {
namespace {

struct StatusText {
  Status status;
  const char* text;
};

constexpr StatusText kTexts[] = {
#define LENS_STATUS_TEXT(name, number, text) {number, text},
    LENS_STATUSES(LENS_STATUS_TEXT)
#undef LENS_STATUS_TEXT
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
    case err::FileExists:
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
    case enginefault::InUse:
      return status::Locked;
    case err::PermissionDenied:
    case err::PathFileAccess:
    case enginefault::CannotOpen:
    case enginefault::NotSaved:
      return status::CannotAccess;
    default:
      return status::Failed;
  }
}

}  // namespace lens
