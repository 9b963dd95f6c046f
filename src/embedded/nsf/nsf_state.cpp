#include "embedded/nsf/nsf_state.h"

#include <QCryptographicHash>

#include "embedded/nsf/nsf_header.h"
#include "embedded/nsf/record_bytes.h"
#include "embedded/nsf/superblock.h"

namespace lens {
namespace {

std::optional<NsfHeader> headerOf(const NsfSource& source, QByteArray& bytes) {
  NsfHeader header;
  if (!source.read(0, kNsfHeaderBytes, bytes) || !readNsfHeader(bytes, header)) return std::nullopt;
  return header;
}

}  // namespace

bool looksLikeNsf(const QString& path) {
  QString reason;
  const auto source = NsfFileSource::open(path, reason);
  QByteArray bytes;
  return source && source->read(0, 2, bytes) && RecordBytes(bytes).isSigned(nsfsignature::Header) &&
         source->size() >= kNsfHeaderBytes;
}

std::optional<NsfProperties> nsfPropertiesOf(const QString& path) {
  QString reason;
  QByteArray bytes;
  const auto source = NsfFileSource::open(path, reason);
  const std::optional<NsfHeader> header = source ? headerOf(*source, bytes) : std::nullopt;
  return header ? std::optional(header->properties) : std::nullopt;
}

QByteArray nsfStateOf(const NsfSource& source) {
  constexpr qint64 kHeadOfDescriptors = 128;
  QCryptographicHash hash(QCryptographicHash::Sha256);
  QByteArray bytes, head;
  const std::optional<NsfHeader> header = headerOf(source, bytes);
  hash.addData(QByteArray::number(source.size()));
  hash.addData(bytes);
  if (header) {
    hash.addData(superblockHeads(source, *header));
    for (const NsfArea& area : header->descriptors)
      if (source.read(area.position, kHeadOfDescriptors, head)) hash.addData(head);
  }
  return hash.result().toHex();
}

}  // namespace lens
