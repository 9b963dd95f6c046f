// Pieces of work that are interrupted at each single change of a file: what they start from, what they do,
// and what must hold wherever they were stopped.
#pragma once

#include <QString>
#include <functional>
#include <vector>

namespace lens::testbed {

struct PieceOfWork {
  // Names the piece in test names.
  const char* name;
  // Makes the databases in an empty directory.
  std::function<void(const QString& directory)> prepare;
  // Does the work. A step that is told as done has returned to its caller, so it must last.
  std::function<void(const QString& directory, const std::function<void()>& stepDone)> run;
  // Checks what is left after so many finished steps. What was begun behind them may be there, but whole.
  std::function<void(const QString& directory, int stepsDone)> check;
};

// The pieces of one file; each file of pieces registers its own.
std::vector<PieceOfWork>& piecesOfWork();
struct RegisterPiece {
  explicit RegisterPiece(PieceOfWork piece) { piecesOfWork().push_back(std::move(piece)); }
};

}  // namespace lens::testbed
