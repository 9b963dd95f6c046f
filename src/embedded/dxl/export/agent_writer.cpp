#include "embedded/dxl/export/design_children.h"
#include "embedded/dxl/export/formula_writer.h"
#include "embedded/dxl/export/script_parts.h"
#include "embedded/format/agent_records.h"
#include "embedded/format/item_value.h"
#include "embedded/format/lmbcs.h"
#include "embedded/format/source_formula.h"
#include "notes/literals.h"

namespace lens {

namespace {

// The data of the records of one kind behind the header of "$AssistAction".
QByteArray actionData(const Note& note, quint8 wanted, bool wideSize) {
  const Item* const item = note.find(u"$AssistAction");
  if (!item || item->value.size() < 4 || item->type() != itemtype::Action) return {};
  QByteArray all;
  ByteReader reader(item->data());
  reader.skip(2);
  while (reader.left() >= 8) {
    const quint8 kind = reader.u8();
    reader.skip(3 + 4);
    const quint32 size = wideSize ? reader.u32() : reader.u16();
    const QByteArrayView data = reader.take(size);
    if (reader.failed() || kind != wanted) return {};
    all.append(data);
    if (size % 2 != 0) reader.skip(1);
  }
  return all;
}

QString triggerWord(const AgentSchedule& schedule) {
  if (schedule.trigger == triggerOf(u"agentlist"))
    return schedule.flags & agentflag::Hidden ? u"agentlist"_s : u"actionsmenu"_s;
  for (const QStringView word :
       {u"scheduled", u"afternewmail", u"docpaste", u"docupdate", u"beforenewmail", u"serverstart"}) {
    if (triggerOf(word) == schedule.trigger) return word.toString();
  }
  return u"actionsmenu"_s;
}

QString documentSetWord(const AgentSchedule& schedule) {
  for (const QStringView word :
       {u"modified", u"unreadinview", u"allinview", u"selected", u"runonce", u"all"}) {
    if (searchOf(word) == schedule.search) return word.toString();
  }
  return {};
}

TimeDate timeOfDay(quint32 hundredths) {
  return timeDateOfTime(QTime::fromMSecsSinceStartOfDay(int(qMin(hundredths, kHundredthsPerDay - 1)) * 10));
}

void writeScheduleAttributes(DxlWriter& out, const AgentSchedule& schedule, const QString& server) {
  for (const QStringView word : {u"byminutes", u"daily", u"weekly", u"monthly"}) {
    if (intervalOf(word) == schedule.intervalType) out.attribute(u"type"_s, word.toString());
  }
  if (schedule.intervalType == 1) {
    out.attribute(u"hours"_s, QString::number(schedule.interval / 60));
    out.attribute(u"minutes"_s, QString::number(schedule.interval % 60));
  }
  for (const QStringView day :
       {u"sunday", u"monday", u"tuesday", u"wednesday", u"thursday", u"friday", u"saturday"}) {
    if (schedule.intervalType == 3 && weekdayOf(day) == schedule.time2)
      out.attribute(u"dayofweek"_s, day.toString());
  }
  if (schedule.intervalType == 4) out.attribute(u"dateinmonth"_s, QString::number(schedule.time2));
  if (schedule.flags & agentflag::NoWeekends) out.flag(u"onweekends"_s, false);
  if (server == u"*")
    out.attribute(u"runlocation"_s, u"any"_s);
  else if (schedule.flags & agentflag::ChooseServer)
    out.attribute(u"runlocation"_s, u"choose"_s);
  else if (!server.isEmpty())
    out.attribute(u"runlocation"_s, u"specific"_s);
  if (!server.isEmpty() && server != u"*") out.attribute(u"runserver"_s, server);
}

void writeSchedule(DxlWriter& out, const AgentSchedule& schedule, const QString& server) {
  out.begin(u"schedule"_s);
  writeScheduleAttributes(out, schedule, server);
  if (schedule.time1 != 0) out.time(u"starttime"_s, timeOfDay(schedule.time1));
  if (schedule.intervalType == 1 && schedule.time2 < kHundredthsPerDay)
    out.time(u"endtime"_s, timeOfDay(schedule.time2));
  if (!isClearedTime(schedule.start)) out.time(u"startdate"_s, schedule.start);
  if (!isClearedTime(schedule.end)) out.time(u"enddate"_s, schedule.end);
  out.end();
}

void addTrigger(DesignContent& content, const AgentSchedule& schedule, const QStringList& keptSchedules) {
  const QString server = content.note().text(u"$MachineName");
  content.write(u"trigger"_s, [&](DxlWriter& out) {
    out.begin(u"trigger"_s);
    out.attribute(u"type"_s, triggerWord(schedule));
    if (!keptSchedules.isEmpty())
      out.verbatim(keptSchedules.first());
    else if (schedule.intervalType >= 1 && schedule.intervalType <= 4)
      writeSchedule(out, schedule, server);
    out.end();
  });
  const QString documents = documentSetWord(schedule);
  if (content.has(u"documentset") || documents.isEmpty()) return;
  content.write(u"documentset"_s, [&](DxlWriter& out) {
    out.begin(u"documentset"_s);
    out.attribute(u"type"_s, documents);
    out.end();
  });
}

void addAgentAttributes(DesignContent& content, const AgentSchedule& schedule) {
  const Note& note = content.note();
  const QString flags = note.text(u"$AssistFlags");
  if (flags.startsWith(u'D')) content.attribute(u"enabled"_s, u"false"_s);
  if (flags.endsWith(u'u')) content.attribute(u"runaswebuser"_s, u"true"_s);
  if (flags.contains(u'T')) content.attribute(u"clientbackgroundthread"_s, u"true"_s);
  if (schedule.flags & agentflag::StoreHighlights) content.attribute(u"storehighlights"_s, u"true"_s);
  const Item* const restricted = note.find(u"$Restricted");
  if (restricted && restricted->value == numberValue(0))
    content.attribute(u"restrictions"_s, u"unrestricted"_s);
  if (restricted && restricted->value == numberValue(2))
    content.attribute(u"restrictions"_s, u"fulladminunrestricted"_s);
}

}  // namespace

void addAgentContent(DesignContent& content, const QStringList& keptSchedules) {
  const Note& note = content.note();
  AgentSchedule schedule;
  const Item* const info = note.find(u"$AssistInfo");
  if (!info || info->value.size() < 2 || info->type() != itemtype::AssistantInfo ||
      !readAssistInfo(info->data(), schedule))
    return;
  addAgentAttributes(content, schedule);
  const Item* const version = note.find(u"$AssistVersion");
  if (version && version->value.size() == 10 && version->type() == itemtype::Time) {
    content.write(u"designchange"_s,
                  [&](DxlWriter& out) { out.time(u"designchange"_s, readTimeDate(version->data().data())); });
  }
  addTrigger(content, schedule, keptSchedules);
  const QByteArray formula = actionData(note, agentrecord::Formula, false);
  if (!formula.isEmpty() && !content.children().contains(u"<formula"))
    content.write(u"code"_s, [&](DxlWriter& out) { writeFormulaCode(out, u"action"_s, formula); });
  const QString script = fromLmbcs(actionData(note, agentrecord::Script, true));
  if (!script.isEmpty() && !content.has(u"code")) addScriptParts(content, script);
}

bool hasSourceInAction(const Note& note) {
  QString source;
  return readSourceFormula(actionData(note, agentrecord::Formula, false), source);
}

}  // namespace lens
