// Packs bytes as the format's blocks and attachments are packed.
#pragma once

#include <QByteArray>

namespace lens::made {

// How a block is stored. Literals: packed, but byte by byte. Matches: with references to what came before.
enum class Packing { None, Literals, Matches };

// Bits from the lowest one up: three for the mode, then literals and matches (length and distance as runs of
// zeros in front of a number). Two more bytes follow, as in files that are met.
QByteArray packedBits(QByteArrayView bytes, Packing packing);

// A tree of codes, shorter for what is more frequent, and the codes, highest bit first. More than one block:
// the bytes are cut into so many, each with a tree of its own.
QByteArray packedByFrequency(QByteArrayView bytes, int blocks = 1);

}  // namespace lens::made
