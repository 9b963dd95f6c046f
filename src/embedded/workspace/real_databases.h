// Real databases of the platform in a workspace: each is read once into a store of ours that nobody changes,
// and opened from there as long as the file stays as it was.
//
//   cache/nsf/<path>-<state>/         digests; the copy under the file's own name, report.json and report.txt
//   cache/nsf/<path>-<state>-words/   the same with a full-text index, which takes its place
#pragma once

#include <QHash>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "embedded/store/database.h"

namespace lens {

// What a reader of such a copy wants to know.
struct RealDatabase {
  QString source;         // the file
  QString reportText;     // what was found in it, for people
  QByteArray reportJson;  // the same for programs
  int notesFound = 0, notesRead = 0;
  bool isComplete = true;  // all that was found could be shown

  // "read-only copy of mail.nsf, 118 of 120 notes read"
  QString line() const;
  // "118 of 120 notes read: not all that the file holds can be shown"; "" where all can.
  QString warning() const;
};

// What whoever opens real databases wants to know. Either may be empty.
struct RealDatabaseWatch {
  // How far the reading of a file is, in notes; of all, 0 where that is not known yet. False ends it.
  std::function<bool(const QString& file, qint64 done, qint64 all)> reading;
  // Once for each copy.
  std::function<void(const RealDatabase& opened)> opened;
};

class RealDatabases {
 public:
  explicit RealDatabases(QString workspace) : directory_(std::move(workspace)) {}

  // Whether a file is one by its first bytes. Files that are open here are ours.
  static bool isReal(const QString& path);
  static DatabaseInfo infoOf(const QString& path);

  void setWatch(RealDatabaseWatch watch) { watch_ = std::move(watch); }

  // Its copy, which is made first where there is none of this state of the file. Raises CannotOpen where the
  // file cannot be read, is encrypted or has a layout that is not known, or where the watch ends it;
  // NotADatabase or Damaged where it is refused for that, each with the reason; and what writing the copy
  // raises.
  std::shared_ptr<Database> open(const QString& path);
  // Whether open() finds a copy of the file as it is now, and need not read it. Raises as open().
  bool isRead(const QString& path) const;
  // Makes the copy for a later open(). May run on any thread, and asks "go" all the time. False when that
  // ended it; nothing is left then. Raises as open().
  bool read(const QString& path, const std::function<bool(qint64 done, qint64 all)>& go) const;
  // The copy that was opened last, of a file that is not there any more: all but its attachments can be read.
  // Null where none was opened.
  std::shared_ptr<Database> openWithoutSource(const QString& path);
  // Makes a full-text index for a copy that was opened: in another copy, which is the one that is opened from
  // then on. May run on any thread. False when the work was ended early; nothing is left then. Raises what
  // writing a database raises.
  static bool indexCopy(const QString& copy, const std::function<bool(qint64 done, qint64 total)>& go);
  // Of a copy that was opened; none for every other database.
  std::optional<RealDatabase> describe(const Database& database) const;

 private:
  QString root() const { return directory_ + QStringLiteral("/cache/nsf"); }
  void removeEarlier(const QString& prefix, const QString& except) const;
  // Null where there is no copy of the present state that can be read.
  std::shared_ptr<Database> openKept(const QString& path);
  void remember(const Database& copy, const QString& folder, const QString& source);

  QString directory_;
  RealDatabaseWatch watch_;
  QHash<QString, RealDatabase> known_;  // by the path of the copy
  QHash<QString, QString> copies_;      // by the path of the file as it was asked for
};

}  // namespace lens
