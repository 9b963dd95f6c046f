#include "embedded/dxl/import_preview.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <algorithm>

#include "embedded/dxl/acl_element.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/note_elements.h"

namespace lens {
namespace {

// Looks into one file at a time.
class PreviewReader {
 public:
  PreviewReader(Database& target, DxlReader& in) : target_(target), in_(in) {}

  void readFile() {
    goToRoot(in_);
    if (in_.is(u"database"))
      readDatabase();
    else
      readNote();
    in_.finish();
  }
  int notes() const { return notes_; }
  const QSet<NoteId>& replaced() const { return replaced_; }

 private:
  // What has no note of its own completes the icon note; so does the element itself, where it brings none.
  void readDatabase() {
    QString mark;
    bool iconInFile = readMark(in_, exactmark::kWhole, mark), loose = false;
    while (in_.nextChild()) {
      if (in_.is(u"acl")) {
        readAcl();
      } else if (isNoteElement(in_.name())) {
        iconInFile = readNote() == noteclass::Icon || iconInFile;
      } else {
        loose = loose || !in_.is(u"databaseinfo");
        in_.skip();
      }
    }
    if (!iconInFile || loose) replacePresent(noteclass::Icon);
  }

  // It takes the place of the list that is there, unless it tells its own note or that stands in the file
  // too.
  void readAcl() {
    QString mark;
    NoteHeader header;
    if (!readMark(in_, exactmark::kNoteFollows, mark)) {
      ++notes_;
      if (readAclHeader(in_, header))
        replace(noteclass::Acl, header.unid);
      else
        replacePresent(noteclass::Acl);
    }
    in_.skip();
  }

  // Gives the class without its marks.
  quint16 readNote() {
    const quint16 noteClass = classOfNote(in_);
    ++notes_;
    Unid unid;
    while (in_.nextChild()) {
      if (in_.is(u"noteinfo")) readUnid(in_, unid);
      in_.skip();
    }
    replace(noteClass, unid);
    return noteClass;
  }

  void replace(quint16 noteClass, const Unid& unid) {
    NoteVersion there;
    if (target_.versions().findVersion(unid, there) && there.live) replaced_.insert(there.id);
    if (const NoteId other = otherInstance(target_, noteClass, unid)) replaced_.insert(other);
  }
  void replacePresent(quint16 noteClass) {
    if (const NoteId there = target_.notes().specialNote(noteClass)) replaced_.insert(there);
  }

  Database& target_;
  DxlReader& in_;
  QSet<NoteId> replaced_;
  int notes_ = 0;
};

}  // namespace

ImportPreview previewImport(Database& target, const QStringList& filesOrFolders, ImportProgress* progress) {
  ImportPreview preview;
  QSet<NoteId> replaced;
  for (const QString& path : filesToImport(filesOrFolders)) {
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) continue;
    const qint64 total = file.size();
    DxlSource source(file, [&](qint64 done) { return !progress || progress->go(path, done, total); });
    DxlReader in(source);
    PreviewReader reader(target, in);
    try {
      reader.readFile();
      preview.notes += reader.notes();
      replaced.unite(reader.replaced());
    } catch (const DxlCancelled&) {
      preview.cancelled = true;
      break;
    } catch (const DxlFault&) {
      // Nothing of it would be imported.
    }
  }
  preview.replaced = QVector<NoteId>(replaced.cbegin(), replaced.cend());
  std::sort(preview.replaced.begin(), preview.replaced.end());
  return preview;
}

bool holdsDatabaseElement(const QString& path) {
  QFile file(path);
  if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) return false;
  DxlSource source(file);
  DxlReader in(source);
  try {
    goToRoot(in);
    return in.is(u"database");
  } catch (const DxlFault&) {
    return false;
  }
}

}  // namespace lens
