// Keeps other processes from making or changing the same file: a second file beside it, "<name>.lock".
#pragma once

#include <QLockFile>
#include <QString>

namespace lens {

class FileLock {
 public:
  enum class State {
    Held,
    Taken,       // by somebody else, for as long as was waited
    Impossible,  // no file can be made there
  };
  // The lock of a process that is gone does not count, however it ended.
  FileLock(const QString& path, int waitMs);
  State state() const { return state_; }

 private:
  bool isNameless() const;
  bool removeAbandoned() const;
  QLockFile lock_;
  State state_ = State::Taken;
};

}  // namespace lens
