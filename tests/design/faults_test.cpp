// Every listing and the deletion with a failure in every place: the n-th call through a door raises, for
// every n. Each box is compared whole, and so is what stays behind.
#include "design/design_fixture.h"
#include "support/every_fault.h"

namespace lens {
namespace {

class DesignFaults : public DesignTest {
 protected:
  DesignFaults() {
    for (const char16_t* name : {u"a", u"b", u"c"}) profile(QString::fromUtf16(name));
    design(noteclass::Form, u"One"_s);
    design(noteclass::Form, u"Two"_s);
    saved(noteWith(u"Form"_s, textValue(u"Memo"_s), noteclass::Form));
    start();
  }

  // Runs the procedure with the n-th call failing, for n = 1, 2, ... until a run has no n-th call. Gives
  // the number of runs that failed.
  template <class Prepare, class Run, class Check>
  int runWithEveryFault(Prepare prepare, Run run, Check check) {
    const auto runFailing = [&](int n) {
      prepare();
      host.boxes.clear();
      host.pointers.clear();
      state().gDocKind = u"before"_s;
      notes().log.clear();
      return reachesFault(notes(), n, run);
    };
    const int runs = withEveryFault(runFailing, [&](int n) {
      SCOPED_TRACE(notes().log[n - 1].toStdString());
      check(n);
      EXPECT_EQ(engineCapi->openHandles(), 0);
    });
    EXPECT_EQ(host.boxes, Boxes());
    return runs;
  }
  bool failedIn(int n, const QString& name) {
    return notes().log[n - 1].compare(name, Qt::CaseInsensitive) == 0;
  }
};

TEST_F(DesignFaults, AListingEndsInOneBoxAndLeavesItsHourglass) {
  for (const QString& entry : {u"SELECTPROFILES"_s, u"SELECTFORMS"_s}) {
    choose(entry);
    const int runs =
        runWithEveryFault([] {}, [this] { doubleClick(); },
                          [this](int n) {
                            EXPECT_EQ(host.boxes, Boxes({errorBox(u"lstDesigns_DblClick"_s, 70)}));
                            EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass}));
                            EXPECT_EQ(state().gDocKind, "before");
                            // Cleared, and not finished but for the ID behind the last note.
                            const bool whole = callsOf(u"GETNEXTNOTEID"_s) == 3;
                            EXPECT_EQ(rows("idList").size() < 3, n > 2 && !whole);
                          });
    EXPECT_GT(runs, 20);
    EXPECT_EQ(rows("idList").size(), 3);
    EXPECT_EQ(state().gDocKind, "DESIGN");
  }
}

TEST_F(DesignFaults, TheOlderListingEndsInOneBox) {
  choose(u"SELECTPROFILES"_s);
  const int runs = runWithEveryFault([] {}, [this] { app->designDocs.cmdDesignDocs_Click(); },
                                     [this](int) {
                                       EXPECT_EQ(host.boxes, Boxes({errorBox(u"cmdDesignDocs_Click"_s, 70)}));
                                       EXPECT_EQ(host.pointers, QVector<int>());
                                       EXPECT_EQ(state().gDocKind, "before");
                                     });
  EXPECT_GT(runs, 15);
  EXPECT_EQ(rows("idList").size(), 3);
}

TEST_F(DesignFaults, TheScanEndsInOneBoxAndShowsWhereToGoOn) {
  const NoteId id = profile(u"d"_s);
  notes().replies.insert(u"NOTESVERSION"_s, u"Release 4.6"_s);
  const int runs = runWithEveryFault(
      [&] {
        setText("txtLfdNr", QString::number(id.value() - 2));
        host.yields = 0;
        host.whileYielding = [this] { state().gIdScanRunning = host.yields < 2; };
      },
      [this] { app->designDocs.cmdDesignDocs_Click(); },
      [this, id](int) {
        EXPECT_EQ(host.boxes, Boxes({errorBox(u"cmdDesignDocs_Click"_s, 70)}));
        EXPECT_EQ(text("txtLfdNr"), QString::number(id.value() - 2 + uint(host.yields)));
      });
  EXPECT_GE(runs, 8);
  EXPECT_EQ(rows("idList").size(), 1);
}

TEST_F(DesignFaults, TheProfilesGoOnBehindEachBoxWhateverItsNumber) {
  for (const int number : {70, 4000}) {
    notes().failNumber = number;
    const int runs = runWithEveryFault(
        [] {}, [this] { click("cmdGetProfiels"); },
        [&](int n) {
          Boxes expected{errorBox(u"cmdGetProfiels_Click"_s, number)};
          const bool noCollection = failedIn(n, u"GETPROFILEDOCCOLLECTION"_s);
          // The session, then its database.
          if (n == 1 || noCollection) expected += errorBox(u"cmdGetProfiels_Click"_s, err::ObjectNotSet);
          if (n <= 2) expected += noDatabaseBox();
          EXPECT_EQ(host.boxes, expected);
          if (n <= 2) {
            EXPECT_EQ(state().gDocKind, "before");
            return;
          }
          EXPECT_EQ(state().gDocKind, "PROFILE");
          EXPECT_TRUE(state().gDoc.isNothing());
          const bool ofOneNote = n > 7;
          const int rowsLeft = noCollection || failedIn(n, u"count"_s) ? 0 : ofOneNote ? 2 : 3;
          EXPECT_EQ(rows("idList").size(), rowsLeft);
          EXPECT_EQ(text("lblCounter"), QString::number(rowsLeft));
        });
    EXPECT_EQ(runs, 7 + 3 * 3);
  }
}

TEST_F(DesignFaults, TheDeletionTellsARefusedRemovalAndTakesAFailedLookUpForALostNote) {
  NoteId id;
  const int runs = runWithEveryFault(
      [&] {
        id = memo();
        markRows({digits(id)});
      },
      [this] { press("cmdDelete"); },
      [&](int n) {
        const QString failure = standardErrorText(70);
        if (failedIn(n, u"GETDOCUMENTBYID"_s)) {
          EXPECT_EQ(
              host.boxes,
              Boxes({{u"Successfully deleted NoteID "_s + digits(id), box::Information, u"Remove doc"_s}}));
          EXPECT_EQ(database->notes().state(id), NoteState::Gone);
          EXPECT_EQ(markedRows().size(), 1);
        } else if (failedIn(n, u"Remove"_s)) {
          EXPECT_EQ(host.boxes, Boxes({{failure, box::Critical, u"Remove Profiles"_s}}));
          EXPECT_EQ(database->notes().state(id), NoteState::Live);
          EXPECT_EQ(markedRows().size(), 1);
        } else {
          EXPECT_EQ(host.boxes, Boxes({errorBox(u"RefreshCurrentView"_s, 70)}));
          EXPECT_EQ(rows("idList"), QStringList());
        }
        EXPECT_EQ(state().gDocKind, "before");
      });
  EXPECT_EQ(runs, 4);
}

TEST_F(DesignFaults, TheLowLevelTellsAFailureOfTheModelAndOfTheLibraryInTheSameBox) {
  NoteId id;
  const auto told = [&](int number) {
    return Boxes({{u"Notes error %1 occurred: "_s.arg(number) + standardErrorText(number) + u" " + digits(id),
                   box::Information, u"Remove doc"_s}});
  };
  for (const QString& member : {u"SERVER"_s, u"FILEPATH"_s}) {
    id = damaged();
    markRows({digits(id)});
    host.boxes.clear();
    notes().failing = {{member, RuntimeError(70)}};
    press("cmdDelete");
    notes().failing.clear();
    EXPECT_EQ(host.boxes, told(70));
    EXPECT_EQ(database->notes().state(id), NoteState::Damaged);
  }
  for (int n = 1; n <= 6; ++n) {
    SCOPED_TRACE(n);
    id = damaged();
    markRows({digits(id)});
    host.boxes.clear();
    capi().log.clear();
    capi().failAt = capi().calls() + n;
    press("cmdDelete");
    capi().failAt = 0;
    EXPECT_EQ(host.boxes, told(453));
    EXPECT_EQ(database->notes().state(id), n <= 4 ? NoteState::Damaged : NoteState::Gone);
    const QStringList closes = capi().log.filter(u"NSFDbClose"_s);
    EXPECT_EQ(closes.size(), n <= 3 ? 0 : n == 4 ? 1 : 2) << "a handle that was had is closed";
    EXPECT_EQ(engineCapi->openHandles(), 0);
    EXPECT_EQ(markedRows().size(), 1);
  }
}

TEST_F(DesignFaults, AStatusWhoseTextCannotBeReadIsToldWithoutIt) {
  const NoteId id = memo();
  database->notes().remove(id, false);
  markRows({digits(id)});
  capi().failFunction = u"OSLoadString"_s;
  press("cmdDelete");
  EXPECT_EQ(
      host.boxes,
      Boxes({{u"Error 453 ("_s + standardErrorText(453) + u") in procedure GetAPIError of Modul Globals",
              box::Plain,
              {}},
             {u"Unable to delete doc. Error was 551:  "_s + digits(id), box::Information, u"Remove doc"_s}}));
}

}  // namespace
}  // namespace lens
