// Search and replace over the runs of a rich text, and joining the runs that are left.
#include <algorithm>

#include "embedded/richtext/rich_records.h"
#include "embedded/richtext/rich_text.h"
#include "notes/literals.h"

namespace lens {
namespace {

bool isRun(const RichElement& element) {
  return element.kind == RichElement::Kind::Text || element.kind == RichElement::Kind::Break;
}

QString textOf(const RichElement& element) {
  return element.kind == RichElement::Kind::Break ? u"\n"_s : element.text;
}

// Where the elements of that kind that stand side by side end.
template <class Same>
qsizetype endOf(const QVector<RichElement>& elements, qsizetype at, const Same& same) {
  while (at < elements.size() && same(elements[at])) ++at;
  return at;
}

// Runs that stand side by side, and the new texts of them all.
class RunGroup {
 public:
  RunGroup(const RichElement* first, qsizetype count) : first_(first), texts_(count) {
    for (qsizetype i = 0; i < count; ++i) {
      whole_.append(textOf(first[i]));
      ends_.push_back(whole_.size());
    }
  }

  // Fills the texts; returns how many were replaced.
  int replace(const QString& search, const QString& replacement, Qt::CaseSensitivity cs, int most) {
    int found = 0;
    qsizetype at = 0;
    while (found < most) {
      const qsizetype hit = whole_.indexOf(search, at, cs);
      if (hit < 0) break;
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
      if (texts_[i] == textOf(first_[i])) {
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

// One record in place of several; none when they do not fit into one, or would not read the same, as where
// a record ends within a character.
bool joinedRun(const RichElement* first, qsizetype count, RichElement& joined) {
  if (count < 2) return false;
  QByteArray data = richrecord::textData(first->record).toByteArray();
  QString text = textOf(*first);
  for (qsizetype i = 1; i < count; ++i) {
    data.append(richrecord::textData(first[i].record).sliced(richrecord::kFontSize));
    text.append(textOf(first[i]));
  }
  if (data.size() > richrecord::kLongestData) return false;
  joined = richrecord::read(richrecord::wordRecord(richrecord::Text, data));
  return textOf(joined) == text && joined.font == first->font;
}

// How many runs from the place on have one font and fit into a record.
qsizetype joinable(const QVector<RichElement>& elements, qsizetype at) {
  qsizetype size = richrecord::kFontSize, end = at;
  while (end < elements.size() && isRun(elements[end]) && elements[end].font == elements[at].font) {
    size += richrecord::textData(elements[end].record).size() - richrecord::kFontSize;
    if (size > richrecord::kLongestData) break;
    ++end;
  }
  return end - at;
}

}  // namespace

int RichText::replace(const QString& search, const QString& replacement, Qt::CaseSensitivity cs, int most) {
  if (search.isEmpty()) return 0;
  QString sought = search;
  sought.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  int found = 0;
  QVector<RichElement> elements;
  for (qsizetype at = 0; at < elements_.size();) {
    const qsizetype end = found < most ? endOf(elements_, at, isRun) : at;
    if (end == at) {
      elements.push_back(elements_[at++]);
      continue;
    }
    RunGroup group(elements_.constData() + at, end - at);
    found += group.replace(sought, replacement, cs, most - found);
    group.addTo(elements);
    at = end;
  }
  if (found == 0) return 0;
  elements_ = std::move(elements);
  endsUnpadded_ = false;
  return found;
}

bool RichText::compact() {
  QVector<RichElement> elements;
  for (qsizetype at = 0; at < elements_.size();) {
    const qsizetype count = qMax<qsizetype>(1, joinable(elements_, at));
    RichElement joined;
    if (joinedRun(elements_.constData() + at, count, joined))
      elements.push_back(std::move(joined));
    else
      elements.append(elements_.sliced(at, count));
    at += count;
  }
  if (elements.size() == elements_.size()) return false;
  elements_ = std::move(elements);
  endsUnpadded_ = false;
  return true;
}

}  // namespace lens
