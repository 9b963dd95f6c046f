// The packing of most attachments in a real database: a tree of its own and the codes, in one or several
// blocks.
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

namespace lens {

// Takes bytes in order; false ends the work.
using NsfSink = std::function<bool(QByteArrayView piece)>;
// Gives the next bytes in order, at most so many; empty at the end or when they cannot be read.
using NsfFeed = std::function<QByteArray(qsizetype most)>;

// Unpacks exactly so many bytes, in pieces, so that nothing is held whole. "" when the sizes and the sum of
// the bytes agree, else the reason; pieces that were handed out before count for nothing then.
QString inflateHuffman(const NsfFeed& packed, qint64 wanted, const NsfSink& sink);

}  // namespace lens
