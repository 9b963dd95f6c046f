// The frame around an object's bytes.
#pragma once

#include <QString>

#include "embedded/nsf/nsf_note.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

inline constexpr qint64 kObjectFrame = 115;

// "" with the object when one lies at that position as a whole; else why not.
QString readObjectFrame(const NsfSource& source, quint32 id, qint64 position, NsfObject& object);

// The size of the payload by the key; -1 without a sound key. Another than the payload has tells that the
// bytes are kept outside the database.
qint64 sizeByKey(const NsfObject& object);

}  // namespace lens
