// A quick look at a file: whether it is a real database, what it is called, and in which state it is.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

#include "embedded/nsf/nsf_properties.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

// Whether the file begins as one does. Reads two bytes; false for what cannot be read.
bool looksLikeNsf(const QString& path);
// What the header says; none where it is no real database.
std::optional<NsfProperties> nsfPropertiesOf(const QString& path);
// The same for the same state of a file: a digest of its size, its header and the heads of its tables.
QByteArray nsfStateOf(const NsfSource& source);

}  // namespace lens
