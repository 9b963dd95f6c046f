#include "bulk/replic_agents.h"

#include "notes/literals.h"
#include "shell/error_modes.h"

namespace lens {

ReplicAgents::ReplicAgents(ReplicDesk& desk) : desk_(desk) {
  desk_.window.lstAgentNames->dblClick = [this] { lstAgentNames_DblClick(); };
}

// The note about the program directory stays on show wherever no agent is asked for.
void ReplicAgents::lstAgentNames_DblClick() {
  const FrmReplic& window = desk_.window;
  Globals& state = desk_.state;
  window.lblRunAgent->show();
  QString name = window.lstAgentNames->text();
  if (name.contains(u'|')) name = desk_.routines.LeftFrom(name, u"|"_s);
  state.gDbPath = window.lstDBNames->text();
  Statements step;
  const QString server = window.lstServer->text();
  if (server == u"Local") {
    state.gDb = state.gSession.database(QString(), state.gDbPath);
  } else {
    Continue& opening = step.switchTrapOff();
    state.gDb.release();
    opening([&] { state.gDb = state.gSession.database(server, state.gDbPath); });
    if (opening.number() > 0) {
      desk_.host.messageBox(u"Can't open the Database!!"_s, box::Critical, u"Open Notes DB"_s);
      return;
    }
  }
  NotesAgent agent;
  step([&] { agent = state.gDb.agent(name); });
  if (agent.isNothing()) return;
  const int reply = desk_.host.messageBox(u"Are you sure to run the Agent: "_s + name + u" ?", box::OkCancel,
                                          u"Run agent"_s);
  window.lblRunAgent->hide();
  if (reply != answer::Cancel) step([&] { agent.run(); });
}

}  // namespace lens
