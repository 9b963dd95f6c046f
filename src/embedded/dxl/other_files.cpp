#include "embedded/dxl/other_files.h"

#include <QFile>
#include <QFileInfo>

#include "notes/literals.h"

namespace lens {

namespace {

bool beginsAsXml(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) && file.peek(64).trimmed().startsWith('<');
}

}  // namespace

bool OtherFiles::take(const QString& path, const DxlFault& fault, bool rootSeen) {
  if (fault.number() != enginefault::NoDxl || (!rootSeen && beginsAsXml(path))) return false;
  const QString ending = QFileInfo(path).suffix().toLower();
  ++endings_[ending.isEmpty() ? QString() : u'.' + ending];
  return true;
}

QString OtherFiles::line(const QString& folder) const {
  int all = 0;
  QStringList words;
  for (auto it = endings_.cbegin(); it != endings_.cend(); ++it) {
    all += it.value();
    if (!it.key().isEmpty()) words.push_back(u"%1 %2"_s.arg(it.key(), QString::number(it.value())));
  }
  if (all == 0) return {};
  const int others = endings_.value({});
  if (others > 0) words.push_back(u"others %1"_s.arg(others));
  const QString what = all == 1 ? u"1 file that is no DXL"_s : u"%1 files that are no DXL"_s.arg(all);
  return u"%1: %2 (%3)"_s.arg(folder, what, words.join(u", "_s));
}

}  // namespace lens
