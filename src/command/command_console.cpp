#include "command/command_console.h"

#include "command/text_output.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr char kEraseLine[] = "\r\033[K";

}  // namespace

Console::Console(const Ends& ends) : ends_(ends), out_(*ends.out, u"standard output"_s) {
  if (ends.outIsTerminal) out_.showEachLine([this] { clearProgress(); });
  sinceShown_.start();
}

void Console::say(const QString& text) {
  clearProgress();
  QByteArray line;
  appendPrintable(line, text);
  ends_.error->write(line + '\n');
}

void Console::progress(const QString& what, qint64 done, qint64 all) {
  requireGoingOn();
  if (!ends_.errorIsTerminal || sinceShown_.elapsed() < ends_.progressEvery) return;
  QByteArray line(kEraseLine);
  appendPrintable(line, what);
  if (all > 0) line += ": " + QByteArray::number(100 * done / all) + " %";
  ends_.error->write(line);
  sinceShown_.start();
  isShowing_ = true;
}

void Console::clearProgress() {
  if (isShowing_) ends_.error->write(kEraseLine);
  isShowing_ = false;
}

bool Console::ask(const QString& question) {
  if (!ends_.in) return false;
  clearProgress();
  out_.flush();
  QByteArray line;
  appendPrintable(line, question);
  ends_.error->write(line + " [y/N] ");
  const QByteArray answer = ends_.in->readLine().trimmed().toLower();
  return answer == "y" || answer == "yes";
}

void Console::requireGoingOn() const {
  if (isInterrupted()) throw RuntimeError(kInterrupted, u"interrupted"_s);
}

}  // namespace lens
