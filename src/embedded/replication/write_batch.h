// Changes of two databases in common transactions: the disk is asked once for many notes, and whoever else
// writes gets a turn several times a second.
#pragma once

#include <QElapsedTimer>
#include <optional>

#include "embedded/store/database.h"

namespace lens {

class WriteBatch {
 public:
  WriteBatch(Database& a, Database& b) : first_(a), second_(b) {
    // Two processes that replicate the same files must not wait for each other.
    if (b.path() < a.path()) std::swap(first_, second_);
  }
  void begin() {
    if (open_) return;
    if (first_.get().isWritable()) firstChange_.emplace(first_.get());
    if (second_.get().isWritable()) secondChange_.emplace(second_.get());
    since_.start();
    open_ = true;
  }
  void commitWhenDue() {
    if (open_ && since_.elapsed() >= kLongestMs) commit();
  }
  void commit() {
    for (auto* change : {&firstChange_, &secondChange_}) {
      if (!*change) continue;
      (*change)->commit();
      change->reset();
    }
    open_ = false;
  }
  void undo() {
    secondChange_.reset();
    firstChange_.reset();
    open_ = false;
  }

 private:
  static constexpr qint64 kLongestMs = 150;
  std::reference_wrapper<Database> first_, second_;
  std::optional<Database::Transaction> firstChange_, secondChange_;
  QElapsedTimer since_;
  bool open_ = false;
};

}  // namespace lens
