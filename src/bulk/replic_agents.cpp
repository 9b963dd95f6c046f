#include "bulk/replic_agents.h"

#include "bulk/run_steps.h"
#include "notes/literals.h"

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
  if (!openToldDatabase(desk_, step)) return;
  NotesAgent agent;
  step([&] { agent = state.gDb.agent(name); });
  if (agent.isNothing()) return;
  const int reply = desk_.host.messageBox(u"Are you sure to run the Agent: "_s + name + u" ?", box::OkCancel,
                                          u"Run agent"_s);
  window.lblRunAgent->hide();
  if (reply != answer::Cancel) step([&] { agent.run(); });
}

}  // namespace lens
