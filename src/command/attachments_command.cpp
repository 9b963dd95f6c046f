// attachments: the files in the documents of a database, listed or extracted.
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include "command/command_functions.h"
#include "command/command_text.h"
#include "command/document_walk.h"
#include "command/text_output.h"
#include "host/file_names.h"
#include "host/paths.h"
#include "host/save_file.h"
#include "notes/item_types.h"
#include "notes/literals.h"
#include "records/json_output.h"
#include "shell/text_routines.h"

namespace lens {
namespace {

constexpr qsizetype kSizeWidth = 12;

// The names of a document's attachments in the order in which they are stored.
QStringList attachedNames(const NotesDocument& document) {
  QStringList names;
  if (!document.hasEmbedded()) return names;
  const Value items = document.items();
  for (const Value& element : items.values()) {
    const NotesItem item = element.object();
    if (item.typeCode() != itemcode::Attachment) continue;
    const Value values = item.values();
    if (values.isArray() && values.upperBound() >= 0) names += values.at(0).text();
  }
  return names;
}

class AttachmentList {
 public:
  explicit AttachmentList(CommandCall& call) : call_(call), directory_(call.value(u"extract")) {
    if (!call.has(u"extract")) return;
    if (!QFileInfo(directory_).isDir())
      throw RuntimeError(err::PathNotFound,
                         CommandText::tr("%1: there is no such directory").arg(directory_));
    if (!takesFiles(directory_))
      throw RuntimeError(err::PermissionDenied,
                         CommandText::tr("%1: no file can be made in this directory").arg(directory_));
  }

  void add(const NotesDocument& document) {
    QSet<QString> met;
    for (const QString& name : attachedNames(document)) {
      // A document gives an attachment by its name, so of two it is always the first.
      if (met.contains(name) && call_.has(u"extract"))
        noteFailure(document, name, CommandText::tr("another attachment of the document has the same name"));
      else
        addOne(document, name);
      met.insert(name);
    }
  }

  // What was written under another name is told; what was not written is a failure.
  void finish() {
    for (const QString& change : names_.changes())
      call_.console.say(CommandText::tr("%1: written under another name: %2").arg(call_.name, change));
    if (failures_ > 0)
      throw RuntimeError(err::PathFileAccess, CommandText::tr("%1: %2 not extracted; the first: %3")
                                                  .arg(call_.arguments.first(),
                                                       counted(failures_, CommandText::tr("attachment was"),
                                                               CommandText::tr("attachments were")),
                                                       firstFailure_));
  }

 private:
  void addOne(const NotesDocument& document, const QString& name) {
    const NotesEmbeddedObject file = document.attachment(name);
    if (!file) return noteFailure(document, name, CommandText::tr("it cannot be found"));
    QString path;
    if (call_.has(u"extract")) {
      try {
        path = extract(file, name);
      } catch (const RuntimeError& error) {
        call_.console.requireGoingOn();
        return noteFailure(document, name, error.description());
      }
    }
    write(document, name, file.fileSizeText(), path);
  }

  QString extract(const NotesEmbeddedObject& file, const QString& name) {
    const QString path = joinedPath(directory_, names_.take(name));
    requireWritablePlace(path);
    if (QFile::exists(path)) call_.confirm(CommandText::tr("Replace %1?").arg(path));
    file.extractFile(path);
    return path;
  }

  void write(const NotesDocument& document, const QString& name, const QString& size, const QString& path) {
    if (call_.json()) {
      JsonLine json;
      json.text("noteId", eightDigits(document.noteId())).text("unid", document.universalId());
      json.text("name", name).number("size", size.toLongLong());
      if (!path.isEmpty()) json.text("file", path);
      return call_.console.out().line(json.finish());
    }
    QByteArray line = eightDigits(document.noteId()).toLatin1() + "  ";
    appendColumn(line, size.rightJustified(kSizeWidth), kSizeWidth);
    appendPrintable(line, name);
    if (!path.isEmpty()) appendPrintable(line, u" -> "_s + path);
    call_.console.out().line(line);
  }

  void noteFailure(const NotesDocument& document, const QString& name, const QString& reason) {
    if (failures_++ == 0)
      firstFailure_ =
          CommandText::tr("note %1, \"%2\": %3").arg(eightDigits(document.noteId()), name, reason);
  }

  CommandCall& call_;
  const QString directory_;
  DistinctFileNames names_;
  qint64 failures_ = 0;
  QString firstFailure_;
};

}  // namespace

int listAttachments(CommandCall& call) {
  AttachmentList list(call);
  walkDocuments(call, openDatabase(call.doors, call.arguments.first()),
                [&](const NotesDocument& document) { list.add(document); });
  list.finish();
  return exitcode::Done;
}

}  // namespace lens
