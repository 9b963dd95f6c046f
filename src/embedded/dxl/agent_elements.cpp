#include "embedded/dxl/agent_elements.h"

#include "embedded/dxl/datetime_element.h"
#include "embedded/dxl/item_elements.h"
#include "notes/literals.h"

namespace lens {

namespace {

constexpr double kFormulaAgent = 65412, kScriptAgent = 65413, kJavaAgent = 65427, kNoCode = -1;

}  // namespace

AgentReader::AgentReader(const DesignKind& kind, ReadContext& context, Note& note)
    : DesignReader(kind, context, note) {
  uses({u"enabled", u"runaswebuser", u"restrictions", u"storehighlights", u"clientbackgroundthread"});
  if (flag(u"storehighlights")) schedule_.flags |= agentflag::StoreHighlights;
}

bool AgentReader::readChild() {
  if (in_.is(u"trigger")) {
    readTrigger();
  } else if (in_.is(u"documentset")) {
    readDocumentSet();
  } else if (in_.is(u"designchange")) {
    designChange_ = readTime();
  } else if (in_.is(u"code")) {
    readCode();
  } else {
    return false;
  }
  return true;
}

// A search that narrows the set has no place in the records made here.
void AgentReader::readDocumentSet() {
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  schedule_.search = searchOf(in_.attribute(u"type"));
  if (in_.flag(u"storehighlights")) schedule_.flags |= agentflag::StoreHighlights;
  in_.close();
  keepUnlessRead(context_, note_, u"documentset"_s, records);
}

void AgentReader::readTrigger() {
  const QString type = in_.attribute(u"type");
  schedule_.trigger = triggerOf(type);
  if (type == u"agentlist") {
    schedule_.flags |= agentflag::Hidden;
    listed_ = false;
  }
  while (in_.nextChild()) {
    if (in_.is(u"schedule"))
      readSchedule();
    else
      keepElement(context_, note_);
  }
}

// What the records have no place for is kept with the element.
void AgentReader::readSchedule() {
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  readScheduleAttributes();
  while (in_.nextChild()) {
    if (!readScheduleTime()) in_.passOver();
  }
  keepUnlessRead(context_, note_, u"schedule"_s, records);
}

void AgentReader::readScheduleAttributes() {
  const QString type = in_.attribute(u"type");
  schedule_.intervalType = intervalOf(type);
  if (type == u"automatic") in_.markUnread(u"type");
  schedule_.interval = schedule_.intervalType == 0 ? 0 : 1;
  if (schedule_.intervalType == 1) {
    schedule_.interval =
        quint16(in_.attribute(u"hours").toUShort() * 60 + in_.attribute(u"minutes").toUShort());
    schedule_.time2 = kHundredthsPerDay;
  }
  if (schedule_.intervalType == 3) schedule_.time2 = weekdayOf(in_.attribute(u"dayofweek"));
  if (schedule_.intervalType == 4) schedule_.time2 = in_.attribute(u"dateinmonth").toUInt();
  if (!in_.flag(u"onweekends", true)) schedule_.flags |= agentflag::NoWeekends;
  const QString location = in_.attribute(u"runlocation");
  if (location == u"choose") schedule_.flags |= agentflag::ChooseServer;
  runServer_ = location == u"any" ? u"*"_s : in_.attribute(u"runserver");
  const bool told =
      location == u"any" || location == u"choose" || (location == u"specific" && !runServer_.isEmpty());
  if (!told) in_.markUnread(u"runlocation");
}

bool AgentReader::readScheduleTime() {
  if (in_.is(u"starttime"))
    schedule_.time1 = readTimeOfDay();
  else if (in_.is(u"startdate"))
    schedule_.start = readTime();
  else if (in_.is(u"enddate"))
    schedule_.end = readTime();
  else if (in_.is(u"endtime")) {
    // The second number of the other schedules is a day.
    const quint32 end = readTimeOfDay();
    if (schedule_.intervalType == 1)
      schedule_.time2 = end;
    else
      in_.markRecordIncomplete();
  } else {
    return false;
  }
  return true;
}

TimeDate AgentReader::readTime() {
  TimeDate time{};
  while (in_.nextChild()) time = readDatetime(context_, u"the schedule of an agent"_s);
  return time;
}

quint32 AgentReader::readTimeOfDay() {
  const TimeDate time = readTime();
  return hasClock(time) ? time.innards[0] : 0;
}

void AgentReader::readCode() {
  const bool records = !in_.recording();
  if (records) in_.startRecording();
  const QString event = in_.attribute(u"event");
  while (in_.nextChild()) {
    if (in_.is(u"formula") && formula_.isEmpty()) {
      formula_ = readFormula(context_, u"the formula of an agent"_s).mid(2);
      if (event != u"action") in_.markRecordIncomplete();
    } else if (in_.is(u"lotusscript")) {
      script_.add(event, in_.readText());
    } else {
      java_ = java_ || in_.is(u"javaproject");
      in_.passOver();
    }
  }
  keepUnlessRead(context_, note_, u"code"_s, records);
}

QString AgentReader::agentFlags() const {
  QString flags = flag(u"enabled", true) ? u"E"_s : u"D"_s;
  if (!listed_) flags += u'H';
  if (flag(u"private")) flags += u'P';
  if (flag(u"clientbackgroundthread")) flags += u'T';
  flags += flag(u"runaswebuser") ? u'u' : u's';
  return flags;
}

void AgentReader::finish() {
  const bool script = !script_.isEmpty();
  if (script) addFlags(u"L");
  if (java_) addFlags(u"J");
  if (schedule_.trigger == 1 || schedule_.trigger == 8) addFlags(u"S");
  if (schedule_.trigger == 3) addFlags(u"I");
  if (schedule_.trigger == 2 || schedule_.trigger == 6) addFlags(u"E");
  const double type = script               ? kScriptAgent
                      : java_              ? kJavaAgent
                      : formula_.isEmpty() ? kNoCode
                                           : kFormulaAgent;
  const QString restrictions = attribute(u"restrictions");
  const double restricted = restrictions == u"unrestricted"            ? 0
                            : restrictions == u"fulladminunrestricted" ? 2
                                                                       : 1;
  add(u"$AssistType"_s, itemflag::Summary, numberValue(type));
  add(u"$AssistLastRun"_s, 0, timeValue(TimeDate{}));
  add(u"$AssistDocCount"_s, itemflag::Summary, numberValue(0));
  addText(u"$FlagsExt"_s, QString());
  addText(u"$AssistFlags"_s, agentFlags());
  addText(u"$AssistTrigger"_s, QString::number(schedule_.trigger));
  add(u"$AssistInfo"_s, 0, assistInfoValue(schedule_));
  add(u"$AssistQuery"_s, 0, emptyQueryValue());
  add(u"$AssistAction"_s, 0,
      script               ? scriptActionValue(script_.text())
      : formula_.isEmpty() ? emptyActionValue()
                           : formulaActionValue(formula_));
  add(u"$Restricted"_s, itemflag::Summary, numberValue(restricted));
  if (!runServer_.isEmpty()) addText(u"$MachineName"_s, runServer_);
  if (designChange_.innards[1] != 0) add(u"$AssistVersion"_s, itemflag::Summary, timeValue(designChange_));
  DesignReader::finish();
}

}  // namespace lens
