#include "notes/automation/automation_failure.h"

#include <gtest/gtest.h>

#include "notes/literals.h"

namespace lens {
namespace {

TEST(AutomationFailure, OfAnUnknownMemberIsThatOfTheModel) {
  const RuntimeError error = automationError(0x80020006);
  EXPECT_EQ(error.number(), err::MemberNotSupported);
  EXPECT_EQ(error.description(), standardErrorText(err::MemberNotSupported));
}

TEST(AutomationFailure, OfAnArgumentTellsItsKind) {
  EXPECT_EQ(automationError(0x80020005).number(), err::TypeMismatch);
  EXPECT_EQ(automationError(0x8002000E).number(), 450);
  EXPECT_EQ(automationError(0x8002000F).number(), 449);
}

TEST(AutomationFailure, OfAServerThatDiedIsOneAndTheSame) {
  for (const quint32 status : {0x80010007u, 0x80010012u, 0x80010108u, 0x800706BAu, 0x800706BEu}) {
    EXPECT_EQ(automationError(status).number(), 462) << status;
    EXPECT_EQ(automationError(status).description(), standardErrorText(462));
  }
  EXPECT_NE(standardErrorText(462), standardErrorText(9999));
}

TEST(AutomationFailure, OfTheServerItselfHasItsNumberAndText) {
  const RuntimeError numbered =
      automationError(kExceptionOccurred, {4000, 0, u"Notes error: no such view"_s});
  EXPECT_EQ(numbered.number(), 4000);
  EXPECT_EQ(numbered.description(), u"Notes error: no such view"_s);
  EXPECT_EQ(automationError(kExceptionOccurred, {0, 0x800A01B6, {}}).number(), 438);
  // The number of the exception goes before its status.
  EXPECT_EQ(automationError(kExceptionOccurred, {7, 0x80020005, {}}).number(), 7);
  const RuntimeError own = automationError(kExceptionOccurred, {0, 0x80040FB5, u"Invalid replica ID"_s});
  EXPECT_EQ(own.number(), int(0x80040FB5));
  EXPECT_EQ(own.description(), u"Invalid replica ID"_s);
}

TEST(AutomationFailure, OfAnUnknownKindShowsItsStatus) {
  const RuntimeError error = automationError(0x8000FFFF);
  EXPECT_EQ(error.number(), int(0x8000FFFF));
  EXPECT_EQ(error.description(), u"Automation error (8000ffff)"_s);
  EXPECT_EQ(automationError(kExceptionOccurred).number(), int(kExceptionOccurred));
}

}  // namespace
}  // namespace lens
