// One line for each document of a listing: note ID, form and subject.
#pragma once

#include "command/output.h"
#include "embedded/format/packed_note.h"
#include "host/regional.h"
#include "notes/objects/notes_document.h"

namespace lens {

class DocumentLines {
 public:
  DocumentLines(Output& out, bool json, const Regional& regional);

  void add(const NotesDocument& document);
  // As a scan of the engine shows it: nothing is unpacked but the two texts. The line is the same.
  void add(const PackedNote& note);

 private:
  // Texts in UTF-8.
  void write(quint32 noteId, const QByteArray& unid, QByteArrayView form, QByteArrayView subject);
  QByteArrayView textAt(const PackedNote& note, qint32 place, QByteArray& room) const;

  Output& out_;
  const bool json_;
  const Regional& regional_;
  const WantedItems wanted_;
  std::vector<qint32> places_;
  QByteArray line_;
};

}  // namespace lens
