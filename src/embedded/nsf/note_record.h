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
  bool hasDataOutside() const { return dataSize != 0 && !hasDataInside(); }
  // The place is a position of its own in the file; else it is that of a bucket, and a slot.
  bool hasKnownPlace() const { return !(dataPlace & 0x80000000); }
  quint32 dataBucket() const { return dataPlace & 0xFFFFFF; }
  quint32 dataSlot() const { return dataPlace >> 24 & 0x7F; }
  NsfStub toStub() const;
};

// "" when the bytes hold the record of that note or stub; else why not.
QString readNoteRecord(QByteArrayView bytes, quint32 id, NoteRecord& record);

}  // namespace lens
