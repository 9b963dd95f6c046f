#include "embedded/nsf/nsf_attachment.h"

#include "embedded/nsf/cx_stream.h"
#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {

enum FileCompression : quint16 { kPlainFile = 0, kHuffmanFile = 1, kLz1File = 2 };
constexpr qint64 kLargestFile = qint64(2) * 1024 * 1024 * 1024;
constexpr qsizetype kFilePiece = 256 * 1024;

QString copyPlain(const FileObject& file, qint64 size, const NsfFeed& feed, const NsfSink& sink) {
  if (size != file.size) return QStringLiteral("its size is not that of its bytes");
  for (qint64 left = size; left > 0;) {
    const QByteArray piece = feed(qMin<qint64>(left, kFilePiece));
    if (piece.isEmpty()) return QStringLiteral("its bytes cannot be read");
    if (!sink(piece)) return QStringLiteral("it could not be written");
    left -= piece.size();
  }
  return {};
}

QByteArray readAll(qint64 size, const NsfFeed& feed) {
  QByteArray bytes;
  bytes.reserve(size);
  while (bytes.size() < size) {
    const QByteArray piece = feed(qMin<qint64>(size - bytes.size(), kFilePiece));
    if (piece.isEmpty()) break;
    bytes += piece;
  }
  return bytes;
}

// Nothing is known of this packing. It may be that of the tables: then mode, size and end come out exactly,
// which rubbish does not.
QString unpackByGuess(const FileObject& file, qint64 size, const NsfFeed& feed, const NsfSink& sink) {
  constexpr qsizetype kMostUnread = 8;
  const QString unknown = QStringLiteral("it is compressed with LZ1 and cannot be unpacked");
  if (size > kMaxCxBlock || qsizetype(file.size) > kMaxCxBlock) return unknown;
  const QByteArray packed = readAll(size, feed);
  if (packed.size() != size) return QStringLiteral("its bytes cannot be read");
  const auto isRight = [&](const CxOutput& output) {
    return output.result == CxResult::Whole && output.unread <= kMostUnread;
  };
  // A size in front that is right is no accident; a first byte that could be a mode may be one.
  CxOutput output;
  if (packed.size() >= 4 && RecordBytes(packed).u32(0) == quint32(packed.size() - 4))
    output = inflateCx(QByteArrayView(packed).sliced(4), file.size);
  if (!isRight(output)) output = inflateCx(packed, file.size);
  if (!isRight(output)) return unknown;
  return sink(output.bytes) ? QString() : QStringLiteral("it could not be written");
}

}  // namespace

QString unpackAttachment(const FileObject& file, qint64 packedSize, const NsfFeed& packed,
                         const NsfSink& sink) {
  if (file.size > kLargestFile) return QStringLiteral("it claims to be larger than any attachment");
  switch (file.compression) {
    case kPlainFile:
      return copyPlain(file, packedSize, packed, sink);
    case kHuffmanFile:
      return inflateHuffman(packed, file.size, sink);
    case kLz1File:
      return unpackByGuess(file, packedSize, packed, sink);
    default:
      return QStringLiteral("it is compressed in a way that is not known (%1)").arg(file.compression);
  }
}

}  // namespace lens
