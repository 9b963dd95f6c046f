#include "command/command_call.h"
#include "command/command_text.h"

#include "notes/literals.h"

namespace lens {

void CommandCall::confirm(const QString& question) const {
  if (has(u"yes")) return;
  if (!console.canAsk())
    throw RuntimeError(
        err::PermissionDenied,
        CommandText::tr("nothing was changed: give --yes where nobody can be asked (%1)").arg(question));
  if (!console.ask(question))
    throw RuntimeError(err::PermissionDenied, CommandText::tr("nothing was changed"));
}

}  // namespace lens
