#include "embedded/format/agent_records.h"

#include <utility>

#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"

namespace lens {

namespace {

constexpr quint16 kVersion = 1;
constexpr int kSpareWords = 16;
// Text of one script record; its length word holds 16 bits.
constexpr qsizetype kScriptPiece = 60000;

QByteArray actionHead(quint16 type) {
  QByteArray value;
  appendU16(value, type);
  return value.append("\x81\x02", 2);
}

quint16 numberOf(QStringView word, std::initializer_list<std::pair<QStringView, quint16>> words) {
  for (const auto& [known, number] : words) {
    if (word == known) return number;
  }
  return 0;
}

}  // namespace

QByteArray assistInfoValue(const AgentSchedule& schedule) {
  QByteArray value;
  appendU16(value, itemtype::AssistantInfo);
  for (const quint16 word :
       {kVersion, schedule.trigger, schedule.search, schedule.intervalType, schedule.interval})
    appendU16(value, word);
  appendU32(value, schedule.time1);
  appendU32(value, schedule.time2);
  appendTimeDate(value, schedule.start);
  appendTimeDate(value, schedule.end);
  appendU32(value, schedule.flags);
  for (int i = 0; i < kSpareWords; ++i) appendU32(value, 0);
  return value;
}

bool readAssistInfo(QByteArrayView data, AgentSchedule& schedule) {
  ByteReader reader(data);
  AgentSchedule read;
  reader.skip(2);
  for (quint16* const word : {&read.trigger, &read.search, &read.intervalType, &read.interval})
    *word = reader.u16();
  read.time1 = reader.u32();
  read.time2 = reader.u32();
  read.start = reader.time();
  read.end = reader.time();
  read.flags = reader.u32();
  if (reader.failed()) return false;
  schedule = read;
  return true;
}

bool isFormulaAction(QByteArrayView record) {
  if (record.isEmpty()) return false;
  const quint8 kind = quint8(record[0]);
  return kind == agentrecord::Formula || kind == agentrecord::FormulaOnly;
}

bool readFormulaAction(QByteArrayView record, FormulaAction& action) {
  ByteReader reader(record);
  reader.skip(4);
  action.flags = reader.u32();
  const quint16 size = reader.u16();
  action.formula = reader.take(size);
  return isFormulaAction(record) && !reader.failed();
}

QByteArray withActionFormula(QByteArrayView record, QByteArrayView formula) {
  constexpr qsizetype kHead = 10, kMostBytes = 0xFFFF;
  FormulaAction action;
  if (!readFormulaAction(record, action)) return record.toByteArray();
  const QByteArrayView behind = record.sliced(kHead + action.formula.size());
  const qsizetype size = kHead + formula.size() + behind.size();
  if (size > kMostBytes) return record.toByteArray();
  QByteArray bytes = record.first(2).toByteArray();
  appendU16(bytes, quint16(size));
  appendU32(bytes, action.flags);
  appendU16(bytes, quint16(formula.size()));
  return bytes.append(formula).append(behind);
}

QByteArray formulaActionValue(const QByteArray& formula) {
  constexpr qsizetype kHead = 10, kLongest = 0xFFFF - kHead;
  QByteArray value = actionHead(itemtype::Action);
  if (formula.size() > kLongest) return value;
  value.append("\x84\xFF", 2);
  appendU16(value, quint16(kHead + formula.size()));
  appendU32(value, 0);
  appendU16(value, quint16(formula.size()));
  return value + formula;
}

QByteArray scriptActionValue(const QString& source) {
  constexpr qsizetype kHead = 12;
  QByteArray value = actionHead(itemtype::Action);
  const QByteArray script = toLmbcs(source);
  for (qsizetype at = 0; at < script.size(); at += kScriptPiece) {
    const QByteArray piece = script.mid(at, kScriptPiece);
    value.append("\x85\xFF", 2);
    appendU16(value, quint16(kHead + piece.size()));
    appendU32(value, 0);
    appendU32(value, quint32(piece.size()));
    value += piece;
    if (piece.size() % 2 != 0) value.append('\0');
  }
  return value;
}

QByteArray emptyActionValue() {
  return actionHead(itemtype::Action);
}

QByteArray emptyQueryValue() {
  QByteArray value;
  appendU16(value, itemtype::Query);
  value.append("\x81\x06", 2);
  appendU32(value, 0);
  return value;
}

quint16 triggerOf(QStringView type) {
  return numberOf(type, {{u"scheduled", 1},
                         {u"afternewmail", 2},
                         {u"docpaste", 3},
                         {u"actionsmenu", 4},
                         {u"agentlist", 4},
                         {u"docupdate", 5},
                         {u"beforenewmail", 6},
                         {u"serverstart", 8}});
}

quint16 searchOf(QStringView documentSet) {
  return numberOf(documentSet, {{u"all", 1},
                                {u"new", 2},
                                {u"modified", 3},
                                {u"selected", 4},
                                {u"allinview", 5},
                                {u"unreadinview", 6},
                                {u"prompt", 7},
                                {u"runonce", 8}});
}

quint16 intervalOf(QStringView schedule) {
  return numberOf(schedule, {{u"byminutes", 1}, {u"daily", 2}, {u"weekly", 3}, {u"monthly", 4}});
}

quint32 weekdayOf(QStringView day) {
  return numberOf(day, {{u"sunday", 1},
                        {u"monday", 2},
                        {u"tuesday", 3},
                        {u"wednesday", 4},
                        {u"thursday", 5},
                        {u"friday", 6},
                        {u"saturday", 7}});
}

}  // namespace lens
