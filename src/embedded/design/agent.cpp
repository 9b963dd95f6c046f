#include "embedded/design/agent.h"

#include <cmath>

#include "embedded/formula/compiled/stored_formula.h"
#include "embedded/richtext/rich_records.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr quint16 kRecordType = 0xFF00;  // and the kind of the record make the type of an agent

// The first record behind the header; empty when there is none.
QByteArrayView firstAction(QByteArrayView data) {
  while (!data.isEmpty()) {
    const qsizetype length = richrecord::wholeLength(data);
    if (length == 0) return {};
    if (quint8(data[0]) != agentrecord::Header) return data.first(length);
    data = data.sliced(qMin(data.size(), length + length % 2));
  }
  return {};
}

int agentType(const Note& note) {
  const Item* type = note.find(u"$AssistType");
  const Value values = type ? itemValues(*type) : Value();
  if (!values.isArray() || values.at(0).kind() != Value::Kind::Number) return 0;
  const double number = values.at(0).number();
  return std::abs(number) < 0x10000 ? int(number) : 0;
}

QString whyNoFormula(const Note& note, QByteArrayView action) {
  const int type = agentType(note);
  const quint8 record = action.isEmpty() ? 0 : quint8(action[0]);
  if (record == agentrecord::Script || type == (kRecordType | agentrecord::Script))
    return u"it is written in LotusScript, and only formulas run here"_s;
  if (record == agentrecord::Java || type == (kRecordType | agentrecord::Java))
    return u"it is written in Java, and only formulas run here"_s;
  if (record != 0) return u"it consists of simple actions, and only formulas run here"_s;
  return u"it has no formula"_s;
}

// The source text; otherwise why there is none.
bool readSource(const Note& note, QString& source, QString& why) {
  const Item* const item = note.find(u"$AssistAction");
  const QByteArrayView action = item && item->value.size() >= 2 && item->type() == itemtype::Action
                                    ? firstAction(item->data())
                                    : QByteArrayView();
  if (!isFormulaAction(action)) {
    why = whyNoFormula(note, action);
    return false;
  }
  FormulaAction stored;
  if (!readFormulaAction(action, stored))
    why = u"its formula is damaged"_s;
  else if (stored.flags != 0)
    why = u"it selects documents or works on copies, and only changing documents is possible"_s;
  if (!why.isEmpty()) return false;
  const formula::CompiledReading reading = formula::readStored(stored.formula, formula::ShownSelect::Always);
  if (!reading.canRun()) why = u"its formula is there in compiled form only: "_s + reading.problem;
  source = reading.source;
  return why.isEmpty();
}

// The query is a header with flags, then the conditions.
bool hasConditions(const Note& note) {
  constexpr qsizetype kHeaderSize = 6;
  const Item* const query = note.find(u"$AssistQuery");
  return query && query->value.size() - 2 > kHeaderSize;
}

bool readSettings(const Note& note, AgentSchedule& settings) {
  const Item* const info = note.find(u"$AssistInfo");
  return info && info->value.size() >= 2 && info->type() == itemtype::AssistantInfo &&
         readAssistInfo(info->data(), settings);
}

TimeDate readLastRun(const Note& note) {
  const Item* const time = note.find(u"$AssistLastRun");
  if (!time || time->value.size() < 10 || time->type() != itemtype::Time) return {};
  return readTimeDate(time->data().data());
}

}  // namespace

void refuseAgent(const QString& path, const QString& title, const QString& reason) {
  throw RuntimeError(agentfault::CannotRun,
                     u"%1: the agent \"%2\" cannot run: %3"_s.arg(path, title, reason));
}

Agent readFormulaAgent(const Note& note, const QString& path) {
  Agent agent;
  agent.title = note.text(u"$TITLE");
  QString why;
  if (!readSource(note, agent.formula, why)) refuseAgent(path, agent.title, why);
  if (!readSettings(note, agent.settings))
    refuseAgent(path, agent.title, u"its settings are missing or damaged"_s);
  if (hasConditions(note))
    refuseAgent(path, agent.title,
                u"it has search conditions, which are not understood; without them it would "
                "run on too many documents"_s);
  agent.lastRun = readLastRun(note);
  return agent;
}

}  // namespace lens
