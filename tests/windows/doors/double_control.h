// Tells the stand-in for the client what to do wrong, and asks it what is left of its objects.
#pragma once

#include <windows.h>

#include <QString>

namespace lens {

// The stand-in is loaded by whoever makes its first object; here by name, which gives the same one.
inline HMODULE clientDouble() {
  static const HMODULE library = LoadLibraryW(L"NNotes.dll");
  return library;
}

inline long livingObjects() {
  const auto living = reinterpret_cast<long(__cdecl*)()>(
      reinterpret_cast<void*>(GetProcAddress(clientDouble(), "DoubleLivingObjects")));
  return living();
}

// "MEMBER:KIND:CALLS", or "" for none; see client_double/double_faults.h.
inline void tellDouble(const QString& fault) {
  const auto tell = reinterpret_cast<void(__cdecl*)(const char*)>(
      reinterpret_cast<void*>(GetProcAddress(clientDouble(), "DoubleTellFault")));
  tell(fault.toUtf8().constData());
}

}  // namespace lens
