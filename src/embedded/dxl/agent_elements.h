// Agents.
#pragma once

#include "embedded/dxl/design_reader.h"
#include "embedded/format/agent_records.h"

namespace lens {

class AgentReader : public DesignReader {
 public:
  AgentReader(const DesignKind& kind, ReadContext& context, Note& note);
  bool readChild() override;
  void finish() override;

 private:
  void readDocumentSet();
  void readTrigger();
  void readSchedule();
  void readScheduleAttributes();
  bool readScheduleTime();
  void readCode();
  TimeDate readTime();
  quint32 readTimeOfDay();
  QString agentFlags() const;

  AgentSchedule schedule_;
  ScriptText script_;
  QByteArray formula_;
  bool java_ = false;
  bool listed_ = true;  // in the menu; otherwise only in the list of agents
  QString runServer_;
  TimeDate designChange_{};
};

}  // namespace lens
