// What a reader says of a file beside what was written into it.
#pragma once

#include <QSet>

#include "embedded/nsf/maker/nsf_maker.h"
#include "embedded/nsf/nsf_database.h"

namespace lens::made {

// "" where the note is the described one in all that a reader can tell; else what is not.
QString difference(const NsfNote& read, const MadeNote& made);
// The same for all notes and stubs of a file. Those of the set may be missing or have less.
QString difference(NsfDatabase& read, const MadeDatabase& made, const QSet<quint32>& besides = {});
// And for its objects.
QString objectsDifference(NsfDatabase& read, const MadeDatabase& made);

std::unique_ptr<NsfDatabase> readBytes(const QByteArray& bytes, NsfReading reading = NsfReading::Proven);

}  // namespace lens::made
