#include "tools/host_tools.h"

#include "notes/literals.h"
#include "shell/error_modes.h"

namespace lens {
namespace {

// In the order in which they are ended.
const QString kClientPrograms[] = {u"nlnotes.exe"_s, u"notes2.exe"_s, u"nsd.exe"_s, u"ntaskldr.exe"_s,
                                   u"rcplauncher.exe"_s};
const QString kOwnProgram = u"TessalyAndDocContent.exe"_s;
const QString kOwnProgramElsewhere = u"TessalyAndDocContent"_s;

}  // namespace

HostTools::HostTools(Desk& desk) : desk_(desk) {
  desk_.form.cmdKillNotes->click = [this] { cmdKillNotes_Click(); };
  desk_.form.cmdIni->click = [this] { cmdIni_Click(); };
  desk_.form.cmdDataDir->click = [this] { cmdDataDir_Click(); };
  desk_.form.cmdTempDir->click = [this] { cmdTempDir_Click(); };
}

void HostTools::cmdKillNotes_Click() {
  Continue statement;
  // The program's own references would hold the client.
  desk_.state.gSession.release();
  desk_.state.gUIWorkspace.release();
  desk_.state.gDb.release();
  for (const QString& program : kClientPrograms) statement([&] { desk_.host.endProcesses({program}); });
  // The lock that would stop the client from starting again.
  if (!desk_.state.gDataDir.isEmpty())
    statement([&] { desk_.host.deleteFile(desk_.host.joinPath(desk_.state.gDataDir, u"~notes.lck"_s)); });
  statement([&] {
    if (desk_.host.endProcesses({kOwnProgram, kOwnProgramElsewhere})) desk_.host.endProcess();
  });
}

void HostTools::cmdIni_Click() {
  openFile(desk_.sessions.GetProgramDirectory() + u"/Notes.ini");
}

void HostTools::cmdDataDir_Click() {
  showDirectory([this] { return desk_.sessions.GetDataDirectory(); });
}

void HostTools::cmdTempDir_Click() {
  showDirectory([this] { return desk_.host.tempDirectory(); });
}

void HostTools::showDirectory(const std::function<QString()>& directory) {
  desk_.form.Drive1->setDrive(desk_.routines.LeftFrom(directory(), u"\\"_s));
  desk_.form.Dir1->setPath(directory());
  desk_.form.File1->refresh();
}

}  // namespace lens
