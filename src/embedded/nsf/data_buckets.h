// Buckets of what stands outside the records of notes: one of the ways to store it, of which no real file was
// at hand. They are taken to be laid out as the buckets of notes are, with their sectors marked where all
// have one mark; nothing that lies in one is believed before it has proven itself.
#pragma once

#include <QByteArray>
#include <QVector>

#include "embedded/nsf/nsf_source.h"

namespace lens {

class DataBuckets {
 public:
  // The positions in bytes by bucket number less one.
  DataBuckets(const NsfSource& source, QVector<qint64> positions)
      : source_(source), positions_(std::move(positions)) {}

  // What lies in the slot, "" where nothing does. Numbers and slots count from 1.
  QByteArray record(quint32 number, quint32 slot) const;

 private:
  bool read(quint32 number) const;

  const NsfSource& source_;
  const QVector<qint64> positions_;
  // The one that was asked for last.
  mutable quint32 held_ = 0;
  mutable QByteArray bytes_;
};

}  // namespace lens
