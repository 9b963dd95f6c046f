// Numbers of the engine's own failures; the description names the file.
#pragma once

namespace lens::enginefault {
inline constexpr int NotADatabase = 4060;
inline constexpr int NewerSchema = 4061;
inline constexpr int Damaged = 4062;
inline constexpr int CannotOpen = 4063;
inline constexpr int NotSaved = 4064;
inline constexpr int UnknownNote = 4091;
inline constexpr int InUse = 4128;
}  // namespace lens::enginefault
