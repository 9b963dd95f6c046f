// Ending programs by their names: through the management service where that does it, else through the process
// table.
#include "host/windows/ended_processes.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "notes/automation/windows/automation_gateway.h"
#include "notes/automation/windows/automation_object.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr DWORD kPatienceMs = 10'000;

// A program of the system that runs for a minute and a half unless it is ended.
class LongProgram {
 public:
  LongProgram() {
    wchar_t line[] = L"ping.exe -n 90 127.0.0.1";
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    started_ = CreateProcessW(nullptr, line, nullptr, nullptr, FALSE, CREATE_NO_WINDOW, nullptr, nullptr,
                              &start, &process_);
  }
  ~LongProgram() {
    TerminateProcess(process_.hProcess, 0);
    CloseHandle(process_.hThread);
    CloseHandle(process_.hProcess);
  }
  LongProgram(const LongProgram&) = delete;
  LongProgram& operator=(const LongProgram&) = delete;
  bool isStarted() const { return started_; }
  bool endsWithin(DWORD ms) const { return WaitForSingleObject(process_.hProcess, ms) == WAIT_OBJECT_0; }
  DWORD id() const { return process_.dwProcessId; }

 private:
  PROCESS_INFORMATION process_ = {};
  bool started_ = false;
};

TEST(EndedProcesses, AreThoseOfTheNameInAnyCapitals) {
  const Apartment apartment;
  const LongProgram program;
  ASSERT_TRUE(program.isStarted());
  EXPECT_FALSE(endManagedProcesses({u"nosuch.exe"_s, u"ping"_s}));
  EXPECT_FALSE(program.endsWithin(0));
  EXPECT_FALSE(endManagedProcesses({u"PING.EXE"_s}));
  EXPECT_TRUE(program.endsWithin(kPatienceMs));
}

TEST(EndedProcesses, TellThatThisOneIsAmongThemAndLeaveIt) {
  const Apartment apartment;
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  EXPECT_TRUE(endManagedProcesses({QString::fromWCharArray(path).section(u'\\', -1)}));
}

TEST(EndedProcesses, AreWaitedFor) {
  const LongProgram program;
  ASSERT_TRUE(program.isStarted());
  const Apartment apartment;
  endManagedProcesses({u"ping.exe"_s});
  waitForProcessToEnd(program.id());
  EXPECT_TRUE(program.endsWithin(0));
  waitForProcessToEnd(-1);
}

// What the service lists can be walked over: a collection of the platform's own.
TEST(ManagementService, ListsThisProcess) {
  const Apartment apartment;
  const Object service =
      automationObjectNamed(u"winmgmts:{impersonationLevel=impersonate}!\\\\.\\root\\cimv2"_s);
  const Object found = service.call(u"ExecQuery"_s, u"SELECT * FROM Win32_Process"_s).object();
  const auto processes = std::dynamic_pointer_cast<AutomationObject>(found.target());
  ASSERT_TRUE(processes);
  int own = 0;
  for (const Object& process : processes->elements())
    if (DWORD(process.get(u"ProcessId"_s).number()) == GetCurrentProcessId()) ++own;
  EXPECT_EQ(own, 1);
}

}  // namespace
}  // namespace lens
