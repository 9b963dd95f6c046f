// Files may not grow beyond a size while it lives, which is how a full disk looks like.
#pragma once

#include <sys/resource.h>

#include <QtGlobal>
#include <csignal>

namespace lens {

class SmallFiles {
 public:
  explicit SmallFiles(rlim_t bytes) {
    oldHandler_ = std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &old_);
    rlimit small = old_;
    small.rlim_cur = bytes;
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallFiles() {
    setrlimit(RLIMIT_FSIZE, &old_);
    std::signal(SIGXFSZ, oldHandler_);
  }
  Q_DISABLE_COPY(SmallFiles)

 private:
  rlimit old_ = {};
  void (*oldHandler_)(int) = nullptr;
};

}  // namespace lens
