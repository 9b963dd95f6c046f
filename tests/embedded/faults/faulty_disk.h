// A disk that fails, below SQLite and below whoever else writes or renames a file: every change of a file is
// counted, and at a chosen one the process dies or the disk is full. So a test can try each single moment of
// a piece of work, not only lucky ones.
//
// Works for the whole process; for databases that are opened after the first of these calls.
#pragma once

namespace lens::testbed {

class FaultyDisk {
 public:
  // Counts from zero and lets everything pass.
  static void count();
  // The process ends at the n-th change (from 1), which does not happen any more.
  static void dieAt(int change);
  // From the n-th change on nothing can be written that makes a file longer or changes it.
  static void fullFrom(int change);
  // Changes since the last of these calls.
  static int changes();
  // A change is about to be made: the process may end here. False when the disk is full.
  static bool mayChange();
};

// Exit code of a process that the disk ended.
inline constexpr int kDied = 86;

}  // namespace lens::testbed
