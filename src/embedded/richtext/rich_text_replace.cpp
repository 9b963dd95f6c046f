// Search and replace over the runs of a rich text.
#include <algorithm>

#include "embedded/richtext/rich_records.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

// Text elements that stand side by side, and the new texts of them all.
class RunGroup {
 public:
  RunGroup(const RichElement* first, qsizetype count) : first_(first), texts_(count) {
    for (qsizetype i = 0; i < count; ++i) {
      whole_.append(first[i].text);
      ends_.push_back(whole_.size());
    }
  }

  // Fills the texts; returns how many were replaced.
  int replace(const QString& search, const QString& replacement, Qt::CaseSensitivity cs) {
    int found = 0;
    qsizetype at = 0;
    for (qsizetype hit = whole_.indexOf(search, 0, cs); hit >= 0; hit = whole_.indexOf(search, at, cs)) {
      keep(at, hit);
      texts_[runAt(hit)].append(replacement);
      at = hit + search.size();
      ++found;
    }
    keep(at, whole_.size());
    return found;
  }

  void addTo(QVector<RichElement>& elements) const {
    for (qsizetype i = 0; i < texts_.size(); ++i) {
      if (texts_[i] == first_[i].text) {
        elements.push_back(first_[i]);
        continue;
      }
      for (const QByteArray& record : richrecord::textRecords(texts_[i], first_[i].font)) {
        elements.push_back(richrecord::read(record));
      }
    }
  }

 private:
  qsizetype runAt(qsizetype position) const {
    return std::upper_bound(ends_.begin(), ends_.end(), position) - ends_.begin();
  }

  void keep(qsizetype from, qsizetype to) {
    while (from < to) {
      const qsizetype run = runAt(from);
      const qsizetype end = qMin(to, ends_[run]);
      texts_[run].append(QStringView(whole_).sliced(from, end - from));
      from = end;
    }
  }

  const RichElement* first_;
  QString whole_;
  QVector<qsizetype> ends_;
  QVector<QString> texts_;
};

}  // namespace

int RichText::replaceAll(const QString& search, const QString& replacement, Qt::CaseSensitivity cs) {
  if (search.isEmpty()) return 0;
  QString sought = search;
  sought.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  int found = 0;
  QVector<RichElement> elements;
  for (qsizetype at = 0; at < elements_.size();) {
    qsizetype end = at;
    while (end < elements_.size() && elements_[end].kind == RichElement::Kind::Text) ++end;
    if (end == at) {
      elements.push_back(elements_[at++]);
      continue;
    }
    RunGroup group(elements_.constData() + at, end - at);
    found += group.replace(sought, replacement, cs);
    group.addTo(elements);
    at = end;
  }
  if (found == 0) return 0;
  elements_ = std::move(elements);
  endsUnpadded_ = false;
  return found;
}

}  // namespace lens
