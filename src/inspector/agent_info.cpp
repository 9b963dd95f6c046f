#include "inspector/agent_info.h"

#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/note_reading.h"
#include "shell/text_routines.h"

namespace lens {

AgentInfo::AgentInfo(Desk& desk) : desk_(desk) {}

// Each release has a box of its own, so that one that fails keeps no other handle open.
void AgentInfo::ShowAgentInfo(const NotesDatabase&, const QString& title) {
  Opened opened;
  Shown shown;
  Left left = Left::NoteToClose;
  withBox([&] { left = readAgent(title, opened, shown); });
  if (left == Left::NoteToClose) {
    withBox([&] { desk_.api.OSUnlockObject(opened.pool); });
    withBox([&] { desk_.api.NSFNoteClose(opened.note); });
  }
  withBox([&] { desk_.api.NSFDbClose(opened.db); });
  withBox([&] { desk_.api.NotesTerm(); });
  desk_.form.txtFieldContent->setText(
      agentRecordText(shown.record, shown.startTime, shown.endTime, desk_.host.regional()));
}

// What failed is told by the handles and the note ID alone; no status is looked at.
AgentInfo::Left AgentInfo::readAgent(const QString& title, Opened& opened, Shown& shown) {
  constexpr quint16 kAgents = 0x200;
  const NotesDatabase parent = desk_.state.gDoc.parentDatabase();
  desk_.api.NotesInitExtended(0, QByteArray());
  desk_.api.NSFDbOpen(networkPath(desk_.api, parent), opened.db);
  if (opened.db == 0) {
    desk_.host.messageBox(u"Can't open database"_s, box::Critical);
    return Left::NoteToClose;
  }
  const QString name = trimBlanks(title.left(title.indexOf(u'|')));
  qint32 noteId = 0;
  desk_.api.NIFFindDesignNote(opened.db, desk_.api.nativeName(name), kAgents, noteId);
  if (noteId == 0) {
    desk_.host.messageBox(u"Can't find agent "_s + name, box::Critical);
    return Left::DatabaseToClose;
  }
  desk_.api.NSFNoteOpen(opened.db, noteId, 0, opened.note);
  const QByteArray itemName("$AssistInfo");
  BlockId item, value;
  quint16 type = 0;
  quint32 length = 0;
  desk_.api.NSFItemInfo(opened.note, itemName, quint16(itemName.size()), item, type, value, length);
  opened.pool = value.pool;
  if (opened.pool != 0) readFields(opened, value, length, shown);
  return Left::NoteToClose;
}

// A date that cannot be read leaves its field empty, and the reading goes on.
void AgentInfo::readFields(const Opened& opened, BlockId block, quint32 length, Shown& shown) {
  const char* const memory = desk_.api.OSLockObject(opened.pool);
  if (memory) shown.record = readAgentRecord(QByteArrayView(memory + block.block, qsizetype(length)));
  Continue step;
  shown.startTime = dateText(step, shown.record.startTime);
  shown.endTime = dateText(step, shown.record.endTime);
  desk_.api.OSUnlockObject(opened.pool);
}

QString AgentInfo::dateText(Continue& step, const TimeDate& time) {
  constexpr quint16 kLimit = 80;
  QByteArray buffer(kLimit + 1, ' ');
  quint16 length = 0;
  QString text;
  step([&] { desk_.api.ConvertTIMEDATEToText(time, buffer, kLimit, length); });
  if (length == 0) return text;
  const Regional& regional = desk_.host.regional();
  step([&] { text = regional.text(regional.dateTime(fromCodePage(buffer.left(length)))); });
  return text;
}

template <class Body>
void AgentInfo::withBox(Body&& statements) {
  try {
    statements();
  } catch (const RuntimeError& error) {
    desk_.host.messageBox(standardErrorText(error.number()));
  }
}

}  // namespace lens
