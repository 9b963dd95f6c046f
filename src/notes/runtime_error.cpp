#include "notes/runtime_error.h"

#include <utility>

#include "notes/literals.h"

namespace lens {
namespace {

struct StandardText {
  int number;
  const char* text;
};

constexpr StandardText kStandardTexts[] = {
    {3, "Return without GoSub"},
    {err::InvalidCall, "Invalid procedure call or argument"},
    {err::Overflow, "Overflow"},
    {err::OutOfMemory, "Out of memory"},
    {err::SubscriptOutOfRange, "Subscript out of range"},
    {10, "This array is fixed or temporarily locked"},
    {11, "Division by zero"},
    {err::TypeMismatch, "Type mismatch"},
    {14, "Out of string space"},
    {28, "Out of stack space"},
    {err::LibraryNotLoaded, "Error in loading DLL"},
    {49, "Bad DLL calling convention"},
    {51, "Internal error"},
    {52, "Bad file name or number"},
    {err::FileNotFound, "File not found"},
    {54, "Bad file mode"},
    {55, "File already open"},
    {err::DeviceFault, "Device I/O error"},
    {err::FileExists, "File already exists"},
    {61, "Disk full"},
    {err::InputPastEnd, "Input past end of file"},
    {67, "Too many files"},
    {68, "Device unavailable"},
    {err::PermissionDenied, "Permission denied"},
    {71, "Disk not ready"},
    {74, "Can't rename with different drive"},
    {err::PathFileAccess, "Path/File access error"},
    {err::PathNotFound, "Path not found"},
    {err::ObjectNotSet, "Object variable or With block variable not set"},
    {94, "Invalid use of Null"},
    {380, "Invalid property value"},
    {381, "Invalid property array index"},
    {424, "Object required"},
    {err::CannotCreateObject, "ActiveX component can't create object"},
    {430, "Class doesn't support Automation"},
    {err::MemberNotSupported, "Object doesn't support this property or method"},
    {440, "Automation error"},
    {445, "Object doesn't support this action"},
    {446, "Object doesn't support named arguments"},
    {448, "Named argument not found"},
    {449, "Argument not optional"},
    {450, "Wrong number of arguments or invalid property assignment"},
    {err::EntryNotFound, "Specified DLL function not found"},
    {err::KeyAlreadyInCollection, "This key is already associated with an element of this collection"},
    {458, "Variable uses an Automation type not supported"},
    {462, "The remote server machine does not exist or is unavailable"},
};

}  // namespace

QString standardErrorText(int number) {
  for (const StandardText& row : kStandardTexts)
    if (row.number == number) return QString::fromLatin1(row.text);
  return u"Application-defined error"_s;
}

RuntimeError::RuntimeError(int number) : RuntimeError(number, standardErrorText(number)) {}

RuntimeError::RuntimeError(int number, QString description)
    : number_(number), description_(std::move(description)), utf8_(description_.toUtf8()) {}

}  // namespace lens
