// Shows the schedule record of an agent in the content box. The object model hands over nothing for it,
// so the agent's note is opened through the C API, anew for every click.
#pragma once

#include <QString>

#include "inspector/agent_record.h"
#include "shell/desk.h"
#include "shell/error_modes.h"

namespace lens {

class AgentInfo {
 public:
  explicit AgentInfo(Desk& desk);

  // The agent is looked up by its title in the database of the current document; the database given is
  // not used. Where the record cannot be had the text shows one of zeros.
  void ShowAgentInfo(const NotesDatabase& database, const QString& title);

 private:
  struct Opened {
    DbHandle db = 0;
    NoteHandle note = 0;
    MemHandle pool = 0;
  };
  struct Shown {
    AgentRecord record;
    QString startTime, endTime;
  };
  enum class Left { NoteToClose, DatabaseToClose };

  Left readAgent(const QString& title, Opened& opened, Shown& shown);
  void readFields(const Opened& opened, BlockId block, quint32 length, Shown& shown);
  QString dateText(Continue& step, const TimeDate& time);
  template <class Body>
  void withBox(Body&& statements);

  Desk& desk_;
};

}  // namespace lens
