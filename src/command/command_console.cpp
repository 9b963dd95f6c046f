#include "command/command_console.h"

#include "command/command_text.h"
#include "command/text_output.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

constexpr char kEraseLine[] = "\r\033[K";

}  // namespace

Console::Console(const Ends& ends) : ends_(ends), out_(*ends.out, CommandText::tr("standard output")) {
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
  const QString yes = CommandText::tr("yes"), no = CommandText::tr("no");
  ends_.error->write(line + " [" + yes.first(1).toUtf8() + '/' + no.first(1).toUpper().toUtf8() + "] ");
  const QString answer = QString::fromLocal8Bit(ends_.in->readLine()).trimmed().toLower();
  return !answer.isEmpty() && (answer == yes.first(1) || answer == yes);
}

void Console::requireGoingOn() const {
  if (isInterrupted()) throw RuntimeError(kInterrupted, CommandText::tr("interrupted"));
}

}  // namespace lens
