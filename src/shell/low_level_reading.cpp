#include "shell/low_level_reading.h"

#include "notes/literals.h"
#include "notes/note_reading.h"
#include "notes/numbers.h"
#include "shell/row_texts.h"
#include "shell/text_routines.h"

namespace lens {

LowLevelReading::LowLevelReading(Desk& desk) : desk_(desk) {}

// The note is not closed: closing the database ends it. A failure closes even what was never opened; a
// database that could not be opened is passed over.
void LowLevelReading::withStoredItem(const QString& name, const std::function<void(const StoredItem&)>& use) {
  // NotesTerm runs also where the library was never reached.
  const NotesTermAtEnd term(desk_.api);
  DbHandle db = 0;
  const bool failed = !withBox([&] { openStoredItem(name, db, use); });
  if (db != 0 || failed) withBox([&] { desk_.api.NSFDbClose(db); });
}

void LowLevelReading::openStoredItem(const QString& name, DbHandle& db,
                                     const std::function<void(const StoredItem&)>& use) {
  const NotesDatabase database = desk_.state.gDoc.parentDatabase();
  desk_.api.NotesInitExtended(0, QByteArray());
  desk_.api.NSFDbOpen(networkPath(desk_.api, database), db);
  if (db == 0) return;
  NoteHandle note = 0;
  desk_.api.NSFNoteOpen(db, hexToInt32(desk_.state.gDoc.noteId()), 0, note);
  if (note == 0) return;
  const QByteArray itemName = desk_.api.nativeName(name);
  StoredItem item;
  BlockId block;
  const Status status = desk_.api.NSFItemInfo(note, itemName, quint16(itemName.size()), block, item.type,
                                              item.value, item.length);
  if (status == 0) use(item);
}

bool LowLevelReading::withBox(const std::function<void()>& statements) {
  try {
    statements();
    return true;
  } catch (const RuntimeError& error) {
    const bool unsayable = error.number() == kUnsayableName;
    if (!unsayable || !told_.contains(error.description())) desk_.host.messageBox(error.description());
    if (unsayable) told_.insert(error.description());
    unsayable_ = unsayable_ || unsayable;
    return false;
  }
}

qint64 LowLevelReading::ItemSizeOf(const QString& name) {
  qint64 size = 0;
  unsayable_ = false;
  withStoredItem(name, [&](const StoredItem& item) {
    if (item.type == kObjectItem) {
      const QString key = trimBlanks(desk_.routines.RightFrom(desk_.form.fldList->text(), u":"_s));
      size = toInt32(desk_.state.gAttachmentSizes.item(key));
    } else {
      size = contentLength(item.type, item.length);
    }
  });
  return unsayable_ ? kUnknownSize : size;
}

QString LowLevelReading::DecodeAssistAction(const QString&) {
  QString text;
  withStoredItem(u"$AssistAction"_s, [&](const StoredItem& item) {
    text = readActionText(item);
    desk_.api.OSUnlockObject(item.value.pool);
  });
  return text;
}

QString LowLevelReading::readActionText(const StoredItem& item) {
  const char* const start = desk_.api.OSLockObject(item.value.pool) + item.value.block;
  const char* pointer = start;
  quint16 fields[4] = {};
  for (quint16& field : fields) desk_.api.ODSReadMemory(pointer, 0, &field, 1);
  // The last field is the count.
  return actionText(QByteArrayView(start, qsizetype(item.length)), pointer - start, qint16(fields[3]));
}

}  // namespace lens
