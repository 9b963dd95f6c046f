// An attachment out of the bytes of its object.
#pragma once

#include "embedded/format/stored_object.h"
#include "embedded/nsf/huffman_stream.h"

namespace lens {

// The packed bytes come from the feed, so many in all. "" when size and sums agree, else the reason; pieces
// that were handed out before count for nothing then.
QString unpackAttachment(const FileObject& file, qint64 packedSize, const NsfFeed& packed,
                         const NsfSink& sink);

}  // namespace lens
