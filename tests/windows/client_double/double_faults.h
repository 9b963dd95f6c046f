// Faults that the stand-in can be told to have, by the environment variable TESSALY_DOUBLE_FAULT or by the
// function DoubleFault of its library, as text "MEMBER:KIND:CALLS": after so many calls of the member
//   raises   raises error 4711 "told to fail"
//   dies     the server is gone: this call and every later one of any member fail so
//   wrong    the member gives text "wrong kind" instead of what it should
#pragma once

#include <QString>

namespace lens {

enum class DoubleFault { None, Raises, Dies, Wrong };

inline constexpr int kToldNumber = 4711;

void tellFault(const QString& fault);
// What becomes of this call.
DoubleFault faultOfCall(const QString& member);

}  // namespace lens
