// Databases that tests read: one that has something of everything, and random ones.
#pragma once

#include "embedded/nsf/maker/nsf_maker.h"

namespace lens::made {

// 2024-03-11 and some hundredths of a second in a zone one hour east of Greenwich.
TimeDate someTime(quint32 hundredths = 0);
// 16 bytes as they are stored: the second half is a creation time.
QByteArray someUnid(quint32 number);
// A document with that text as "Subject", not yet added.
MadeNote document(quint32 number, const QByteArray& subject = "pump");

// What the IDs of the notes below are.
struct SampleIds {
  quint32 plain = 0;     // a document with values of every usual kind and a body of its own
  quint32 inRecord = 0;  // its body lies in its record
  quint32 parent = 0, response = 0;
  quint32 attached = 0;  // four attachments: plain, with two kinds of packing, in blocks
  quint32 stub = 0, profile = 0, ghost = 0, softDeleted = 0, unclassed = 0;
  quint32 icon = 0, form = 0, view = 0, folder = 0, acl = 0;
  quint32 accessList = 0, folderTable = 0;  // objects
};
QByteArray sampleContent();  // of each attachment
MadeDatabase sampleDatabase(SampleIds* ids = nullptr);
// The same with one note, inRecord, whose record says that it is another one.
MadeDatabase sampleWithALostNote(SampleIds* ids = nullptr);

// The same for the same seed. All storage is random too.
MadeDatabase randomDatabase(quint32 seed, int notes);

}  // namespace lens::made
