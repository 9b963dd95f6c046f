#include "shell/low_level_reading.h"

#include "notes/code_page.h"
#include "notes/note_reading.h"
#include "notes/numbers.h"
#include "shell/text_routines.h"

namespace lens {

LowLevelReading::LowLevelReading(Form1& form, Globals& state, CApi& api, Host& host, Routines& routines)
    : form_(form), state_(state), api_(api), host_(host), routines_(routines) {}

// The note is not closed: closing the database ends it.
void LowLevelReading::withStoredItem(const QString& name, const std::function<void(const StoredItem&)>& use) {
  // NotesTerm runs also where the library was never reached.
  const NotesTermAtEnd term(api_);
  DbHandle db = 0;
  bool failed = false;
  try {
    const Object database = state_.gDoc.get(QStringLiteral("PARENTDATABASE")).object();
    api_.NotesInitExtended(0, QByteArray());
    api_.NSFDbOpen(networkPath(api_, database.get(QStringLiteral("server")).text(),
                               database.get(QStringLiteral("FILEPATH")).text()),
                   db);
    NoteHandle note = 0;
    if (db != 0) api_.NSFNoteOpen(db, hexToInt32(state_.gDoc.get(QStringLiteral("NoteID")).text()), 0, note);
    if (note != 0) {
      const QByteArray itemName = toCodePage(name);
      StoredItem item;
      BlockId block;
      if (api_.NSFItemInfo(note, itemName, quint16(itemName.size()), block, item.type, item.value,
                           item.length) == 0)
        use(item);
    }
  } catch (const RuntimeError& error) {
    host_.messageBox(error.description());
    failed = true;
  }
  // A failure closes even what was never opened; a database that could not be opened is passed over.
  if (db != 0 || failed) api_.NSFDbClose(db);
}

qint64 LowLevelReading::ItemSizeOf(const QString& name) {
  qint64 size = 0;
  withStoredItem(name, [&](const StoredItem& item) {
    if (item.type == kObjectItem) {
      const QString key = trimBlanks(routines_.RightFrom(form_.fldList->text(), QStringLiteral(":")));
      size = toInt32(state_.gAttachmentSizes.item(key));
    } else {
      size = contentLength(item.type, item.length);
    }
  });
  return size;
}

QString LowLevelReading::DecodeAssistAction(const QString&) {
  QString text;
  withStoredItem(QStringLiteral("$AssistAction"), [&](const StoredItem& item) {
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
  // The last field is the count; the byte at the pointer itself is never read.
  const qsizetype left = qsizetype(item.length) - (pointer + 1 - start);
  return left > 0 ? legibleText(QByteArrayView(pointer + 1, left), qint16(fields[3])) : QString();
}

}  // namespace lens
