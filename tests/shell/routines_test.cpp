#include "shell/routines.h"

#include <QDir>
#include <QFile>
#include <QScreen>

#include "shell/error_modes.h"
#include "shell/keyed_collection.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

class RoutinesTest : public LensFixture {
 protected:
  RoutinesTest() { build(); }
  Routines& routines() { return app->routines; }
};

TEST_F(RoutinesTest, TheErrorBoxNamesNumberTextProcedureAndWindow) {
  EXPECT_EQ(errorText(RuntimeError(91), {u"cmdEnd_Click"_s}),
            "Error 91 (Object variable or With block variable not set) in procedure cmdEnd_Click of Formular "
            "Form1");
}

TEST_F(RoutinesTest, MarkupInAnErrorTextStaysAsItIs) {
  trapped(host, {u"Form_Load"_s}, [] { throw RuntimeError(5, u"<b>x</b>"_s); });
  EXPECT_EQ(boxes(), QStringList(u"Error 5 (<b>x</b>) in procedure Form_Load of Formular Form1"_s));
  EXPECT_EQ(host.boxes[0].style, box::Plain);
  EXPECT_EQ(host.boxes[0].title, "");
}

TEST_F(RoutinesTest, ATrappedProcedureEndsAtTheFailureAndItsCallerGoesOn) {
  bool behind = false;
  EXPECT_FALSE(trapped(host, {u"x"_s}, [&] {
    throw RuntimeError(6);
    behind = true;
  }));
  EXPECT_FALSE(behind);
  EXPECT_TRUE(trapped(host, {u"x"_s}, [&] { behind = true; }));
  EXPECT_TRUE(behind);
}

TEST_F(RoutinesTest, ContinuePassesOverAFailureAndKeepsItsNumber) {
  Continue step;
  int value = 1;
  EXPECT_FALSE(step([&] { value = int(Value(u"x"_s).number()); }));
  EXPECT_EQ(value, 1);
  EXPECT_TRUE(step([&] { value = 2; }));
  EXPECT_EQ(value, 2);
  EXPECT_EQ(step.number(), err::TypeMismatch);
  EXPECT_FALSE(step.holds([]() -> bool { throw RuntimeError(5); }));
  EXPECT_EQ(step.number(), 5);
  step.clear();
  EXPECT_EQ(step.number(), 0);
}

TEST_F(RoutinesTest, TheEndOfTheProcessPassesEveryErrorMode) {
  EXPECT_TRUE(endsProcess([&] { trapped(host, {u"x"_s}, [&] { host.endProcess(); }); }));
  Continue step;
  EXPECT_TRUE(endsProcess([&] { step([&] { host.endProcess(); }); }));
}

TEST_F(RoutinesTest, AnOverflowInTheMarkerRoutinesShowsTheBoxOfTheModule) {
  const QString tooFar = QString(32767, u'x') + u"#";
  EXPECT_EQ(routines().LeftFrom(tooFar, u"#"_s), "");
  EXPECT_EQ(routines().RightFrom(tooFar, u"#"_s), "");
  EXPECT_EQ(boxes(), QStringList({u"Error 6 (Overflow) in procedure LeftFrom of Modul Globals"_s,
                                  u"Error 6 (Overflow) in procedure RightFrom of Modul Globals"_s}));
}

TEST_F(RoutinesTest, AnOverflowInElementEmptiesTheTextAndGoesToTheCallerWithoutABox) {
  QString text = QString(32767, u'x') + u"\r\nrest";
  try {
    routines().Element(text, u"\r\n"_s);
    ADD_FAILURE() << "no overflow";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::Overflow);
  }
  EXPECT_EQ(text, "");
  EXPECT_EQ(boxes(), QStringList());
  text = QString(32766, u'x') + u"\r\nrest";
  EXPECT_EQ(routines().Element(text, u"\r\n"_s).size(), 32766);
  EXPECT_EQ(text, "rest");
}

TEST_F(RoutinesTest, ANumberThatIsNoneShowsTheBoxOfUnsignedDec2Hex) {
  EXPECT_EQ(routines().UnsignedDec2Hex(u"abc"_s), "");
  EXPECT_EQ(boxes(),
            QStringList(u"Error 13 (Type mismatch) in procedure UnsignedDec2Hex of Modul Globals"_s));
}

TEST_F(RoutinesTest, TwoHourglassesAndOneDefaultLeaveTheHourglass) {
  routines().SetMousePtr(11);
  routines().SetMousePtr(11);
  routines().SetMousePtr(0);
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
  routines().SetMousePtr(0);
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(RoutinesTest, AnUnbalancedDefaultLeavesTheCounterAtZero) {
  routines().SetMousePtr(0);
  EXPECT_EQ(routines().mouseBusyCount(), 0);
  EXPECT_EQ(host.pointerCode, pointer::Default);
  routines().SetMousePtr(11);
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
}

TEST_F(RoutinesTest, AnotherPointerCodeLeavesTheCounterUntouched) {
  routines().SetMousePtr(11);
  routines().SetMousePtr(2);
  EXPECT_EQ(host.pointerCode, 2);
  EXPECT_EQ(routines().mouseBusyCount(), 1);
}

TEST_F(RoutinesTest, AStatusWithHighBitsHasTheTextOfItsLowBits) {
  const QString plain = routines().GetAPIError(0x0222);
  EXPECT_FALSE(plain.isEmpty());
  EXPECT_EQ(routines().GetAPIError(0xC222), plain);
  EXPECT_EQ(capi().log.first(), "NotesInitExtended");
  EXPECT_EQ(capi().log.last(), "NotesTerm");
}

TEST_F(RoutinesTest, AnUnknownStatusHasNoText) {
  EXPECT_EQ(routines().GetAPIError(0x3FF0), "");
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(RoutinesTest, AStatusTextThatCannotBeReadShowsTheBoxAndStillEndsTheLibrary) {
  capi().failFunction = u"OSLoadString"_s;
  EXPECT_EQ(routines().GetAPIError(0x0222), "");
  EXPECT_EQ(boxes(), QStringList(u"Error 453 (Specified DLL function not found) in procedure GetAPIError of "
                                 "Modul Globals"_s));
  EXPECT_EQ(capi().log.last(), "NotesTerm");
}

TEST_F(RoutinesTest, TranslationOverflowsWhereTheDoubledBufferIsLongerThan16Bits) {
  EXPECT_EQ(routines().ConvertTranslate(1, QString(16383, u'x')).size(), 16383);
  try {
    routines().ConvertTranslate(1, QString(16384, u'x'));
    ADD_FAILURE() << "no overflow";
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::Overflow);
  }
}

TEST_F(RoutinesTest, TheDoneSoundIsPlayedOnlyWhenItsFileExists) {
  routines().playDoneSound();
  EXPECT_EQ(host.sounds, QStringList());
  ASSERT_TRUE(QDir().mkpath(host.programDir));
  QFile file(host.programDir + u"/done.wav");
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  routines().playDoneSound();
  EXPECT_EQ(host.sounds, QStringList(file.fileName()));
}

TEST_F(RoutinesTest, CenterFormPutsAWindowIntoTheMiddleAndCountsTheHourglassDownAgain) {
  QWidget window;
  window.resize(101, 51);
  routines().CenterForm(window);
  const QSize screen = window.screen()->geometry().size();
  EXPECT_EQ(window.pos(), QPoint(screen.width() / 2 - 50, screen.height() / 2 - 25));
  EXPECT_EQ(routines().mouseBusyCount(), 0);
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(RoutinesTest, StayNotOnTopKeepsAWindowOnTop) {
  QWidget window;
  routines().StayNotOnTop(window);
  EXPECT_TRUE(window.windowFlags() & Qt::WindowStaysOnTopHint);
}

TEST(KeyedCollection, FindsKeysInAnyCaseAndRaisesForUnknownOnes) {
  KeyedCollection<QString> sizes;
  sizes.add(u"10"_s, u"Contract.pdf"_s);
  EXPECT_EQ(sizes.item(u"contract.PDF"_s), "10");
  EXPECT_THROW(sizes.add(u"11"_s, u"CONTRACT.pdf"_s), RuntimeError);
  EXPECT_EQ(sizes.item(1), "10");
  try {
    sizes.item(u"other"_s);
    ADD_FAILURE();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::InvalidCall);
  }
  try {
    sizes.remove(2);
    ADD_FAILURE();
  } catch (const RuntimeError& error) {
    EXPECT_EQ(error.number(), err::SubscriptOutOfRange);
  }
}

}  // namespace
}  // namespace lens
