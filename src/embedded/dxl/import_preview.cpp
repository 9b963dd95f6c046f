#include "embedded/dxl/import_preview.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <algorithm>

#include "embedded/dxl/design_reader.h"
#include "embedded/dxl/exact_marks.h"
#include "embedded/dxl/note_elements.h"
#include "embedded/format/single_notes.h"

namespace lens {
namespace {

// Looks into one file at a time.
class PreviewReader {
 public:
  PreviewReader(Database& target, DxlReader& in) : target_(target), in_(in) {}

  void readFile() {
    in_.next();
    if (in_.is(u"database"))
      readDatabase();
    else if (isNoteElement(in_.name()))
      readNote();
    else
      in_.fail(QStringLiteral("this is no DXL file"));
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
        ++notes_;
        replaceSingle(noteclass::Acl);
        in_.skip();
      } else if (isNoteElement(in_.name())) {
        iconInFile = readNote() == noteclass::Icon || iconInFile;
      } else {
        loose = loose || !in_.is(u"databaseinfo");
        in_.skip();
      }
    }
    if (!iconInFile || loose) replaceSingle(noteclass::Icon);
  }

  // Gives the class without its marks.
  quint16 readNote() {
    const quint16 noteClass = classOfNote(in_);
    ++notes_;
    while (in_.nextChild()) {
      Unid unid;
      if (in_.is(u"noteinfo") && Unid::parse(in_.attributeView(u"unid"), unid)) replace(unid);
      in_.skip();
    }
    if (isSingleInstance(noteClass)) replaceSingle(noteClass);
    return noteClass;
  }

  void replace(const Unid& unid) {
    NoteVersion there;
    if (target_.versions().findVersion(unid, there) && there.live) replaced_.insert(there.id);
  }
  void replaceSingle(quint16 noteClass) {
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
    in.next();
    return in.is(u"database");
  } catch (const DxlFault&) {
    return false;
  }
}

}  // namespace lens
