// A database: one SQLite file, one row per note, attachments in chunks beside them.
//
// A save that returned is on disk (WAL, synchronous=FULL). Note IDs are steps of 4 and never reused;
// deletion leaves a stub unless told otherwise. A file of a newer schema, a file that is no database
// and a damaged row give a RuntimeError with the file's name; nothing is changed then. A file without
// write permission can be read; every change of it raises NotSaved. So does every change of a file that was
// deleted or replaced since it was opened.
//
// A Database belongs to the thread that opened it. Another thread opens the file for itself.
#pragma once

#include <QString>
#include <functional>
#include <memory>

#include "embedded/format/engine_fault.h"
#include "embedded/store/note_store.h"
#include "embedded/store/object_store.h"
#include "embedded/store/store_transaction.h"
#include "embedded/store/version_store.h"

struct sqlite3;

namespace lens {

class Arrival;     // arrival.h
class Connection;  // sqlite_statement.h
class HeldFile;    // host/held_file.h

// Properties of a database that are no notes.
struct DatabaseInfo {
  QString title;
  QString replicaId;     // 16 hexadecimal digits
  QString templateName;  // its own name as a template
  QString inheritsFrom;  // the template it takes its design from
  QString categories;
  bool publicAddressBook = false;
};

class Database {
 public:
  // Creates a new, empty database; raises 58 when the file exists.
  static std::shared_ptr<Database> create(const QString& path, const DatabaseInfo& info);
  // Raises 53 without such a file, 70 when it cannot be read. A database that this thread has open
  // already is shared: its transactions are then those of all who hold it.
  static std::shared_ptr<Database> open(const QString& path);
  // Whether this thread holds the database of that file.
  static bool isOpenHere(const QString& path);
  // Whether the file's head is that of one of our databases; reads the file, opens nothing.
  static bool looksLikeDatabase(const QString& path);
  // The properties of a database that may not be open: read without changing or migrating the file.
  // Raises what open() raises.
  static DatabaseInfo infoOf(const QString& path);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const QString& path() const { return path_; }
  // False for a file that can only be read; every change of it raises.
  bool isWritable() const;
  // Bytes on disk, once everything saved has found its place in the file.
  qint64 size() const;

  DatabaseInfo info() const;
  void setInfo(const DatabaseInfo& info);

  // What is in it. They belong to the open file: once it is removed, ask for them anew.
  NoteStore& notes() { return *notes_; }
  const NoteStore& notes() const { return *notes_; }
  ObjectStore& objects() { return *objects_; }
  const ObjectStore& objects() const { return *objects_; }
  VersionStore& versions() { return *versions_; }
  const VersionStore& versions() const { return *versions_; }

  class Transaction : public StoreTransaction {
   public:
    explicit Transaction(Database& database) : StoreTransaction(*database.session_) {}
  };
  // Whether somebody is in the middle of a transaction.
  bool isChanging() const;

  // Deletes the file with its journals. Raises when another process or thread has it open, in the middle
  // of a transaction and without write permission; the file is then as it was. Afterwards everything
  // that is asked of this object raises.
  void removeFile();
  // Gives the file another name on the same disk, where there is none yet. Raises as removeFile() does, 58
  // where there is a file, 76 without its directory; the file is then as it was. Afterwards it has to be
  // opened anew.
  void moveFile(const QString& to);
  // Whether the file was removed, or has another name.
  bool isRemoved() const;

  // Raises NotSaved when another program has deleted or replaced the file since it was opened, as every
  // change does from then on. What was saved before goes into the file that is open.
  void requireOwnFile();
  // After work for which the file was taken out of its journal's use.
  void renewJournal();

  // For what keeps tables of its own in the file (indexes), with statements of its own.
  Connection& connection();
  const Connection& connection() const;
  sqlite3* handle() const;

 private:
  friend class Arrival;
  explicit Database(const QString& path);
  void setSession(std::unique_ptr<StoreSession> session);
  bool isOnlyUser();
  bool takeFile(const std::function<bool()>& take);
  void giveUpFile(const QString& what, const std::function<bool()>& take);

  QString path_;
  std::unique_ptr<HeldFile> held_;  // until the session has closed it
  std::unique_ptr<StoreSession> session_;
  std::unique_ptr<VersionTable> versionTable_;
  std::unique_ptr<ObjectStore> objects_;
  std::unique_ptr<NoteStore> notes_;
  std::unique_ptr<VersionStore> versions_;
};

}  // namespace lens
