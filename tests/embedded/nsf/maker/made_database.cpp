#include "embedded/nsf/maker/made_database.h"

#include "embedded/nsf/maker/made_bytes.h"
#include "embedded/nsf/maker/made_values.h"

namespace lens::made {

quint32 MadeDatabase::issueId(bool ofDocuments) {
  quint32& next = ofDocuments ? nextDocument_ : nextOther_;
  const quint32 id = next;
  next += 4;
  if (tableOf(next) == tableOf(id)) return id;
  next = nextTable_;
  nextTable_ += 4 * kIdsOfTable;
  return id;
}

quint32 MadeDatabase::add(MadeNote note) {
  if (note.id == 0) note.id = issueId(isDocument(note));
  notes.push_back(std::move(note));
  return notes.back().id;
}

quint32 MadeDatabase::add(MadeObject object) {
  if (object.id == 0) object.id = issueId(false);
  objects.push_back(std::move(object));
  return objects.back().id;
}

MadeNote& MadeDatabase::note(quint32 id) {
  for (MadeNote& note : notes)
    if (note.id == id) return note;
  qFatal("no note of that ID was described");
}

quint32 MadeDatabase::attach(MadeNote& note, const QByteArray& name, const QByteArray& content,
                             Attached how) {
  FileItem file;
  file.name = name;
  file.size = quint32(content.size());
  MadeObject object;
  object.type = 0;
  object.keyed = true;
  switch (how) {
    case Attached::Plain:
      object.payload = content;
      break;
    case Attached::Frequency:
    case Attached::FrequencyInBlocks:
      file.compression = 1;
      object.payload = packedByFrequency(content, how == Attached::Frequency ? 1 : 3);
      break;
    case Attached::Bits:
    case Attached::BitsBehindSize:
      file.compression = 2;
      object.payload = packedBits(content, Packing::Matches);
      if (how == Attached::BitsBehindSize) {
        QByteArray size;
        add32(size, quint32(object.payload.size()));
        object.payload.prepend(size);
      }
      break;
  }
  file.object = add(std::move(object));
  note.items.push_back({"$FILE", 0x0003, flag::Summary, fileValue(file), true});
  return file.object;
}

}  // namespace lens::made
