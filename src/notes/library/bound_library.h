// A library of the client, bound by name: the file at the first use of it, each function at its own first
// use.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QtGlobal>

namespace lens {

// Stays loaded to the end of the process: what the client keeps in it must not go under our own calls.
class BoundLibrary {
 public:
  // A path, or a name that the system looks for in its usual places.
  explicit BoundLibrary(const QString& file) : file_(file) {}

  // Raises 53 when there is no such library, or none that it needs; 48 when it cannot be loaded, as one for
  // another width of addresses; 453 when it lacks the function. The name is a literal.
  QFunctionPointer function(const char* name);

 private:
  QString file_;
  void* library_ = nullptr;
  QHash<QByteArray, QFunctionPointer> known_;
};

}  // namespace lens
