// The records of agents: when and on what an agent runs, and what it does.
#pragma once

#include <QByteArray>
#include <QString>

#include "embedded/format/timedate.h"

namespace lens {

struct AgentSchedule {
  quint16 trigger = 0, search = 0, intervalType = 0, interval = 0;
  quint32 time1 = 0, time2 = 0;  // hundredths of a second since midnight; or a day, see intervalType
  TimeDate start{}, end{};
  quint32 flags = 0;
};

namespace agentflag {
inline constexpr quint32 Hidden = 1, NoWeekends = 2, StoreHighlights = 4, ChooseServer = 0x10;
}

// "$AssistInfo", type word included: 104 bytes.
QByteArray assistInfoValue(const AgentSchedule& schedule);
// The reverse, without the type word. False when it is cut short.
bool readAssistInfo(QByteArrayView data, AgentSchedule& schedule);

// Kinds of the records in "$AssistAction"; types of agents are numbered after them.
namespace agentrecord {
inline constexpr quint8 Header = 0x81, Formula = 0x84, Script = 0x85, FormulaOnly = 0x92, Java = 0x93;
}

// A record that runs a formula: u8 kind, FFh, u16 length, u32 flags, u16 size of the formula, the formula.
struct FormulaAction {
  quint32 flags = 0;       // any: it selects documents, or works on copies
  QByteArrayView formula;  // compiled or as source
};
bool isFormulaAction(QByteArrayView record);
// False when the record is shorter than its sizes say.
bool readFormulaAction(QByteArrayView record, FormulaAction& action);
// The same record with another formula; as it is when it is damaged, or would be longer than its sizes can
// say.
QByteArray withActionFormula(QByteArrayView record, QByteArrayView formula);

// "$AssistAction" and "$AssistQuery", type words included.
QByteArray formulaActionValue(const QByteArray& formula);
QByteArray scriptActionValue(const QString& source);
QByteArray emptyActionValue();
QByteArray emptyQueryValue();

// Numbers for the words of the triggers, document sets and kinds of schedule; 0 for unknown words.
quint16 triggerOf(QStringView type);
quint16 searchOf(QStringView documentSet);
quint16 intervalOf(QStringView schedule);
// 1 = Sunday; 0 for an unknown word.
quint32 weekdayOf(QStringView day);

}  // namespace lens
