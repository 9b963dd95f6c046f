#include "controls/text_history.h"

namespace lens {
namespace {

qsizetype unitsOf(const TextHistory::Step& step) {
  return step.removed.size() + step.added.size();
}

bool isLetter(const QString& text) {
  return text.size() == 1 && text != u"\r" && text != u"\n";
}

}  // namespace

void TextHistory::record(int position, const QString& removed, const QString& added) {
  while (steps_.size() > done_) units_ -= unitsOf(steps_.takeLast());
  units_ += removed.size() + added.size();
  if (!merge(position, removed, added)) steps_.push_back({position, removed, added});
  done_ = steps_.size();
  open_ = true;
  dropOldest();
}

bool TextHistory::merge(int position, const QString& removed, const QString& added) {
  if (!open_ || steps_.isEmpty()) return false;
  Step& last = steps_.last();
  if (last.goesOn) return false;
  const bool types = removed.isEmpty() && isLetter(added) && !last.added.endsWith(u'\n') &&
                     !last.added.isEmpty() && position == last.position + last.added.size();
  const bool takes = added.isEmpty() && isLetter(removed) && last.added.isEmpty();
  if (types) {
    last.added += added;
  } else if (takes && position + 1 == last.position) {
    last.position = position;
    last.removed.prepend(removed);
  } else if (takes && position == last.position) {
    last.removed += removed;
  } else {
    return false;
  }
  return true;
}

void TextHistory::joinLast() {
  if (done_ > 1 && done_ == steps_.size()) steps_.last().goesOn = true;
}

void TextHistory::clear() {
  steps_.clear();
  done_ = units_ = 0;
  open_ = false;
}

// A step that goes on is no beginning.
void TextHistory::dropOldest() {
  qsizetype dropped = 0;
  while (dropped < steps_.size() && (units_ > mostUnits_ || (dropped > 0 && steps_[dropped].goesOn)))
    units_ -= unitsOf(steps_[dropped++]);
  steps_.remove(0, dropped);
  done_ = steps_.size();
}

QVector<TextHistory::Step> TextHistory::undo() {
  QVector<Step> steps;
  open_ = false;
  while (done_ > 0) {
    steps.push_back(steps_[--done_]);
    if (!steps.last().goesOn) break;
  }
  return steps;
}

QVector<TextHistory::Step> TextHistory::redo() {
  QVector<Step> steps;
  open_ = false;
  while (done_ < steps_.size() && (steps.isEmpty() || steps_[done_].goesOn)) steps.push_back(steps_[done_++]);
  return steps;
}

}  // namespace lens
