#include "embedded/nsf/object_frame.h"

#include <algorithm>

#include "embedded/format/hex_digits.h"
#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {
constexpr qsizetype kKeyDigest = 40, kKeySize = 8;

// The key ends at a NUL; what is no key at all counts as none.
QByteArray keyOf(const RecordBytes& frame) {
  if (frame.u16(22) != 1) return {};
  const QByteArrayView text = frame.part(24, kKeyDigest + kKeySize);
  const bool isKey =
      std::all_of(text.begin(), text.end(), [](char digit) { return hexDigit(quint8(digit)) >= 0; });
  return isKey ? text.toByteArray().toUpper() : QByteArray();
}
}  // namespace

QString readObjectFrame(const NsfSource& source, quint32 id, qint64 position, NsfObject& object) {
  QByteArray bytes;
  if (!source.read(position, kObjectFrame, bytes))
    return QStringLiteral("it lies beyond the end of the file");
  const RecordBytes frame{QByteArrayView(bytes)};
  if (frame.isSigned(nsfsignature::OldObject)) return QStringLiteral("it is an object of an older release");
  if (!frame.isSigned(nsfsignature::Object)) return QStringLiteral("no object begins there");
  const qint64 size = frame.u32(2);
  if (size < kObjectFrame) return QStringLiteral("its size cannot be right");
  if (size > source.size() - position) return QStringLiteral("it reaches beyond the end of the file");
  object.id = id;
  object.position = position;
  object.payloadSize = size - kObjectFrame;
  object.ownerClass = frame.u16(6);
  object.storage = frame.u16(10);
  object.type = frame.u16(99);
  object.key = keyOf(frame);
  return {};
}

qint64 sizeByKey(const NsfObject& object) {
  return object.key.size() == kKeyDigest + kKeySize ? object.key.last(kKeySize).toLongLong(nullptr, 16) : -1;
}

}  // namespace lens
