#include "editing/file_pane.h"

#include <QDir>

#include "host/file_names.h"
#include "notes/literals.h"
#include "shell/error_modes.h"
#include "shell/exact_texts.h"

namespace lens {
namespace {

constexpr int kLeftButton = 1;
constexpr int kStarted = 33;
constexpr int kNoAssociation = 31;

QString shellMessage(int code) {
  switch (code) {
    case 0:
      return exact::kOutOfMemory;
    case 2:
      return exact::kFileNotFound;
    case 3:
      return exact::kPathNotFound;
    case 11:
      return exact::kBadFormat;
  }
  return {};
}

// The hourglass while file contents go to and fro.
class WhileFilesMove {
 public:
  explicit WhileFilesMove(Host& host) : host_(host) { host_.setPointer(pointer::Hourglass); }
  ~WhileFilesMove() { host_.setPointer(pointer::Default); }
  Q_DISABLE_COPY(WhileFilesMove)

 private:
  Host& host_;
};

// Writes the attachments of a document. One that cannot be written does not keep those behind it from it.
class Extraction {
 public:
  Extraction(Host& host, const QString& directory) : host_(host), directory_(directory) {}

  void run(const NotesDocument& document) {
    const WhileFilesMove hourglass(host_);
    try {
      const Value items = document.items();
      for (const Value& element : items.values()) {
        const NotesItem item = element.object();
        if (item.typeCode() == itemcode::RichText) extractFrom(NotesRichTextItem(item));
      }
    } catch (const RuntimeError& error) {
      note(error);
    }
  }
  const QStringList& changedNames() const { return names_.changes(); }
  // What went wrong first, if anything did.
  void raiseFailure() const {
    if (failures_ == 0) return;
    if (failures_ == 1) throw RuntimeError(number_, description_);
    throw RuntimeError(number_,
                       u"%1 (%2 more were not written)"_s.arg(description_, QString::number(failures_ - 1)));
  }

 private:
  // Existing files are overwritten without a question.
  void extractFrom(const NotesRichTextItem& item) {
    const Value objects = item.embeddedObjects();
    if (!objects.isArray()) return;
    for (const Value& embedded : objects.values()) {
      const NotesEmbeddedObject object = embedded.object();
      if (object.type() != NotesEmbeddedObject::kAttachment) continue;
      const QString given = object.name();
      try {
        object.extractFile(host_.joinPath(directory_, names_.take(given)));
      } catch (const RuntimeError& error) {
        note(error);
      }
    }
  }
  void note(const RuntimeError& error) {
    if (failures_++ > 0) return;
    number_ = error.number();
    description_ = error.description();
  }

  Host& host_;
  const QString directory_;
  DistinctFileNames names_;
  int failures_ = 0, number_ = 0;
  QString description_;
};

}  // namespace

FilePane::FilePane(Desk& desk) : desk_(desk) {
  desk_.form.cmdExtractAtt->click = [this] { cmdExtractAtt_Click(); };
  desk_.form.cmdLoadAtt->click = [this] { cmdLoadAtt_Click(); };
  desk_.form.cmdRemoveFile->click = [this] { cmdRemoveFile_Click(); };
  desk_.form.Dir1->change = [this] { Dir1_Change(); };
  desk_.form.Drive1->change = [this] { Drive1_Change(); };
  desk_.form.Dir1->mouseDown = [this](int button, int) { Dir1_MouseDown(button); };
  desk_.form.File1->dblClick = [this] { File1_DblClick(); };
  desk_.form.File1->mouseDown = [this](int button, int) { File1_MouseDown(button); };
  showStartDirectory();
}

// So that the user sees where files would go before anything was chosen. A directory that has gone leaves the
// pane empty.
void FilePane::showStartDirectory() {
  try {
    desk_.form.Dir1->setPath(QDir::currentPath());
  } catch (const RuntimeError&) {
  }
}

// The directory at the index; without one it is the open directory.
QString FilePane::openDirectory() const {
  const int row = desk_.form.Dir1->listIndex();
  return row < 0 ? desk_.form.Dir1->path() : desk_.form.Dir1->directoryAt(row);
}

int FilePane::selectedFile() const {
  for (int row = 0; row < desk_.form.File1->listCount(); ++row)
    if (desk_.form.File1->selected(row)) return row;
  return -1;
}

QString FilePane::filePath(int row) const {
  return desk_.host.joinPath(desk_.form.File1->path(), desk_.form.File1->list(row));
}

// Attachments that belong to no rich text item are not reached.
void FilePane::cmdExtractAtt_Click() {
  const QString directory = openDirectory();
  if (desk_.state.gDoc.isNothing()) return;
  if (directory.isEmpty()) throw RuntimeError(err::PathNotFound);
  Extraction extraction(desk_.host, directory);
  extraction.run(desk_.state.gDoc);
  desk_.form.File1->refresh();
  tellChangedNames(extraction.changedNames());
  extraction.raiseFailure();
}

void FilePane::tellChangedNames(const QStringList& changes) {
  constexpr qsizetype kMostLines = 20;
  if (changes.isEmpty()) return;
  QStringList lines = changes.first(qMin(changes.size(), kMostLines));
  if (lines.size() < changes.size()) lines.append(u"and %1 more"_s.arg(changes.size() - lines.size()));
  desk_.host.messageBox(
      u"These names could not be taken as they are. The files were written under the second name:\n\n"_s +
          lines.join(u'\n'),
      box::Information, u"Extract attachments"_s);
}

void FilePane::cmdLoadAtt_Click() {
  trapped(desk_.host, {u"cmdLoadAtt_Click"_s}, [this] {
    if (desk_.state.gDoc.isNothing()) return;
    const int row = selectedFile();
    if (row < 0) return;
    const QString file = desk_.form.File1->list(row);
    // Always with a separator, also behind a root.
    const QString path = desk_.form.File1->path() + QDir::separator() + file;
    const QString name = desk_.form.txtFieldName->text();
    const QString title = u"Load attachment"_s;
    if (desk_.host.messageBox(u"Load attachment: "_s + file + u" into field " + name, box::YesNo, title) ==
        answer::No)
      return;
    if (desk_.form.cmbFieldType->text() != u"RICHTEXT (1) means rich text") {
      desk_.host.messageBox(exact::kNoRichText, box::Critical, title);
      return;
    }
    const NotesItem item = desk_.state.gDoc.firstItem(name);
    if (item.typeCode() != itemcode::RichText) return;
    const WhileFilesMove hourglass(desk_.host);
    NotesRichTextItem(item).embedObject(NotesEmbeddedObject::kAttachment, QString(), path);
    desk_.state.gDoc.save(true, false, true);
    desk_.form.cmdGetDoc->raiseClick();
  });
}

// No question, no way back. The file behind the deleted one is selected.
void FilePane::cmdRemoveFile_Click() {
  trapped(desk_.host, {u"cmdRemoveFile_Click"_s}, [this] {
    const int row = selectedFile();
    if (row < 0) return;
    desk_.host.deleteFile(filePath(row));
    desk_.form.File1->refresh();
    if (row < desk_.form.File1->listCount()) desk_.form.File1->setSelected(row, true);
  });
}

void FilePane::showFirstFile() {
  desk_.form.File1->refresh();
  if (desk_.form.File1->listCount() >= 1) desk_.form.File1->setSelected(0, true);
}

void FilePane::Dir1_Change() {
  trapped(desk_.host, {u"Dir1_Change"_s}, [this] {
    desk_.form.File1->setPath(desk_.form.Dir1->path());
    showFirstFile();
  });
}

void FilePane::Drive1_Change() {
  trapped(desk_.host, {u"Drive1_Change"_s}, [this] {
    desk_.form.Dir1->setPath(desk_.form.Drive1->drive());
    showFirstFile();
  });
}

void FilePane::File1_DblClick() {
  ShellOpenFile(filePath(desk_.form.File1->listIndex()));
}

void FilePane::Dir1_MouseDown(int button) {
  if (button != kLeftButton) desk_.host.showProperties(desk_.form.Dir1->path());
}

void FilePane::File1_MouseDown(int button) {
  if (button == kLeftButton) return;
  const int row = desk_.form.File1->listIndex();
  if (!desk_.form.File1->list(row).isEmpty()) desk_.host.showProperties(filePath(row));
}

QString FilePane::ShellOpenFile(const QString& path) {
  const QString found = desk_.host.findFile(path);
  const QString& file = found.isEmpty() ? path : found;
  const int code = desk_.host.shellOpen(file);
  if (code >= kStarted) return u"-1"_s;
  if (code == kNoAssociation) return QString::number(desk_.host.openWith(file) != 0 ? -1 : 0);
  const QString message = shellMessage(code);
  if (message.isEmpty()) return QString::number(code);
  desk_.host.messageBox(exact::kCannotExecute, box::Exclamation, u"Execute it"_s);
  return QString::number(code) + u" , " + message;
}

}  // namespace lens
