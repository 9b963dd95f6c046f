#include "notes/automation/automation_failure.h"

#include "notes/literals.h"

namespace lens {
namespace {

// Statuses that carry a number of this kind in their low word.
constexpr quint32 kOwnNumbers = 0x800A0000;

struct KnownStatus {
  quint32 status;
  int number;
};

constexpr KnownStatus kKnownStatuses[] = {
    {0x80020001, err::MemberNotSupported},  // unknown interface
    {0x80020003, err::MemberNotSupported},  // member not found
    {0x80020004, 448},                      // parameter not found
    {0x80020005, err::TypeMismatch},
    {0x80020006, err::MemberNotSupported},  // unknown name
    {0x80020007, 446},                      // no named arguments
    {0x80020008, 458},                      // type of variant
    {0x8002000A, err::Overflow},
    {0x8002000B, err::SubscriptOutOfRange},
    {0x8002000D, 10},   // array is locked
    {0x8002000E, 450},  // number of arguments
    {0x8002000F, 449},  // argument not optional
    {0x80004001, 445},  // not implemented
    {0x80004002, 430},  // no such interface
    {0x80070005, err::PermissionDenied},
    {0x8007000E, err::OutOfMemory},
    {0x80070057, err::InvalidCall},
    {0x80040154, err::CannotCreateObject},  // class not registered
    {0x800401F3, err::CannotCreateObject},  // no such class identifier
    {0x80080005, err::CannotCreateObject},  // its server does not start
    // The server ended, or died on the way.
    {0x80010007, 462},
    {0x80010012, 462},
    {0x80010108, 462},
    {0x800706BA, 462},
    {0x800706BE, 462},
};

int numberOfStatus(quint32 status) {
  for (const KnownStatus& known : kKnownStatuses)
    if (known.status == status) return known.number;
  const quint32 number = status & 0xFFFF;
  return (status & 0xFFFF0000) == kOwnNumbers && number != 0 ? int(number) : int(qint32(status));
}

}  // namespace

RuntimeError automationError(quint32 status, const AutomationException& exception) {
  int number = numberOfStatus(status);
  if (status == kExceptionOccurred) {
    if (exception.scode != 0) number = numberOfStatus(exception.scode);
    if (exception.code != 0) number = exception.code;
  }
  if (!exception.description.isEmpty()) return RuntimeError(number, exception.description);
  if (number > 0) return RuntimeError(number);
  return RuntimeError(number, u"Automation error (%1)"_s.arg(quint32(number), 8, 16, QChar(u'0')));
}

}  // namespace lens
