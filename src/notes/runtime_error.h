// The one exception type of the program. Failures of the object model, the C library, files and
// conversions all become a RuntimeError; what it means is decided by the procedure that meets it.
#pragma once

#include <QString>
#include <exception>

namespace lens {

// Numbers that have a standard text. Errors of the engine and of the client may carry others, which are
// positive; only a status of an automation server that means no such number stands for itself, and is
// negative.
namespace err {
inline constexpr int InvalidCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int LibraryNotLoaded = 48;
inline constexpr int FileNotFound = 53;
inline constexpr int DeviceFault = 57;
inline constexpr int FileExists = 58;
inline constexpr int InputPastEnd = 62;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccess = 75;
inline constexpr int PathNotFound = 76;
inline constexpr int ObjectNotSet = 91;
inline constexpr int CannotCreateObject = 429;
inline constexpr int MemberNotSupported = 438;
inline constexpr int EntryNotFound = 453;
inline constexpr int KeyAlreadyInCollection = 457;
}  // namespace err

// The fixed English text of a usual number; every other number has one common text.
QString standardErrorText(int number);

class RuntimeError : public std::exception {
 public:
  // Takes the standard text of the number as description.
  explicit RuntimeError(int number);
  RuntimeError(int number, QString description);

  int number() const { return number_; }
  const QString& description() const { return description_; }
  const char* what() const noexcept override { return utf8_.constData(); }

 private:
  int number_;
  QString description_;
  QByteArray utf8_;
};

}  // namespace lens
