// A database as a test describes it, to be written as a file of the platform's own format.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QVector>
#include <array>
#include <functional>

#include "embedded/nsf/maker/made_compression.h"
#include "notes/capi.h"

namespace lens::made {

namespace flag {
inline constexpr quint16 Sign = 0x0001, Seal = 0x0002, Summary = 0x0004, Authors = 0x0020, Names = 0x0040,
                         Placeholder = 0x0100, Protected = 0x0200, Readers = 0x0400, Unchanged = 0x1000;
}
namespace status {
inline constexpr quint16 Stub = 0x0001, Modified = 0x0002, HasObject = 0x0004, Ghost = 0x0040, Named = 0x0200,
                         BodyInRecord = 0x2000, SoftDeleted = 0x8000;
}

struct MadeItem {
  QByteArray name;                // in the character set of the file
  quint16 type = 0x0500;          // the type word
  quint16 flags = flag::Summary;  // as programs see them
  QByteArray value;               // without its type word
  bool typeStored = false;        // in front of the value, also where the name's usual type would do
  int part = -1;                  // tells items of one name apart; -1: counted
  quint8 changedIn = 1;           // low byte of the note's sequence number at the last change
};

struct MadeNote {
  quint32 id = 0;   // given by MadeDatabase::add
  QByteArray unid;  // 16 bytes as they are stored
  quint32 sequence = 1;
  TimeDate sequenceTime, modified, accessed, added;
  quint16 noteClass = 0x0001;
  quint16 status = 0;  // HasObject and BodyInRecord come by themselves, a stub's bit too
  quint32 parent = 0;
  QVector<quint32> responses;
  QVector<MadeItem> items;
  bool stub = false;
  // Where values lie that are not in the summary: in a block of their own, or in the note's record.
  bool bodyInRecord = false;
  // The record lies by itself in the file and not in a bucket.
  bool byPosition = false;
  // The body lies in a bucket of bodies, of which no file is known: MadeDatabase::bodyBuckets.
  bool bodyInBucket = false;
};

struct MadeObject {
  quint32 id = 0;  // given by MadeDatabase::add
  quint16 noteClass = 0x0001;
  quint16 type = 0xFFFF;
  QByteArray payload;
  bool keyed = false;  // with the digest and size of the payload in its frame
  // Stands in the key instead of the payload's size, as where an attachment is kept outside the database.
  qint64 keyedSize = -1;
};

// The two words of an entry of the table of IDs.
struct MadeEntry {
  quint32 a = 0, b = 0;
};

// What a change sees before checksums and marks are put in place.
enum class MadePart {
  Header,            // of the file
  SuperblockHeader,  // number: 0 or 1, as for all blocks
  SuperblockBody,
  DescriptorHeader,
  DescriptorBody,
  RrvBucket,  // on disk
  Bucket,     // before its sectors are marked; number: 0 for the first
  Record,     // number: ID of its note
  Body,       // block of the values that are not in the summary; number: ID of its note
  Object      // with its frame; number: its ID
};

struct MadeDatabase {
  quint32 ods = 52;
  TimeDate databaseId, replicaId, changed;
  QByteArray information;  // title, then lines for categories, "#1" template and "#2" inherited template
  quint16 databaseClass = 0xFF01, databaseFlags = 0x4240, replicationOptions = 0, cutoffDays = 90;
  std::array<quint32, 48> special{};  // 0..15: note of class 1 << i; 16: access control list

  quint32 bucketSize = 8192;  // a multiple of 1024; a larger record has a larger bucket of its own
  Packing packing = Packing::Matches;
  int newestSuperblock = 1, newestDescriptor = 0;  // which of the two copies of each block
  // So many of the last data notes, and of the last names, are unknown to the older copies.
  int notesSince = 0, namesSince = 0;
  bool severalPages = false;  // descriptors of buckets lie on several pages, the first of them elsewhere
  bool pageOfBodies = false;  // an empty page of descriptors of buckets of bodies
  // Buckets of bodies as they may be: laid out as those of notes are, with their sectors marked or not.
  // Without them nothing is written of bodies that are said to lie in one.
  enum class BodyBuckets { Absent, Plain, Marked };
  BodyBuckets bodyBuckets = BodyBuckets::Absent;
  bool formerBuckets = false;  // earlier versions of all buckets lie in free space
  bool untidy = false;         // gaps, empty slots and rubbish where files that are met have them
  quint8 mark = 5;             // low half of the byte that every sector of a bucket shares
  qint64 hole = 0;             // bytes of nothing in front of bodies, objects and buckets; a multiple of 256
  QHash<quint32, MadeEntry> entries;  // in place of what the table of IDs would have

  QVector<MadeNote> notes;
  QVector<MadeObject> objects;
  std::function<void(MadePart part, quint32 number, QByteArray& bytes)> change;

  // Give the ID, which is returned. Notes of documents and all else have tables of their own.
  quint32 add(MadeNote note);
  quint32 add(MadeObject object);
  quint32 issueId(bool ofDocuments);
  MadeNote& note(quint32 id);
  // An attachment: its object and the item that names it.
  enum class Attached { Plain, Frequency, FrequencyInBlocks, Bits, BitsBehindSize };
  quint32 attach(MadeNote& note, const QByteArray& name, const QByteArray& content, Attached how);

 private:
  quint32 nextDocument_ = 0x8F6, nextOther_ = 0x106, nextTable_ = 0x10E6;
};

// IDs lie in tables of 508, four apart.
inline constexpr quint32 kFirstId = 0x106, kIdsOfTable = 508;
inline quint32 tableOf(quint32 id) {
  return (id - kFirstId) / (4 * kIdsOfTable);
}
inline quint32 firstOfTable(quint32 table) {
  return kFirstId + table * 4 * kIdsOfTable;
}

inline bool isDocument(const MadeNote& note) {
  return (note.noteClass & 0x0FFF) == 1;
}
// Whether the table of data notes of the file lists it.
inline bool isListed(const MadeNote& note) {
  return isDocument(note) && !note.stub && (note.status & (status::Ghost | status::Named)) == 0;
}

}  // namespace lens::made
