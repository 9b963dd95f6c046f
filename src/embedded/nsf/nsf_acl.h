// The access control list of a real database, as it lies in its object.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>
#include <optional>

namespace lens {

struct NsfAclEntry {
  QString name;   // "-Default-" for everybody else
  int level = 0;  // 0 no access, 1 depositor, 2 reader, 3 author, 4 editor, 5 designer, 6 manager
  quint16 flags = 0;
  QByteArray roles;  // 10 bytes, a bit for each name of the list, the lowest bit of the first byte first
};

struct NsfAcl {
  // The first five are the privileges of old releases, often without a name; roles follow.
  QStringList roleNames;
  QVector<NsfAclEntry> entries;
  QStringList history;

  // As it is shown: a role stands in brackets. "" for one without a name.
  QString role(qsizetype number) const;
  // Those of an entry that have a name.
  QStringList rolesOf(const NsfAclEntry& entry) const;
};

// None where the bytes are no whole list; the reason tells why.
std::optional<NsfAcl> readNsfAcl(QByteArrayView payload, QString& reason);

}  // namespace lens
