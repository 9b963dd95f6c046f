#include "editing/file_pane.h"

#include <QDir>

#include "host/paths.h"
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

}  // namespace

FilePane::FilePane(Form1& form, Globals& state, Host& host) : form_(form), state_(state), host_(host) {
  form_.cmdExtractAtt->click = [this] { cmdExtractAtt_Click(); };
  form_.cmdLoadAtt->click = [this] { cmdLoadAtt_Click(); };
  form_.cmdRemoveFile->click = [this] { cmdRemoveFile_Click(); };
  form_.Dir1->change = [this] { Dir1_Change(); };
  form_.Drive1->change = [this] { Drive1_Change(); };
  form_.Dir1->mouseDown = [this](int button, int) { Dir1_MouseDown(button); };
  form_.File1->dblClick = [this] { File1_DblClick(); };
  form_.File1->mouseDown = [this](int button, int) { File1_MouseDown(button); };
}

// The directory at the index; without one it is the open directory.
QString FilePane::openDirectory() const {
  const int row = form_.Dir1->listIndex();
  return row < 0 ? form_.Dir1->path() : form_.Dir1->directoryAt(row);
}

int FilePane::selectedFile() const {
  for (int row = 0; row < form_.File1->listCount(); ++row)
    if (form_.File1->selected(row)) return row;
  return -1;
}

QString FilePane::filePath(int row) const {
  return host_.joinPath(form_.File1->path(), form_.File1->list(row));
}

// Attachments that belong to no rich text item are not reached.
void FilePane::cmdExtractAtt_Click() {
  const QString directory = openDirectory();
  if (state_.gDoc.isNothing()) return;
  const WhileFilesMove hourglass(host_);
  const Value items = state_.gDoc.items();
  for (const Value& element : items.values()) {
    const NotesItem item = element.object();
    if (item.typeCode() == itemcode::RichText) extractFrom(NotesRichTextItem(item), directory);
  }
  form_.File1->refresh();
}

// Existing files are overwritten without a question.
void FilePane::extractFrom(const NotesRichTextItem& item, const QString& directory) {
  const Value objects = item.embeddedObjects();
  if (!objects.isArray()) return;
  for (const Value& embedded : objects.values()) {
    const NotesEmbeddedObject object = embedded.object();
    if (object.type() != NotesEmbeddedObject::kAttachment) continue;
    const QString name = object.name();
    object.extractFile(host_.joinPath(directory, fileNameOf(name)));
  }
}

void FilePane::cmdLoadAtt_Click() {
  trapped(host_, {u"cmdLoadAtt_Click"_s}, [this] {
    if (state_.gDoc.isNothing()) return;
    const int row = selectedFile();
    if (row < 0) return;
    const QString file = form_.File1->list(row);
    // Always with a separator, also behind a root.
    const QString path = form_.File1->path() + QDir::separator() + file;
    const QString name = form_.txtFieldName->text();
    const QString title = u"Load attachment"_s;
    if (host_.messageBox(u"Load attachment: "_s + file + u" into field " + name, box::YesNo, title) ==
        answer::No)
      return;
    if (form_.cmbFieldType->text() != u"RICHTEXT (1) means rich text") {
      host_.messageBox(exact::kNoRichText, box::Critical, title);
      return;
    }
    const NotesItem item = state_.gDoc.firstItem(name);
    if (item.typeCode() != itemcode::RichText) return;
    const WhileFilesMove hourglass(host_);
    NotesRichTextItem(item).embedObject(NotesEmbeddedObject::kAttachment, QString(), path);
    state_.gDoc.save(true, false, true);
    form_.cmdGetDoc->raiseClick();
  });
}

// No question, no way back. The file behind the deleted one is selected.
void FilePane::cmdRemoveFile_Click() {
  trapped(host_, {u"cmdRemoveFile_Click"_s}, [this] {
    const int row = selectedFile();
    if (row < 0) return;
    host_.deleteFile(filePath(row));
    form_.File1->refresh();
    if (row < form_.File1->listCount()) form_.File1->setSelected(row, true);
  });
}

void FilePane::showFirstFile() {
  form_.File1->refresh();
  if (form_.File1->listCount() >= 1) form_.File1->setSelected(0, true);
}

void FilePane::Dir1_Change() {
  trapped(host_, {u"Dir1_Change"_s}, [this] {
    form_.File1->setPath(form_.Dir1->path());
    showFirstFile();
  });
}

void FilePane::Drive1_Change() {
  trapped(host_, {u"Drive1_Change"_s}, [this] {
    form_.Dir1->setPath(form_.Drive1->drive());
    showFirstFile();
  });
}

void FilePane::File1_DblClick() {
  ShellOpenFile(filePath(form_.File1->listIndex()));
}

void FilePane::Dir1_MouseDown(int button) {
  if (button != kLeftButton) host_.showProperties(form_.Dir1->path());
}

void FilePane::File1_MouseDown(int button) {
  if (button == kLeftButton) return;
  const int row = form_.File1->listIndex();
  if (!form_.File1->list(row).isEmpty()) host_.showProperties(filePath(row));
}

QString FilePane::ShellOpenFile(const QString& path) {
  const int code = host_.shellOpen(path);
  if (code >= kStarted) return u"-1"_s;
  if (code == kNoAssociation) return QString::number(host_.openWith(path) != 0 ? -1 : 0);
  const QString message = shellMessage(code);
  if (message.isEmpty()) return QString::number(code);
  host_.messageBox(exact::kCannotExecute, box::Exclamation, u"Execute it"_s);
  return QString::number(code) + u" , " + message;
}

}  // namespace lens
