// The files that this process keeps open for itself: databases. Where the system would let others delete or
// replace an open file, whoever writes files asks here, so that no command of the program does it to its own.
#pragma once

#include "host/file_identity.h"

namespace lens {

// Counts as held as long as it lives, together with the journals that stand beside it under its name.
class HeldFile {
 public:
  explicit HeldFile(const QString& path);
  ~HeldFile();
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

  static bool isHeld(const FileIdentity& file);

 private:
  const FileIdentity file_;
  const QString path_;
};

// Before a file is deleted, written or replaced, or read otherwise than through a database: raises 70 where
// it is held, under whatever path, or is a journal of one that is.
void requireNotHeld(const QString& path);

}  // namespace lens
