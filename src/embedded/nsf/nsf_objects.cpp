#include "embedded/nsf/nsf_objects.h"

#include "embedded/format/engine_fault.h"
#include "embedded/nsf/nsf_state.h"
#include "notes/literals.h"
#include "notes/runtime_error.h"

namespace lens {

NsfObjects::NsfObjects(QString path, QByteArray state) : path_(std::move(path)), state_(std::move(state)) {}

// Another program may write the file, or take it away, at any time.
NsfDatabase& NsfObjects::source() {
  const auto fail = [this](const QString& reason) {
    source_.reset();
    throw RuntimeError(enginefault::CannotOpen,
                       u"%1: the attachments of this database cannot be read (%2)"_s.arg(path_, reason));
  };
  QString reason;
  auto bytes = NsfFileSource::open(path_, reason);
  if (!bytes) fail(reason);
  if (nsfStateOf(*bytes) != state_) fail(u"the file has changed since it was opened; open it again"_s);
  if (!source_) {
    source_ = std::make_unique<NsfDatabase>(std::move(bytes));
    findFiles();
  }
  return *source_;
}

void NsfObjects::findFiles() {
  files_.clear();
  for (const NoteId id : source_->notesWithObjects()) {
    NsfNote note;
    if (!source_->readNote(id, note)) continue;
    for (const NsfItem& item : std::as_const(note.items)) {
      FileObject file;
      if (readFileValue(item.item.value, file)) files_.insert(file.objectId, file);
    }
  }
}

qint64 NsfObjects::size(quint32 objectId) {
  NsfDatabase& database = source();
  NsfObject object;
  if (!database.object(objectId, object)) return -1;
  const auto file = files_.constFind(objectId);
  return file == files_.constEnd() ? object.payloadSize : qint64(file->size);
}

void NsfObjects::read(quint32 objectId, QIODevice& target) {
  NsfDatabase& database = source();
  const NsfSink sink = [&target](QByteArrayView piece) {
    return target.write(piece.data(), piece.size()) == piece.size();
  };
  const auto file = files_.constFind(objectId);
  const QString fault =
      file == files_.constEnd() ? database.readPayload(objectId, sink) : database.readAttachment(*file, sink);
  if (!fault.isEmpty())
    throw RuntimeError(enginefault::Damaged, u"%1: attachment object %2 cannot be read: %3"_s.arg(
                                                 path_, QString::number(objectId, 16).toUpper(), fault));
}

}  // namespace lens
