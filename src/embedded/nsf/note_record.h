// The record of a note as it lies in the file: its head, and where its parts are.
#pragma once

#include <QByteArray>
#include <QString>

#include "embedded/nsf/nsf_note.h"

namespace lens {

struct NoteRecord {
  static constexpr qint64 kHead = 100, kStubHead = 64, kItemEntry = 8;
  // The smallest that tells which note it is.
  static constexpr qint64 kIdentity = 54;

  NoteHeader header;
  quint16 status = 0;
  quint16 itemCount = 0, responseCount = 0;
  quint32 dataPlace = 0, dataSize = 0;  // of what stands outside the summary
  NoteId parentId;
  QByteArrayView bytes;  // the record itself, no longer than it says

  bool isStub() const { return status & nsfstatus::Stub; }
  bool hasDataInside() const { return status & nsfstatus::DataInRecord; }
  // The place is a position of its own in the file, as far as that is understood.
  bool hasDataOutside() const { return dataSize != 0 && !hasDataInside(); }
  bool hasKnownPlace() const { return !(dataPlace & 0x80000000); }
  NsfStub toStub() const;
};

// "" when the bytes hold the record of that note or stub; else why not.
QString readNoteRecord(QByteArrayView bytes, quint32 id, NoteRecord& record);

}  // namespace lens
