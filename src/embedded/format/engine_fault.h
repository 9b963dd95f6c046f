// Numbers of the engine's own failures, and what each means to whoever reads it. The description of the
// RuntimeError names the file and the reason. Usual failures (a missing file, an overflow) keep the usual
// numbers of notes/runtime_error.h; reasons of formulas are statuses (formula/faults.h).
#pragma once

#include <QLatin1String>
#include <span>

namespace lens {

// Database files.
namespace enginefault {
inline constexpr int NotADatabase = 4060;
inline constexpr int NewerSchema = 4061;
inline constexpr int Damaged = 4062;
inline constexpr int CannotOpen = 4063;
inline constexpr int NotSaved = 4064;
inline constexpr int BadDxl = 4070;
inline constexpr int NoDxl = 4071;
inline constexpr int UnknownNote = 4091;
inline constexpr int InUse = 4128;
}  // namespace enginefault

// The workspace; the description names the directory, server or file. A file that cannot be opened, or is
// open, has the numbers above.
namespace workspacefault {
inline constexpr int UnknownServer = 4081;
inline constexpr int BadPath = 4082;
inline constexpr int NoSuchFile = 4083;
inline constexpr int FileExists = 4084;
}  // namespace workspacefault

// The object model.
namespace modelfault {
inline constexpr int NotInitialized = 4100;
inline constexpr int DatabaseClosed = 4101;
inline constexpr int WrongKind = 4103;
inline constexpr int NoSuchDocument = 4104;
inline constexpr int ItemRemoved = 4110;
inline constexpr int ItemRefused = 4111;
inline constexpr int ChangedMeanwhile = 4112;
}  // namespace modelfault

namespace replicationfault {
inline constexpr int NotReplicas = 4114;
inline constexpr int NoReplica = 4115;
inline constexpr int NotesLeftOut = 4116;
}  // namespace replicationfault

namespace agentfault {
inline constexpr int CannotRun = 4117;
inline constexpr int Failed = 4118;
}  // namespace agentfault

// Views, searches, copies and folders.
inline constexpr int kNoFormulaSource = 4102;
inline constexpr int kFormulaError = 4105;
inline constexpr int kQueryError = 4106;
inline constexpr int kNoFullTextIndex = 4107;
inline constexpr int kSecondSingleNote = 4113;
inline constexpr int kNoFolder = 4119;

// All of them in order, each once.
struct EngineFault {
  int number;
  QLatin1String meaning;
};
inline constexpr int kFirstEngineFault = 4060, kLastEngineFault = 4128;
std::span<const EngineFault> engineFaults();

}  // namespace lens
