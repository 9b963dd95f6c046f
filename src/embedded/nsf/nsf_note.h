// What a real database holds of a note, as the file has it. Everything here was proven by the note's own
// identity; what of it could not be read says so itself.
#pragma once

#include "embedded/format/note.h"

namespace lens {

// The status word of a note. Bits without a name here are not understood and are shown as they are.
namespace nsfstatus {
inline constexpr quint16 Stub = 0x0001, HasObject = 0x0004,
                         Ghost = 0x0040,  // profiles and placeholders: not among the documents
    NamedNote = 0x0200, DataInRecord = 0x2000, SoftDeleted = 0x8000;
}  // namespace nsfstatus

enum class NsfItemState : quint8 {
  Whole,
  // Encrypted content: the bytes are those of the file, nobody reads them without the key.
  Sealed,
  // What the item table says of it cannot be right, or stands behind such an entry. The value is what the
  // table gives, which may be nothing.
  Damaged,
  // Its bytes lie where they cannot be read, or in a form that is not understood. There is no value.
  Unreadable,
};

struct NsfItem {
  // Name, flags and value as everywhere in the engine: the value begins with its type word, however the file
  // stores it, and the flags are those that programs see (without 0x0008, which tells how it is stored). The
  // name is "?" with four hexadecimal digits where the file's table of names has none of that number. An item
  // without a value has its type word alone.
  Item item;
  quint8 part = 0;       // tells items of one name apart; their order is that of the table, whatever it says
  quint8 changedIn = 0;  // low byte of the note's sequence number when the item was last changed
  NsfItemState state = NsfItemState::Whole;
};

struct NsfNote {
  // The creation time is the note's half of the UNID. The parent is null: it is an ID here, see parentId.
  NoteHeader header;
  quint16 status = 0;  // nsfstatus
  NoteId parentId;     // 0: none, or not in this file
  QVector<NoteId> responses;
  QVector<NsfItem> items;  // in the order of the file

  bool isGhost() const { return status & nsfstatus::Ghost; }
  bool isSoftDeleted() const { return status & nsfstatus::SoftDeleted; }
  // The items as the store takes them; those without a value are left out.
  Note toNote() const;
};

// A note that was deleted.
struct NsfStub {
  NoteId id;
  Unid unid;
  quint16 noteClass = 0;
  quint32 sequence = 0;
  TimeDate sequenceTime, deleted;
};

// What stands beside notes under an ID of its own: bytes of attachments, view indexes, lists of IDs.
struct NsfObject {
  quint32 id = 0;
  qint64 position = 0;     // of its frame
  qint64 payloadSize = 0;  // behind the frame
  quint16 ownerClass = 0, storage = 0, type = 0;
  QByteArray key;  // SHA-1 and size of the payload as 48 hexadecimal digits, empty where the file has none
};

}  // namespace lens
