// Both ends of a command: what it writes, what it says beside that, and whom it may ask.
#pragma once

#include <QElapsedTimer>
#include <QIODevice>
#include <QString>
#include <functional>

#include "command/output.h"

namespace lens {

// A command that the user ends (Ctrl+C) leaves with this error.
inline constexpr int kInterrupted = 18;

class Console {
 public:
  struct Ends {
    QIODevice* out = nullptr;    // results
    QIODevice* error = nullptr;  // errors, remarks, progress and questions
    QIODevice* in = nullptr;     // answers; null where nobody can be asked
    bool outIsTerminal = false, errorIsTerminal = false;
    std::function<bool()> interrupted = {};
    int progressEvery = 100;  // milliseconds at least, also before the first time
  };
  explicit Console(const Ends& ends);
  ~Console() { clearProgress(); }
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  Output& out() { return out_; }

  // One line on standard error, whatever the text holds.
  void say(const QString& text);
  // How far the work is, shown where a person looks on, and gone before anything else is written. Raises
  // kInterrupted when the user has had enough, so a walk that shows its progress can be ended.
  void progress(const QString& what, qint64 done, qint64 all);
  // Whether the question, which is answered by "y" or "yes", is answered so. Nobody to ask means no.
  bool ask(const QString& question);
  bool canAsk() const { return ends_.in != nullptr; }

  bool isInterrupted() const { return ends_.interrupted && ends_.interrupted(); }
  void requireGoingOn() const;

 private:
  void clearProgress();

  Ends ends_;
  Output out_;
  QElapsedTimer sinceShown_;
  bool isShowing_ = false;
};

}  // namespace lens
