// import: DXL files into a database.
#include <QDir>
#include <QFileInfo>

#include "command/command_functions.h"
#include "command/command_table.h"
#include "command/command_text.h"
#include "command/text_output.h"
#include "embedded/dxl/dxl_importer.h"
#include "notes/literals.h"
#include "records/json_output.h"

namespace lens {
namespace {

constexpr quint16 kAnyClass = 0x7FFF & ~(noteclass::Private);

// Ends the import at its next step when the user has had enough.
class ImportSteps : public ImportProgress {
 public:
  explicit ImportSteps(Console& console) : console_(console) {}
  bool go(const QString& file, qint64 done, qint64 total) override {
    if (console_.isInterrupted()) return false;
    console_.progress(QFileInfo(file).fileName(), done, total);
    return true;
  }

 private:
  Console& console_;
};

// A database that is made for an import goes again when the import brought nothing.
class Target {
 public:
  Target(Workspace& workspace, const QString& name, bool mayBeMade) : workspace_(workspace) {
    const NamedDatabase named(name);
    place_ = workspace.place(named.server, named.path);
    isNew_ = mayBeMade && !QFileInfo::exists(workspace.absolutePath(place_));
    if (!isNew_) open();
  }
  ~Target() {
    if (isNew_ && database_) dropEmpty();
  }
  Target(const Target&) = delete;
  Target& operator=(const Target&) = delete;

  bool isNew() const { return isNew_; }
  const QString& path() const { return place_.path; }
  Database& open() {
    if (!database_) database_ = isNew_ ? made() : workspace_.database(place_.server, place_.path);
    return *database_;
  }

 private:
  std::shared_ptr<Database> made() {
    DatabaseInfo info;
    info.title = QFileInfo(QDir::fromNativeSeparators(place_.path)).completeBaseName();
    return workspace_.createDatabase(place_.server, place_.path, info);
  }
  void dropEmpty() {
    try {
      if (database_->notes().noteCount(kAnyClass) > 0) return;
      database_.reset();
      workspace_.removeDatabase(place_);
    } catch (const RuntimeError&) {
      // Somebody else has it open by now.
    }
  }

  Workspace& workspace_;
  DatabasePlace place_;
  bool isNew_ = false;
  std::shared_ptr<Database> database_;
};

void writeReport(CommandCall& call, const ImportReport& report) {
  if (call.json()) {
    JsonLine json;
    json.number("notes", report.notes)
        .number("replaced", report.replaced)
        .flag("cancelled", report.cancelled);
    json.texts("failed", report.failed).texts("keptRaw", report.keptRaw).texts("ignored", report.ignored);
    return call.console.out().line(json.finish());
  }
  QByteArray text;
  appendLines(text, report.text().trimmed(), 0);
  call.console.out().line(text);
}

// What the user types relative to where the command was started.
QStringList existingFiles(const QStringList& files) {
  for (const QString& file : files)
    if (!QFileInfo::exists(file))
      throw RuntimeError(err::FileNotFound, CommandText::tr("%1: there is no such file").arg(file));
  return files;
}

}  // namespace

int importFiles(CommandCall& call) {
  if (!call.has(u"into"))
    throw WrongUse(CommandText::tr("wants --into DB, the database that takes the notes"));
  Workspace& workspace = requireEngine(call.doors, call.name);
  const QStringList files = existingFiles(call.arguments);
  Target target(workspace, call.value(u"into"), call.has(u"create"));
  call.confirm(CommandText::tr("Import %1 into %2%3?")
                   .arg(counted(files.size(), CommandText::tr("file"), CommandText::tr("files")),
                        call.value(u"into"),
                        target.isNew() ? CommandText::tr(", a new database")
                                       : CommandText::tr(", replacing notes of the same universal ID")));
  DxlImporter importer(target.open());
  // An old database keeps its title and identity.
  importer.applyDatabaseProperties(target.isNew());
  ImportReport report;
  ImportSteps steps(call.console);
  importer.importFiles(files, report, &steps);
  writeReport(call, report);
  call.console.requireGoingOn();
  if (report.failed.isEmpty()) return exitcode::Done;
  throw RuntimeError(err::InvalidCall, CommandText::tr("%1 not imported into %2; the first: %3")
                                           .arg(counted(report.failed.size(), CommandText::tr("file was"),
                                                        CommandText::tr("files were")),
                                                call.value(u"into"), report.failed.first()));
}

}  // namespace lens
