// A database that comes into being beside its final name and is moved there when it is whole.
//
// Meanwhile a lock beside it keeps other processes from making the same file, so that two never write one
// into the other. What a process that died left aside is removed by whoever makes the file next.
#pragma once

#include "embedded/files/file_lock.h"

namespace lens {

class StagedFile {
 public:
  enum class Old {
    Refuse,
    Replace,  // the caller removes it before the new one is put in its place
  };
  // Raises 58 when there is a file that stays, 76 without its directory, 75 while somebody else makes it.
  explicit StagedFile(const QString& path, Old old = Old::Refuse);
  // What was not put in place goes, with its journals.
  ~StagedFile();
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;

  // Where to write; closed before it is put in place.
  const QString& path() const { return staged_; }
  // Raises NotSaved when a part of what was written found no room in the file.
  void requireWhole() const;
  // Never over a file that is there, nor beside the journal of one that was. Raises 58, 75, and what
  // requireWhole() raises.
  void putInPlace();
  // Puts a whole file in its place instead, which has another name on the disk. False where the system
  // refuses. What putInPlace() raises is asked for by itself, before anything is done to the file.
  void requireFreePlace() const;
  bool takeInPlace(const QString& file);

 private:
  QString path_, staged_;
  FileLock lock_;
};

}  // namespace lens
