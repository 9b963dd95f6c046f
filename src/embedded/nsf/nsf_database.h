// A real database of the platform (.nsf, .ntf), read without a client and never written.
//
//   NsfDatabase database(std::move(source));
//   if (!database.isOpen()) ... database.report().refused ...
//   database.forEachNote([&](const NsfNote& note) { ...; return true; });
//
// Each record is proven by its own identity before it is shown: a note carries the ID that led to it, the
// part outside its record carries ID and UNID, an object its size and, where there is one, the digest of its
// bytes. What cannot be proven is in the report with its ID, place and reason, and is not shown as something
// else. Nothing here raises for what the bytes are.
//
// Opening reads the tables and the head of each note: some dozen bytes of memory for each ID in use. All else
// is read when it is asked for. One thread at a time.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>
#include <functional>
#include <memory>
#include <optional>

#include "embedded/format/stored_object.h"
#include "embedded/nsf/huffman_stream.h"
#include "embedded/nsf/nsf_acl.h"
#include "embedded/nsf/nsf_note.h"
#include "embedded/nsf/nsf_properties.h"
#include "embedded/nsf/nsf_report.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

enum class NsfRefusal {
  None,
  NotADatabase,
  TooOld,       // made by a release whose files are laid out otherwise
  Encrypted,    // locally encrypted, or damaged so that it cannot be told from that
  Unsupported,  // packed in a way that is not known
  Damaged,      // no copy of a block that everything hangs on is whole
};

// Salvage reads whatever looks like a note where the tables are lost. Only on the user's demand: deleted and
// outdated notes may be among what it finds.
enum class NsfReading { Proven, Salvage };

class NsfDatabase {
 public:
  explicit NsfDatabase(std::unique_ptr<NsfSource> source, NsfReading reading = NsfReading::Proven);
  ~NsfDatabase();
  NsfDatabase(const NsfDatabase&) = delete;
  NsfDatabase& operator=(const NsfDatabase&) = delete;

  bool isOpen() const { return refusal() == NsfRefusal::None; }
  NsfRefusal refusal() const;
  // Complete as to what opening looks at; grows as notes are read.
  const NsfReport& report() const;
  const NsfProperties& properties() const;

  // Proven notes in order of ID: documents, design notes, profiles, ghosts and what was deleted softly.
  QVector<NoteId> noteIds() const;
  // Those of them that say that an item of theirs leads to an object.
  QVector<NoteId> notesWithObjects() const;
  // Proven stubs in order of ID.
  QVector<NsfStub> stubs() const;
  // The note of that UNID, the first where two have it; 0: none. Stubs count for nothing here.
  NoteId noteIdOf(const Unid& unid) const;
  // Default note of a class (About, form, view, icon, ...) as the header names it; 0: none.
  NoteId specialNote(quint16 noteClass) const;

  // False for an ID without a proven note, and where its record cannot be read any more.
  bool readNote(NoteId id, NsfNote& note);
  // Each in order of ID until the visitor returns false. What the visitor gets is its own to move from.
  void forEachNote(const std::function<bool(NsfNote& note)>& visit);

  // IDs of proven objects in order; and one of them. False where none is proven.
  QVector<quint32> objectIds() const;
  bool object(quint32 id, NsfObject& object) const;
  // The bytes behind the frame as they lie there, packed or not, in pieces. "" when all were handed out, else
  // the reason.
  QString readPayload(quint32 id, const NsfSink& sink);
  // An attachment as it was attached: unpacked, in pieces. "" when size and sums agree, else the reason; what
  // was handed out before counts for nothing then.
  QString readAttachment(const FileObject& file, const NsfSink& sink);

  // None where the database has none or it cannot be read; the report tells.
  std::optional<NsfAcl> acl();
  // The documents of a folder in the order of its list; empty for everything else.
  QVector<NoteId> folderDocuments(const NsfNote& folder);

  // Whether header or superblock were written since opening: what was read may be of two states then.
  bool hasChangedSince() const;

 private:
  class Contents;
  std::unique_ptr<Contents> contents_;
};

}  // namespace lens
