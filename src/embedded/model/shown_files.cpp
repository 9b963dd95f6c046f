#include "embedded/model/shown_files.h"

#include "embedded/format/case_key.h"
#include "embedded/richtext/rich_text.h"

namespace lens {
namespace {

struct FilesOfName {
  QVector<FileObject> files;
  qsizetype next = 0;  // file that is not yet shown
  int places = 0;      // in the texts that are still to come
};

// A place in a text that shows a file.
struct ShowingPlace {
  qsizetype item;
  FilesOfName* files;
};

QHash<QString, FilesOfName> filesByName(const Note& note) {
  QHash<QString, FilesOfName> names;
  FileObject file;
  for (const Item& item : note.items)
    if (readAttachedFile(item, file)) names[caseKey(file.name)].files.append(file);
  return names;
}

QVector<ShowingPlace> placesIn(const Note& note, QHash<QString, FilesOfName>& names) {
  QVector<ShowingPlace> places;
  for (qsizetype item = 0; item < note.items.size(); ++item) {
    if (note.items[item].type() != itemtype::RichText) continue;
    const RichText text = RichText::fromBytes(note.items[item].data());
    for (const RichElement& element : text.elements()) {
      if (element.kind != RichElement::Kind::Attachment) continue;
      const auto named = names.find(caseKey(element.text));
      if (named == names.end()) continue;
      ++named->places;
      places.append({item, &*named});
    }
  }
  return places;
}

}  // namespace

bool readAttachedFile(const Item& item, FileObject& file) {
  return readFileValue(item.value, file);
}

bool findAttachedFile(const Note& note, const QString& name, FileObject& file) {
  const QString key = caseKey(name);
  for (const Item& item : note.items)
    if (readAttachedFile(item, file) && caseKey(file.name) == key) return true;
  return false;
}

ShownFiles shownFilesOf(const Note& note) {
  ShownFiles shown;
  QHash<QString, FilesOfName> names = filesByName(note);
  if (names.isEmpty()) return shown;
  const QVector<ShowingPlace> places = placesIn(note, names);
  for (const ShowingPlace& place : places) {
    FilesOfName& named = *place.files;
    const bool last = --named.places == 0;
    const qsizetype end = last ? named.files.size() : qMin(named.next + 1, named.files.size());
    while (named.next < end) shown[place.item].append(named.files[named.next++]);
  }
  return shown;
}

}  // namespace lens
