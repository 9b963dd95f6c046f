// What a real database holds, as JSON for programs: one object for each note and stub. docs/nsf.md tells the
// keys.
#pragma once

#include <QJsonObject>

#include "embedded/nsf/nsf_acl.h"
#include "embedded/nsf/nsf_note.h"

namespace lens {

// "whole", "encrypted", "damaged" or "unreadable".
QLatin1String nsfStateText(NsfItemState state);

// A value is told by its size and the SHA-256 of its bytes, both without the type word.
QJsonObject nsfNoteJson(const NsfNote& note);
QJsonObject nsfStubJson(const NsfStub& stub);
// Entries with level and flags as the file has them, and the names of their roles.
QJsonObject nsfAclJson(const NsfAcl& acl);

}  // namespace lens
