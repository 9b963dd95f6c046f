#include "embedded/format/attachment_name.h"

#include "notes/literals.h"

namespace lens {

QString attachmentName(const QString& name) {
  qsizetype start = 0;
  for (qsizetype i = 0; i < name.size(); ++i)
    if (name[i] == u'/' || name[i] == u'\\' || name[i] == u':') start = i + 1;
  const QString last = name.sliced(start);
  const bool usable = !last.isEmpty() && last != u"." && last != u"..";
  return usable || name.isEmpty() ? last : u"attachment"_s;
}

}  // namespace lens
