#include "host/windows/ended_processes.h"

#include <windows.h>
// Behind the types that it needs.
#include <tlhelp32.h>

#include "notes/automation/windows/automation_gateway.h"
#include "notes/automation/windows/automation_object.h"
#include "notes/literals.h"

namespace lens {
namespace {

// The processes of one name, of which those of others are ended. True when this one is among them.
bool endByService(const Object& service, const QString& program) {
  const Object found =
      service.call(u"ExecQuery"_s, u"SELECT * FROM Win32_Process WHERE Name = '%1'"_s.arg(program)).object();
  bool own = false;
  const auto collection = std::dynamic_pointer_cast<AutomationObject>(found.target());
  if (!collection) throw RuntimeError(err::ObjectNotSet);
  for (const Object& process : collection->elements()) {
    if (DWORD(process.get(u"ProcessId"_s).number()) == GetCurrentProcessId())
      own = true;
    else
      process.call(u"Terminate"_s);
  }
  return own;
}

void endProcess(DWORD processId) {
  const HANDLE process = OpenProcess(PROCESS_TERMINATE, FALSE, processId);
  if (!process) return;
  TerminateProcess(process, 0);
  CloseHandle(process);
}

bool endByTable(const QString& program) {
  const HANDLE table = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (table == INVALID_HANDLE_VALUE) return false;
  bool own = false;
  PROCESSENTRY32W entry = {};
  entry.dwSize = sizeof entry;
  for (BOOL more = Process32FirstW(table, &entry); more; more = Process32NextW(table, &entry)) {
    if (QString::fromWCharArray(entry.szExeFile).compare(program, Qt::CaseInsensitive) != 0) continue;
    if (entry.th32ProcessID == GetCurrentProcessId())
      own = true;
    else
      endProcess(entry.th32ProcessID);
  }
  CloseHandle(table);
  return own;
}

bool endProgram(const QString& program) {
  try {
    const Object service =
        automationObjectNamed(u"winmgmts:{impersonationLevel=impersonate}!\\\\.\\root\\cimv2"_s);
    return endByService(service, program);
  } catch (const RuntimeError&) {
    return endByTable(program);
  }
}

}  // namespace

bool endManagedProcesses(const QStringList& programs) {
  bool own = false;
  for (const QString& program : programs) own = endProgram(program) || own;
  return own;
}

void waitForProcessToEnd(qint64 processId) {
  const HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, DWORD(processId));
  if (!process) return;
  WaitForSingleObject(process, INFINITE);
  CloseHandle(process);
}

}  // namespace lens
