#include "design/design_docs.h"

#include "design/design_fixture.h"

namespace lens {
namespace {

const QString kDesignDocsProcedure = u"cmdDesignDocs_Click"_s;

class DesignDocsTest : public DesignTest {
 protected:
  void run() { app->designDocs.cmdDesignDocs_Click(); }
  void run(const QString& entry) {
    choose(entry);
    run();
  }
  void useRelease(const QString& release) { notes().replies.insert(u"NOTESVERSION"_s, release); }
  bool tookCollection() { return callsOf(u"CREATENOTECOLLECTION"_s) > 0; }
};

TEST_F(DesignDocsTest, PutsTheIdFirstAndTheNameBehindIt) {
  const NoteId named = saved(noteWith(u"$Name"_s, textValue(u"a name"_s)));
  const NoteId titled = saved(noteWith(u"$Title"_s, textValue(u"a title"_s)));
  const NoteId empty = saved(noteWith(u"$Name"_s, textListValue({})));
  start();
  run(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"),
            QStringList({digits(named) + u" a name", digits(titled) + u" ", digits(empty) + u" "}));
  EXPECT_EQ(caption(), "DOCUMENTS documents in: !!mail.nsf");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignDocsTest, CutsALongNoteIdToItsLastEightDigits) {
  memo();
  start();
  notes().replies.insert(u"NOTEID"_s, u"12345678AB"_s);
  run(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), QStringList(u"345678AB "_s));
}

TEST_F(DesignDocsTest, LeavesCounterKindPointerAndSessionAsTheyWere) {
  const NoteId last = memo();
  start();
  const Object session = state().gSession;
  const QString counter = text("lblCounter");
  host.pointers.clear();
  host.yields = 0;
  notes().log.clear();
  control<ListBox>("fldList").addItem(u"old: row"_s);
  state().gDesignStop = true;
  run(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList").size(), 1);
  EXPECT_EQ(rows("fldList"), QStringList());
  EXPECT_EQ(text("lblCounter"), counter);
  EXPECT_EQ(state().gDocKind, "PROFILE");
  EXPECT_EQ(host.pointers, QVector<int>());
  EXPECT_EQ(host.yields, 0);
  EXPECT_TRUE(state().gDesignStop);
  EXPECT_TRUE(state().gSession == session);
  EXPECT_EQ(state().gDoc.get(u"NoteID"_s).text(), last.hexText());
  EXPECT_FALSE(state().gNoteColl.isNothing());
  EXPECT_EQ(callsOf(u"SELECTALLNOTES"_s), 0);
  EXPECT_EQ(callsOf(u"HASITEM"_s), 0);
}

TEST_F(DesignDocsTest, KnowsTheClassesOfTheListSaveOne) {
  start();
  for (const QString& entry : rows("lstDesigns")) {
    notes().log.clear();
    run(entry);
    const bool known = entry != u"SELECTHELPINDEX";
    EXPECT_EQ(notes().log.filter(u"SELECT"_s), known ? QStringList(entry) : QStringList());
    EXPECT_EQ(callsOf(u"BUILDCOLLECTION"_s), 1);
    QString label = entry.mid(6);
    if (!known) label.clear();
    if (entry == u"SELECTIONFORMULA") label = entry;
    if (entry == u"SELECTPROFILES") label = u"ROFILES"_s;
    EXPECT_EQ(caption(), label + u" documents in: !!mail.nsf");
  }
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(DesignDocsTest, WouldSwitchOnATimeIfTheListNamedIt) {
  start();
  control<ListBox>("lstDesigns").addItem(u"SINCETIME"_s);
  run(u"SINCETIME"_s);
  EXPECT_EQ(callsOf(u"SINCETIME"_s), 1);
  EXPECT_EQ(caption(), "SINCETIME documents in: !!mail.nsf");
}

TEST_F(DesignDocsTest, ChoosesItsPathByTheFirstNineCharactersOfTheRelease) {
  start();
  host.whileYielding = [&] { state().gIdScanRunning = false; };
  for (const QString& release : {u"Release 5.0.13"_s, u"Release 8.5"_s, u"Release 5"_s, u"release 4"_s}) {
    useRelease(release);
    notes().log.clear();
    run(u"SELECTVIEWS"_s);
    EXPECT_TRUE(tookCollection()) << release.toStdString();
  }
  for (const QString& release : {u"Release 4.6"_s, u"Release 10.0"_s, u"RELEASE 9"_s, QString()}) {
    useRelease(release);
    notes().log.clear();
    run(u"SELECTVIEWS"_s);
    EXPECT_FALSE(tookCollection()) << release.toStdString();
  }
}

TEST_F(DesignDocsTest, WithoutADatabaseChangesNothing) {
  profile(u"a"_s);
  start();
  const QStringList before = rows("idList");
  closeDatabase();
  run(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(host.boxes, Boxes({noDatabaseBox()}));
  EXPECT_EQ(rows("idList"), before);
}

TEST_F(DesignDocsTest, WithoutASessionShowsTheErrorBox) {
  start();
  state().gSession.release();
  run();
  EXPECT_EQ(host.boxes, Boxes({errorBox(kDesignDocsProcedure, err::ObjectNotSet)}));
}

TEST_F(DesignDocsTest, EndsAtANoteThatIsGone) {
  const NoteId first = memo(), second = memo();
  start();
  notes().replies.insert(u"GETNEXTNOTEID"_s, QString());
  run(u"SELECTDOCUMENTS"_s);
  EXPECT_EQ(rows("idList"), QStringList(digits(first) + u" "));
  EXPECT_EQ(host.boxes, Boxes({errorBox(kDesignDocsProcedure, err::ObjectNotSet)}));
  EXPECT_EQ(database->notes().state(second), NoteState::Live);
}

class NoteIdScan : public DesignDocsTest {
 protected:
  NoteIdScan() { useRelease(u"Release 4.6"_s); }
  // Runs the scan over so many IDs, from what stands in the box.
  void scan(int ids, const QString& from) {
    setText("txtLfdNr", from);
    host.yields = 0;
    host.whileYielding = [this, ids] {
      shownIds += text("lfdIDNum");
      counters += text("txtLfdNr");
      if (host.yields == ids) state().gIdScanRunning = false;
    };
    run();
  }
  QStringList shownIds, counters;
};

TEST_F(NoteIdScan, TriesEveryNumberOneAheadOfTheCounterAndShowsBoth) {
  start();
  notes().replies.insert(u"GETDOCUMENTBYID"_s, Object());
  scan(3, u"2585"_s);
  EXPECT_EQ(shownIds, QStringList({u"00000A1A"_s, u"00000A1B"_s, u"00000A1C"_s}));
  EXPECT_EQ(counters, QStringList({u"2585"_s, u"2586"_s, u"2587"_s}));
  EXPECT_EQ(text("txtLfdNr"), "2587");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(NoteIdScan, BeginsAtTheNumberInTheBoxOrAtOne) {
  start();
  notes().replies.insert(u"GETDOCUMENTBYID"_s, Object());
  const QVector<QPair<QString, QString>> starts{{QString(), u"1"_s},   {u"abc"_s, u"1"_s}, {u"0"_s, u"1"_s},
                                                {u"-5"_s, u"5"_s},     {u"7.6"_s, u"8"_s}, {u"8.5"_s, u"8"_s},
                                                {u" 12 x"_s, u"12"_s}, {u"0.2"_s, u"0"_s}};
  for (const auto& [typed, first] : starts) {
    counters.clear();
    scan(1, typed);
    EXPECT_EQ(counters, QStringList(first)) << typed.toStdString();
  }
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(NoteIdScan, ShowsItsControlsAndLeavesThemShown) {
  start();
  const QStringList names{u"cmdStop"_s, u"lfdIDNum"_s, u"txtLfdNr"_s, u"Label4"_s};
  for (const QString& name : names) form().findChild<QWidget*>(name)->setVisible(false);
  notes().replies.insert(u"GETDOCUMENTBYID"_s, Object());
  scan(1, u"1"_s);
  for (const QString& name : names)
    EXPECT_TRUE(form().findChild<QWidget*>(name)->isVisible()) << name.toStdString();
  EXPECT_EQ(caption(), "Documents in: !!mail.nsf");
  EXPECT_EQ(state().gDocKind, "PROFILE");
  EXPECT_TRUE(state().gDoc.isNothing());
  EXPECT_TRUE(state().gNoteColl.isNothing());
}

TEST_F(NoteIdScan, FindsProfilesAndEndsAtTheFirstIdThatTheClientRefuses) {
  const NoteId before = memo();
  const NoteId first = profile(u"a"_s);
  saved(noteWith(u"$Name"_s, textValue(u"$Profile_001b_"_s)));
  saved(noteWith(u"$Name"_s, textValue(u"a $profile_"_s)));
  const NoteId gone = profile(u"gone"_s);
  database->notes().remove(gone);
  const NoteId second = profile(u"b"_s);
  start();
  scan(1000, QString::number(before.value()));
  EXPECT_EQ(rows("idList"), QStringList({digits(first) + u" " + profileName(u"a"_s),
                                         digits(second) + u" " + profileName(u"b"_s)}));
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_EQ(host.boxes[0].style, box::Plain);
  EXPECT_EQ(host.boxes[0].title, QString());
  EXPECT_TRUE(host.boxes[0].text.contains(digits(NoteId(second.value() + 1))))
      << host.boxes[0].text.toStdString();
  EXPECT_TRUE(host.boxes[0].text.endsWith(u") in procedure cmdDesignDocs_Click of Formular Form1"));
  EXPECT_EQ(text("txtLfdNr"), QString::number(second.value())) << "the next scan begins where this one ended";
  EXPECT_EQ(host.yields, int(second.value() - before.value()));
}

TEST_F(NoteIdScan, ShowsEachHitAtOnce) {
  const NoteId id = profile(u"a"_s);
  start();
  QStringList seen;
  setText("txtLfdNr", QString::number(id.value() - 1));
  host.whileYielding = [&] {
    seen = rows("idList");
    state().gIdScanRunning = false;
  };
  run();
  EXPECT_EQ(seen, QStringList(digits(id) + u" " + profileName(u"a"_s)));
  EXPECT_EQ(text("lblCounter"), "1") << "the counter is that of the listing at the start";
}

TEST_F(NoteIdScan, StopsAtItsButtonAndNotAtTheOther) {
  start();
  notes().replies.insert(u"GETDOCUMENTBYID"_s, Object());
  setText("txtLfdNr", u"1"_s);
  host.yields = 0;
  host.whileYielding = [&] {
    click("Command1");
    if (host.yields < 5) return;
    host.whileYielding = nullptr;  // the button takes events by itself
    click("cmdStop");
  };
  run();
  EXPECT_EQ(text("txtLfdNr"), "5");
  EXPECT_EQ(host.boxes, Boxes());
}

TEST_F(NoteIdScan, EndsInAnOverflowBehindTheHighestNumber) {
  start();
  notes().replies.insert(u"GETDOCUMENTBYID"_s, Object());
  scan(1000, u"2147483645"_s);
  EXPECT_EQ(shownIds, QStringList({u"7FFFFFFE"_s, u"7FFFFFFF"_s}));
  EXPECT_EQ(text("txtLfdNr"), "2147483646");
  EXPECT_EQ(host.boxes, Boxes({errorBox(kDesignDocsProcedure, err::Overflow)}));
  host.boxes.clear();
  scan(1000, u"3000000000"_s);
  EXPECT_EQ(host.boxes, Boxes({errorBox(kDesignDocsProcedure, err::Overflow)}));
}

TEST_F(NoteIdScan, PassesOverANameWithoutValues) {
  const NoteId nameless = saved(noteWith(u"$Name"_s, textListValue({})));
  const NoteId profile = saved(noteWith(u"$Name"_s, textValue(u"$profile_005setup_"_s)));
  start();
  scan(int(profile.value() - nameless.value()) + 1, QString::number(nameless.value() - 1));
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(rows("idList").size(), 1);
  EXPECT_TRUE(rows("idList").join(u'|').contains(u"$profile_005setup_"_s));
}

}  // namespace
}  // namespace lens
