// One run of replication between two databases.
#pragma once

#include <QHash>

#include "embedded/replication/replication_report.h"
#include "embedded/replication/write_batch.h"
#include "embedded/store/database_copy.h"

namespace lens {

class Replicator {
 public:
  // Asks "go" for each note, where there is one.
  Replicator(Database& here, Database& there, const CopyProgress& go);
  ReplicationReport run();

 private:
  struct Side {
    explicit Side(Database& database) : store(database), writable(database.isWritable()) {}
    Database& store;
    const bool writable;
    bool profilesKnown = false;
    QHash<QString, Unid> profiles;  // live ones by name
  };

  void walk();
  bool goOn();
  void settle(const Unid& unid);
  void exchange(const Unid& unid);
  void send(Side& from, const NoteVersion& version, Side& to, const NoteVersion* replaced);
  void sendStub(const NoteVersion& version, Side& to, const NoteVersion* replaced,
                const VersionVector& versionVector);
  void resolve(Side& winnerSide, const NoteVersion& winner, Side& loserSide, const NoteVersion& loser);
  bool keepLoser(Side& winnerSide, const NoteVersion& winner, Side& loserSide, const NoteVersion& loser);
  bool makeRoom(Side& from, const NoteVersion& version, const Note& note, Side& to);
  Unid rivalOf(const Note& note, Side& side);
  const QHash<QString, Unid>& profilesOf(Side& side);
  void replaceByStub(const NoteVersion& version, const VersionVector& versionVector);

  const CopyProgress& go_;
  qint64 done_ = 0, total_ = 0;  // notes
  Side here_, there_;
  WriteBatch batch_;
  ReplicationReport report_;
  QString cannotWrite_;  // the file that should have got something
};

}  // namespace lens
