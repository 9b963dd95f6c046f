// The items of a note out of its record and its data.
#pragma once

#include <QVector>

#include "embedded/nsf/bucket_descriptors.h"
#include "embedded/nsf/data_buckets.h"
#include "embedded/nsf/note_record.h"
#include "embedded/nsf/nsf_note.h"
#include "embedded/nsf/nsf_report.h"
#include "embedded/nsf/nsf_source.h"

namespace lens {

// What was met while a note was read: for the report, which counts each note once.
struct NoteFindings {
  int damaged = 0, unreadable = 0, sealed = 0;
  bool hasBlock = false, checksumWrong = false;
  QVector<NsfProblem> problems;  // without the note's ID and position

  void mergeInto(NsfReport& report, NoteId id, qint64 position, qsizetype items) const;
};

// Fills the note's items and responses. A reason says that the data outside the record must not be believed.
NoteFindings readNoteItems(const NsfSource& source, const DataBuckets& buckets, const NoteRecord& record,
                           const BucketDescriptors& names, const QString& distrust, NsfNote& note);

// Whether the bytes behind a type word can be a value of the type: counts agree with sizes, records with the
// end. Types that are bytes to us always can.
bool fitsItemType(quint16 type, QByteArrayView data);

}  // namespace lens
