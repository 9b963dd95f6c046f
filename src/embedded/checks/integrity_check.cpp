#include "embedded/checks/integrity_check.h"

#include "embedded/store/sqlite_statement.h"
#include "notes/literals.h"

namespace lens {
namespace {

// Takes the bytes of an attachment, which are read for their checksum alone.
class Nowhere : public QIODevice {
 public:
  Nowhere() { open(QIODevice::WriteOnly); }

 protected:
  qint64 readData(char*, qint64) override { return -1; }
  qint64 writeData(const char*, qint64 size) override { return size; }
};

class IntegrityRun {
 public:
  IntegrityRun(Database& database, const std::function<void(const IntegrityFault&)>& tell)
      : database_(database), tell_(tell) {}

  IntegrityReport run(const CheckProgress& progress) {
    checkFile();
    report_.cancelled = !walkNotes(
        database_,
        [this](const Note& note) {
          checkNote(note);
          return true;
        },
        progress,
        [this](NoteId note, const QString& why) {
          fault(note, why);
          return true;
        });
    return report_;
  }

 private:
  void fault(NoteId note, const QString& what) {
    ++report_.faults;
    tell_({note, what});
  }

  // SQLite's own check of pages, rows and indexes; it says one word where all is well.
  void checkFile() {
    Statement check(database_.connection(), "PRAGMA integrity_check(100)", enginefault::Damaged);
    Statement::Run row(check);
    while (row.step())
      if (const QString found = row.text(0); found != u"ok") fault({}, found);
  }

  void checkNote(const Note& note) {
    ++report_.notes;
    for (const Item& item : note.items)
      if (item.type() == itemtype::Object) checkObject(note.header.id, item);
  }

  void checkObject(NoteId note, const Item& item) {
    const quint32 object = objectIdOf(item.data());
    FileObject file;
    const bool isFile = readFileValue(item.value, file);
    const QString name = isFile ? u"attachment \"%1\""_s.arg(file.name) : u"item \"%1\""_s.arg(item.name);
    // An agent's item leads to no object before its first run.
    if (object == 0 && !isFile) return;
    try {
      Nowhere nowhere;
      database_.objects().read(object, nowhere);
      report_.attachments += isFile;
    } catch (const RuntimeError& error) {
      fault(note, u"%1: %2"_s.arg(name, error.description()));
    }
  }

  Database& database_;
  const std::function<void(const IntegrityFault&)>& tell_;
  IntegrityReport report_;
};

}  // namespace

IntegrityReport checkIntegrity(Database& database, const std::function<void(const IntegrityFault&)>& tell,
                               const CheckProgress& progress) {
  return IntegrityRun(database, tell).run(progress);
}

}  // namespace lens
