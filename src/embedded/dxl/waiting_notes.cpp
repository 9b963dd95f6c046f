#include "embedded/dxl/waiting_notes.h"

#include <QDataStream>

#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

[[noreturn]] void waitingFault(const QFileDevice& file) {
  throw RuntimeError(err::DeviceFault,
                     u"%1: a note cannot be put aside (%2)"_s.arg(file.fileName(), file.errorString()));
}

void writeHeader(QDataStream& out, const NoteHeader& header) {
  const auto bytesOf = [](const Unid& unid) { return unid.isNull() ? QByteArray() : unid.bytes(); };
  out << bytesOf(header.unid) << header.noteClass << bytesOf(header.parent) << header.sequence;
  for (const TimeDate& time :
       {header.sequenceTime, header.created, header.modified, header.added, header.accessed})
    out << packTime(time);
}

void readHeader(QDataStream& in, NoteHeader& header) {
  QByteArray unid, parent;
  in >> unid >> header.noteClass >> parent >> header.sequence;
  if (!unid.isEmpty()) header.unid = Unid::fromBytes(unid);
  if (!parent.isEmpty()) header.parent = Unid::fromBytes(parent);
  for (TimeDate* const time :
       {&header.sequenceTime, &header.created, &header.modified, &header.added, &header.accessed}) {
    quint64 packed = 0;
    in >> packed;
    *time = unpackTime(packed);
  }
}

}  // namespace

void WaitingNotes::add(const Note& note, const ValueSpool& spool, UnidOf unid) {
  if (!file_) {
    file_ = std::make_unique<QTemporaryFile>();
    if (!file_->open()) waitingFault(*file_);
  }
  QDataStream out(file_.get());
  writeHeader(out, note.header);
  out << quint8(unid == UnidOf::Present) << qint64(note.items.size());
  for (const Item& item : note.items) {
    out << item.name << item.flags << spool.sizeOf(item);
    spool.read(item, [&](QByteArrayView piece) { out.writeRawData(piece.data(), piece.size()); });
  }
  if (out.status() != QDataStream::Ok) waitingFault(*file_);
  ++count_;
}

void WaitingNotes::each(const Visitor& visit) {
  if (!file_) return;
  if (!file_->seek(0)) waitingFault(*file_);
  QDataStream in(file_.get());
  for (qint64 left = count_; left > 0; --left) {
    Note note;
    ValueSpool spool;
    quint8 present = 0;
    qint64 items = 0;
    readHeader(in, note.header);
    in >> present >> items;
    for (; items > 0 && in.status() == QDataStream::Ok; --items) {
      Item item;
      qint64 size = 0;
      in >> item.name >> item.flags >> size;
      item.value.resize(size);
      if (in.readRawData(item.value.data(), size) != size) waitingFault(*file_);
      note.items.push_back(std::move(item));
      spool.take(note);
    }
    if (in.status() != QDataStream::Ok) waitingFault(*file_);
    visit(note, spool, present ? UnidOf::Present : UnidOf::File);
  }
}

}  // namespace lens
