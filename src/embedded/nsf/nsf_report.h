// What was found in a real database, proven or not: nothing that could not be read goes unmentioned.
#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>

namespace lens {

enum class NsfProblemKind {
  Header,         // file header, size, version
  Superblock,     // a copy of the superblock
  Descriptors,    // a copy of the bucket descriptor block
  IdTable,        // a bucket of the table from IDs to places
  SummaryBucket,  // a bucket of notes
  NoteRecord,     // a note or stub
  Item,
  NonSummary,  // the part of a note that stands outside its record
  ObjectRecord,
  Attachment,
  Acl,
  NoteList,  // the file's own list of documents does not agree with what was found
};

struct NsfProblem {
  NsfProblemKind kind = NsfProblemKind::Header;
  quint32 id = 0;        // of the note or object; number of the bucket or copy, from 1; 0: none
  qint64 position = -1;  // in bytes from the start of the file; -1: not known
  QString reason;        // a clause without a full stop
  // What it concerns was shown all the same.
  bool isWarning = false;
};

struct NsfReport {
  // The file.
  QString path;  // "" for bytes in memory
  qint64 size = 0;
  int odsVersion = 0;
  bool isTestedVersion = false;  // others that share the layout are read, but nobody has compared the result
  QString title;
  QString replicaId, databaseId;  // 16 hexadecimal digits each
  // Words of the header whose bits are not all known; shown as they are.
  quint16 databaseClass = 0, databaseFlags = 0, replicationOptions = 0;
  int cutoffDays = 0;
  bool truncated = false;
  // Why it was not opened; "" when it was.
  QString refused;

  // Which copies are in use: number of the slot from 1, 0 for none; and whether newer ones did not check.
  int superblock = 0, descriptors = 0;
  bool olderSuperblock = false, olderDescriptors = false;
  bool bucketsScanned = false;  // the map of buckets was made by looking for them
  bool salvaged = false;        // read without a table of IDs: deleted and outdated notes may be among them

  // What was found and what was proven. Found less proven is what could not be read.
  int entries = 0;  // IDs in use
  int notesFound = 0, notesProven = 0;
  int stubsFound = 0, stubsProven = 0;
  int objectsFound = 0, objectsProven = 0;
  int buckets = 0, bucketsDamaged = 0, bucketsTorn = 0;
  int dataBuckets = 0;  // of what stands outside records, by the superblock; how they are read is a guess
  // Documents by the file's own list: how many it has, lists without our having them, and the reverse.
  int listedDocuments = 0, listedButMissing = 0, foundButUnlisted = 0;

  // Counted as the notes are read, each note once.
  int notesRead = 0;
  int items = 0, itemsDamaged = 0, itemsUnreadable = 0, itemsSealed = 0;
  int nonSummaryBlocks = 0, nonSummaryChecksumsWrong = 0;

  // In the order in which they were met, kMaxProblems at most; the others are counted.
  static constexpr int kMaxProblems = 1000;
  QVector<NsfProblem> problems;
  int moreProblems = 0;

  void add(NsfProblem problem);
  // Whether all that was looked at could be shown.
  bool isComplete() const;
  // For people, with line feeds; for programs.
  QString text() const;
  QJsonObject json() const;
};

}  // namespace lens
