#include "embedded/nsf/nsf_acl.h"

#include <utility>

#include "embedded/format/lmbcs.h"
#include "embedded/nsf/record_bytes.h"

namespace lens {
namespace {

constexpr quint16 kAclMark = 0x4143, kAclEntryMark = 0x4145;
// No list that was written has longer ones; the items of our store would not hold just any.
constexpr qint64 kLongestName = 1024, kLongestLine = 16 * 1024;
constexpr qint64 kAclHead = 40, kAclEntryHead = 20, kRoleName = 16, kRoleBits = 10;

QString textUpToNul(QByteArrayView bytes) {
  const qsizetype end = bytes.indexOf('\0');
  return fromLmbcs(end < 0 ? bytes : bytes.first(end));
}

QStringList readHistory(QByteArrayView bytes, int lines) {
  QStringList history;
  while (history.size() < lines && !bytes.isEmpty()) {
    const qsizetype end = bytes.indexOf('\0');
    history.push_back(textUpToNul(bytes));
    bytes = end < 0 ? QByteArrayView() : bytes.sliced(end + 1);
  }
  return history;
}

}  // namespace

QString NsfAcl::role(qsizetype number) const {
  constexpr qsizetype kOldPrivileges = 5;
  const QString& name = roleNames[number];
  if (number < kOldPrivileges || name.isEmpty() || name.startsWith(u'[')) return name;
  return QStringLiteral("[%1]").arg(name);
}

QStringList NsfAcl::rolesOf(const NsfAclEntry& entry) const {
  QStringList roles;
  for (qsizetype i = 0; i < roleNames.size() && i / 8 < entry.roles.size(); ++i) {
    const bool isSet = quint8(entry.roles[i / 8]) >> i % 8 & 1;
    if (isSet && !roleNames[i].isEmpty()) roles += role(i);
  }
  return roles;
}

std::optional<NsfAcl> readNsfAcl(QByteArrayView payload, QString& reason) {
  const RecordBytes bytes(payload);
  reason.clear();
  if (!bytes.isSigned(kAclMark) || !bytes.has(0, kAclHead)) {
    reason = QStringLiteral("it does not begin as a list of access");
    return std::nullopt;
  }
  if (bytes.u16(4) != quint16(bytes.size())) {
    reason = QStringLiteral("its size is not that of its bytes");
    return std::nullopt;
  }
  NsfAcl acl;
  const quint16 count = bytes.u16(6), roles = bytes.u16(12);
  const qint64 rolesAt = bytes.u16(14);
  if (!bytes.has(rolesAt, roles * kRoleName)) {
    reason = QStringLiteral("its names of roles do not lie in it");
    return std::nullopt;
  }
  for (qint64 i = 0; i < roles; ++i)
    acl.roleNames += textUpToNul(bytes.part(rolesAt + i * kRoleName, kRoleName));
  qint64 at = bytes.u16(20);
  for (int i = 0; i < count; ++i) {
    const qint64 length = bytes.u16(at + 18);
    if (bytes.u16(at + 2) != kAclEntryMark || !bytes.has(at, kAclEntryHead + length)) {
      reason = QStringLiteral("entry %1 does not lie in it").arg(i + 1);
      return std::nullopt;
    }
    if (length > kLongestName) {
      reason = QStringLiteral("the name of entry %1 is longer than %2 bytes").arg(i + 1).arg(kLongestName);
      return std::nullopt;
    }
    acl.entries.push_back({fromLmbcs(bytes.part(at + kAclEntryHead, length)), bytes.u16(at + 4),
                           bytes.u16(at + 16), bytes.part(at + 6, kRoleBits).toByteArray()});
    // A NUL ends the name, and another one makes the size even.
    const qint64 size = kAclEntryHead + length + 1;
    at += size + size % 2;
  }
  acl.history = readHistory(bytes.part(bytes.u16(34), bytes.u16(36)), bytes.u16(38));
  for (const QString& line : std::as_const(acl.history))
    if (line.size() > kLongestLine) {
      reason = QStringLiteral("a line of its history is longer than %1 letters").arg(kLongestLine);
      return std::nullopt;
    }
  return acl;
}

}  // namespace lens
