// Agents: what their design notes say about when, on what and how they run.
#pragma once

#include "embedded/format/agent_records.h"
#include "embedded/format/engine_fault.h"
#include "embedded/format/note.h"

namespace lens {

// On which documents an agent runs; the numbers of its settings.
enum class AgentTarget {
  None = 0,  // those that arrive
  All = 1,
  New = 2,
  NewOrModified = 3,
  Selected = 4,
  InView = 5,
  Unread = 6,
  Prompt = 7,
  Once = 8  // once, over no stored document
};

struct Agent {
  QString title;  // "name|alias"
  AgentSchedule settings;
  TimeDate lastRun{};  // cleared: never
  QString formula;

  AgentTarget target() const { return AgentTarget(settings.search); }
};

// An agent that this engine can run. Raises CannotRun, with the path of the file, the agent's name and the
// reason, for one in another language, with a formula that is there in compiled form only, with search
// conditions, or with settings that cannot be read: rather no document than one too many.
Agent readFormulaAgent(const Note& note, const QString& path);

[[noreturn]] void refuseAgent(const QString& path, const QString& title, const QString& reason);

}  // namespace lens
