// Status codes of the embedded C API and their texts.
#pragma once

#include "notes/capi.h"

namespace lens {

namespace status {
inline constexpr Status Ok = 0, NoFile = 0x0103, FileExists = 0x0104, NoMemory = 0x0107, BadHandle = 0x0170,
                        Locked = 0x0171, BadPath = 0x0172, CannotAccess = 0x0173, NotADatabase = 0x0201,
                        BadNoteId = 0x0214, NewerVersion = 0x0219, NoItem = 0x0222, NoteDeleted = 0x0225,
                        NoNote = 0x0227, BadClass = 0x0232, DamagedNote = 0x0236, NoSpecialNote = 0x0242,
                        NotInIndex = 0x0404, BadTime = 0x040D, NoListEntry = 0x0605, NoServer = 0x0803,
                        Failed = 0x0FFE;
}  // namespace status

// The text of an error number (marks are ignored); "" when it is unknown.
QString statusText(Status status);

// The status that tells a failure of the engine best.
Status statusOf(const RuntimeError& error);

}  // namespace lens
