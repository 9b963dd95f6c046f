#include "embedded/store/note_version.h"

#include <QCryptographicHash>
#include <QtEndian>
#include <algorithm>

namespace lens {
namespace {

constexpr qsizetype kStampSize = 16;
constexpr qsizetype kLongestVersionVector = 256;

void appendU64(QByteArray& bytes, quint64 number) {
  char raw[8];
  qToLittleEndian(number, raw);
  bytes.append(raw, sizeof raw);
}

VersionStamp stampOf(const QByteArray& told) {
  const QByteArray hash = QCryptographicHash::hash(told, QCryptographicHash::Sha256);
  return {qFromLittleEndian<quint64>(hash.constData()), 1};
}

}  // namespace

VersionStamp originalStamp(const Unid& unid, quint32 sequence, const TimeDate& sequenceTime) {
  QByteArray told = unid.bytes();
  appendU64(told, sequence);
  appendTimeDate(told, sequenceTime);
  return stampOf(told);
}

VersionStamp derivedStamp(const VersionStamp& from, QByteArrayView reason) {
  QByteArray told = reason.toByteArray();
  appendU64(told, from.writer);
  appendU64(told, from.count);
  return stampOf(told);
}

VersionVector VersionVector::fromBytes(QByteArrayView bytes) {
  VersionVector versionVector;
  const qsizetype count = qMin(bytes.size() / kStampSize, kLongestVersionVector);
  for (qsizetype i = 0; i < count; ++i) {
    const char* const at = bytes.data() + i * kStampSize;
    versionVector.stamps_.push_back({qFromLittleEndian<quint64>(at), qFromLittleEndian<quint64>(at + 8)});
  }
  return versionVector;
}

QByteArray VersionVector::bytes() const {
  QByteArray bytes;
  bytes.reserve(stamps_.size() * kStampSize);
  for (const VersionStamp& stamp : stamps_) {
    appendU64(bytes, stamp.writer);
    appendU64(bytes, stamp.count);
  }
  return bytes;
}

bool VersionVector::knows(const VersionStamp& stamp) const {
  return std::any_of(stamps_.begin(), stamps_.end(), [&](const VersionStamp& known) {
    return known.writer == stamp.writer && known.count >= stamp.count;
  });
}

void VersionVector::add(const VersionStamp& stamp) {
  stamps_.removeIf([&](const VersionStamp& known) { return known.writer == stamp.writer; });
  stamps_.push_back(stamp);
  if (stamps_.size() > kLongestVersionVector) stamps_.remove(0, stamps_.size() - kLongestVersionVector);
}

void VersionVector::absorb(const VersionVector& other) {
  if (isNull()) return;
  const VersionStamp own = stamp();
  VersionVector both = other;
  for (const VersionStamp& stamp : std::as_const(stamps_))
    if (!both.knows(stamp)) both.add(stamp);
  both.add(own);
  stamps_ = both.stamps_;
}

}  // namespace lens
