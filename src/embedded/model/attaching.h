// A file from the disk as an attachment of an open document.
#pragma once

#include "embedded/model/open_note.h"
#include "embedded/richtext/rich_text.h"

namespace lens {

// Reads the file into the document's database, adds its "$FILE" item to the document and shows it at the
// end of the text. A second file of one name gets a name of its own in the document. Raises 53 for a
// missing file, 75 for a directory and for what cannot be read, 6 from 4 GB on; nothing changes then.
FileObject attachFile(OpenNote& open, const QString& path, RichText& text);

// The name under which a document takes a file: its own, or "ATT00001.pdf" and so on where it is taken.
QString freeAttachmentName(const Note& note, const QString& fileName);

}  // namespace lens
