#include "shell/low_level_reading.h"

#include "notes/code_page.h"
#include "notes/literals.h"
#include "notes/note_reading.h"
#include "notes/numbers.h"
#include "shell/text_routines.h"

namespace lens {

LowLevelReading::LowLevelReading(Form1& form, Globals& state, CApi& api, Host& host, Routines& routines)
    : form_(form), state_(state), api_(api), host_(host), routines_(routines) {}

// The note is not closed: closing the database ends it. A failure closes even what was never opened; a
// database that could not be opened is passed over.
void LowLevelReading::withStoredItem(const QString& name, const std::function<void(const StoredItem&)>& use) {
  // NotesTerm runs also where the library was never reached.
  const NotesTermAtEnd term(api_);
  DbHandle db = 0;
  const bool failed = !withBox([&] { openStoredItem(name, db, use); });
  if (db != 0 || failed) withBox([&] { api_.NSFDbClose(db); });
}

void LowLevelReading::openStoredItem(const QString& name, DbHandle& db,
                                     const std::function<void(const StoredItem&)>& use) {
  const NotesDatabase database = state_.gDoc.parentDatabase();
  api_.NotesInitExtended(0, QByteArray());
  api_.NSFDbOpen(networkPath(api_, database), db);
  if (db == 0) return;
  NoteHandle note = 0;
  api_.NSFNoteOpen(db, hexToInt32(state_.gDoc.noteId()), 0, note);
  if (note == 0) return;
  const QByteArray itemName = toCodePage(name);
  StoredItem item;
  BlockId block;
  const Status status =
      api_.NSFItemInfo(note, itemName, quint16(itemName.size()), block, item.type, item.value, item.length);
  if (status == 0) use(item);
}

bool LowLevelReading::withBox(const std::function<void()>& statements) {
  try {
    statements();
    return true;
  } catch (const RuntimeError& error) {
    host_.messageBox(error.description());
    return false;
  }
}

qint64 LowLevelReading::ItemSizeOf(const QString& name) {
  qint64 size = 0;
  withStoredItem(name, [&](const StoredItem& item) {
    if (item.type == kObjectItem) {
      const QString key = trimBlanks(routines_.RightFrom(form_.fldList->text(), u":"_s));
      size = toInt32(state_.gAttachmentSizes.item(key));
    } else {
      size = contentLength(item.type, item.length);
    }
  });
  return size;
}

QString LowLevelReading::DecodeAssistAction(const QString&) {
  QString text;
  withStoredItem(u"$AssistAction"_s, [&](const StoredItem& item) {
    text = readActionText(item);
    api_.OSUnlockObject(item.value.pool);
  });
  return text;
}

QString LowLevelReading::readActionText(const StoredItem& item) {
  const char* const start = api_.OSLockObject(item.value.pool) + item.value.block;
  const char* pointer = start;
  quint16 fields[4] = {};
  for (quint16& field : fields) api_.ODSReadMemory(pointer, 0, &field, 1);
  // The last field is the count.
  return actionText(QByteArrayView(start, qsizetype(item.length)), pointer - start, qint16(fields[3]));
}

}  // namespace lens
