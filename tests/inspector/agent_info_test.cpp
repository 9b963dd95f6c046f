// The agent record in the content box: how the agent is found and read, and what is shown when it is not.
#include "inspector/agent_info.h"

#include <utility>

#include "embedded/format/agent_records.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

const QString kZeros = agentRecordText(AgentRecord(), {}, {}, Regional(QLocale::c()));
const QStringList kOpening = {u"NotesInitExtended"_s, u"OSPathNetConstruct"_s, u"NSFDbOpen"_s};

// A library that gives only the first bytes of each value.
class CuttingCApi : public ForwardingCApi {
 public:
  CuttingCApi(CApi& next, quint32 length) : ForwardingCApi(next), length_(length) {}
  Status NSFItemInfo(NoteHandle note, const QByteArray& name, quint16 nameLength, BlockId& item,
                     quint16& type, BlockId& value, quint32& valueLength) override {
    const Status status = ForwardingCApi::NSFItemInfo(note, name, nameLength, item, type, value, valueLength);
    valueLength = qMin(valueLength, length_);
    return status;
  }

 private:
  quint32 length_;
};

// A library whose first text of a date is none.
class DatelessCApi : public ForwardingCApi {
 public:
  using ForwardingCApi::ForwardingCApi;
  Status ConvertTIMEDATEToText(const TimeDate& time, QByteArray& text, quint16 size,
                               quint16& length) override {
    if (std::exchange(told_, true)) return ForwardingCApi::ConvertTIMEDATEToText(time, text, size, length);
    text.replace(0, 7, "no date");
    length = 7;
    return 0;
  }

 private:
  bool told_ = false;
};

class AgentInfoTest : public LensFixture {
 protected:
  AgentInfoTest() { openDatabase(u"agents.nsf"_s); }

  static Note agentNote(const QString& title) {
    Note note;
    note.header.noteClass = noteclass::Filter;
    note.add(u"$TITLE"_s, itemflag::Summary, textValue(title));
    return note;
  }
  static AgentSchedule weekly() {
    AgentSchedule schedule;
    schedule.trigger = 1;
    schedule.search = 3;
    schedule.intervalType = 3;
    schedule.interval = 1;
    schedule.time1 = 7'920'000;
    schedule.time2 = 4;
    schedule.start = timeDateOf(DateTime{QDate(2024, 3, 11), QTime(8, 30)});
    schedule.end = timeDateOf(DateTime{QDate(2024, 12, 24), QTime(0, 0)});
    schedule.flags = 18;
    return schedule;
  }
  // Saves an agent with this value and clicks its "$AssistInfo" by a row of idList.
  void view(const QByteArray& value, const QString& title = u"Clean up|clean"_s) {
    Note note = agentNote(title);
    note.add(u"$AssistInfo"_s, 0, value);
    viewSaved(save(note), title);
  }
  void viewSaved(NoteId id, const QString& title) {
    start();
    const QString idText = id.hexText().rightJustified(8, u'0');
    control<ListBox>("idList").addItem(title + u"  # " + idText);
    select("idList", 0);
    click("cmdidList");
    host.boxes.clear();
    capi().log.clear();
    clickInfo();
  }
  void clickInfo() { selectRow("fldList", u"$AssistInfo:"_s); }
  // Names the row anew; the document on display stays.
  void renameRow(const QString& row) {
    control<ListBox>("idList").setList(0, row);
    host.boxes.clear();
    capi().log.clear();
    clickInfo();
  }
  // The calls of the decoder: those of the size stand in front.
  QStringList calls() { return capi().log.mid(capi().log.indexOf(u"NotesTerm"_s) + 1); }
  QString line(const QString& name) {
    for (const QString& line : text("txtFieldContent").split(u'\n'))
      if (line.startsWith(name + u":")) return line;
    return u"(missing)"_s;
  }
};

TEST_F(AgentInfoTest, ShowsEveryFieldOfTheStoredRecord) {
  view(assistInfoValue(weekly()));
  AgentRecord record;
  record.version = 1;
  record.triggerType = 1;
  record.searchType = record.intervalType = 3;
  record.interval = 1;
  record.time1 = 7'920'000;
  record.time2 = 4;
  record.flags = 18;
  EXPECT_EQ(text("txtFieldContent"),
            agentRecordText(record, u"11.03.2024 08:30:00"_s, u"24.12.2024"_s, host.regional()));
  EXPECT_EQ(line(u"Time1"_s), "Time1:             22:00:00   --> (Start time (ms since midnight))");
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(engineCapi->openHandles(), 0);
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(AgentInfoTest, ShowsDatesByTheRegionOfTheUser) {
  host.setRegion(QLocale(QLocale::English, QLocale::UnitedStates));
  workspace = Workspace::open(directory.filePath(u"american"_s), host.regional());
  engineNotes = std::make_unique<EmbeddedGateway>(workspace);
  engineCapi = std::make_unique<EmbeddedCApi>(workspace);
  notesDoor = std::make_unique<FaultyGateway>(*engineNotes);
  capiDoor = std::make_unique<ForwardingCApi>(*engineCapi);
  openDatabase(u"agents.nsf"_s);
  view(assistInfoValue(weekly()));
  const QString start = host.regional().text(DateTime{QDate(2024, 3, 11), QTime(8, 30)});
  EXPECT_TRUE(start.startsWith(u"3/11/2024 8:30:00")) << start.toStdString();
  EXPECT_EQ(line(u"StartTime"_s), u"StartTime:         "_s + start + u"   --> (Time/Date)");
}

TEST_F(AgentInfoTest, KeepsNameAndTypeOfTheItemShownBefore) {
  view(assistInfoValue(weekly()));
  selectRow("fldList", u"$TITLE:"_s);
  EXPECT_EQ(text("txtFieldName"), "$TITLE");
  clickInfo();
  EXPECT_EQ(text("txtFieldName"), "$TITLE");
  EXPECT_EQ(text("cmbFieldType"), "TEXT (1280) means text or text list");
  EXPECT_TRUE(text("txtFieldContent").startsWith(u"Version:           1\n"));
  EXPECT_EQ(text("lblSize"), "104 bytes");
}

TEST_F(AgentInfoTest, PutsTheCaretAtTheTop) {
  view(assistInfoValue(weekly()));
  EXPECT_EQ(control<RichTextBox>("txtFieldContent").selStart(), 1);
  EXPECT_EQ(control<RichTextBox>("txtFieldContent").selLength(), 0);
}

TEST_F(AgentInfoTest, OpensReadsAndReleasesInThisOrder) {
  view(assistInfoValue(weekly()));
  EXPECT_EQ(
      calls(),
      kOpening + QStringList({u"NIFFindDesignNote"_s, u"NSFNoteOpen"_s, u"NSFItemInfo"_s, u"OSLockObject"_s,
                              u"ConvertTIMEDATEToText"_s, u"ConvertTIMEDATEToText"_s, u"OSUnlockObject"_s,
                              u"OSUnlockObject"_s, u"NSFNoteClose"_s, u"NSFDbClose"_s, u"NotesTerm"_s}));
}

TEST_F(AgentInfoTest, LooksForTheTitleInFrontOfTheAlias) {
  view(assistInfoValue(weekly()));
  renameRow(u"  Clean up |no such alias  # 00000001"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_TRUE(line(u"TriggerType"_s).startsWith(u"TriggerType:   1 "));
  renameRow(u"Clean up"_s);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_TRUE(line(u"TriggerType"_s).startsWith(u"TriggerType:   1 "));
}

TEST_F(AgentInfoTest, ABareIdIsTakenAsTheTitle) {
  view(assistInfoValue(weekly()));
  renameRow(u"00000A12"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Can't find agent 00000A12"_s, box::Critical, {}}}));
  EXPECT_EQ(text("txtFieldContent"), kZeros);
  EXPECT_EQ(calls(), kOpening + QStringList({u"NIFFindDesignNote"_s, u"NSFDbClose"_s, u"NotesTerm"_s}));
  EXPECT_EQ(host.pointerCode, pointer::Default);
}

TEST_F(AgentInfoTest, ATitleOutsideTheCodePageIsToldInItsOwnLetters) {
  view(assistInfoValue(weekly()));
  renameRow(u"Очистка  # 00000001"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Can't find agent Очистка"_s, box::Critical, {}}}));
  renameRow(u"|clean  # 00000001"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Can't find agent "_s, box::Critical, {}}}));
}

// Unlike a title that is not found, which shows a record of zeros.
TEST_F(AgentInfoTest, WithoutARowNothingIsReadAndTheHourglassStays) {
  view(assistInfoValue(weekly()));
  control<ListBox>("idList").clear();
  capi().log.clear();
  clickInfo();
  EXPECT_EQ(text("txtFieldContent"), "");
  EXPECT_EQ(calls(), QStringList());
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(host.pointerCode, pointer::Hourglass);
  EXPECT_EQ(app->routines.mouseBusyCount(), 1);
}

TEST_F(AgentInfoTest, AnotherNoteOfTheSameTitleIsNoAgent) {
  Note form;
  form.header.noteClass = noteclass::Form;
  form.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Order"_s));
  form.add(u"$AssistInfo"_s, 0, assistInfoValue(weekly()));
  viewSaved(save(form), u"Order"_s);
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Can't find agent Order"_s, box::Critical, {}}}));
}

TEST_F(AgentInfoTest, AnAgentWithoutARecordShowsZerosAndNoMessage) {
  view(assistInfoValue(weekly()));
  Note bare = agentNote(u"Bare"_s);
  save(bare);
  renameRow(u"Bare  # 00000001"_s);
  EXPECT_EQ(text("txtFieldContent"), kZeros);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(calls(), kOpening + QStringList({u"NIFFindDesignNote"_s, u"NSFNoteOpen"_s, u"NSFItemInfo"_s,
                                             u"OSUnlockObject 0"_s, u"NSFNoteClose"_s, u"NSFDbClose"_s,
                                             u"NotesTerm"_s}));
}

TEST_F(AgentInfoTest, ADatabaseThatCannotBeOpenedIsSaidAndZerosAreShown) {
  view(assistInfoValue(weekly()));
  notes().replies.insert(u"FILEPATH"_s, u"gone.nsf"_s);
  capi().log.clear();
  clickInfo();
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Can't open database"_s, box::Critical, {}}}));
  EXPECT_EQ(text("txtFieldContent"), kZeros);
  EXPECT_EQ(calls(), kOpening + QStringList({u"OSUnlockObject 0"_s, u"NSFNoteClose 0"_s, u"NSFDbClose 0"_s,
                                             u"NotesTerm"_s}));
}

TEST_F(AgentInfoTest, WithoutADocumentTheFailureIsSaidAndZerosAreShown) {
  view(assistInfoValue(weekly()));
  state().gDoc.release();
  capi().log.clear();
  clickInfo();
  const ShownBox said{u"Object variable or With block variable not set"_s, box::Plain, {}};
  EXPECT_EQ(host.boxes, QVector<ShownBox>({said, said}));  // of the size, then of the record
  EXPECT_EQ(text("txtFieldContent"), kZeros);
  EXPECT_EQ(calls(),
            QStringList({u"OSUnlockObject 0"_s, u"NSFNoteClose 0"_s, u"NSFDbClose 0"_s, u"NotesTerm"_s}));
}

TEST_F(AgentInfoTest, TheRecordIsReadOnTheServerWhereTheDatabaseLies) {
  Note local = agentNote(u"Clean up"_s);
  local.add(u"$AssistInfo"_s, 0, assistInfoValue(AgentSchedule()));
  save(local);
  openDatabase(u"agents.nsf"_s, u"CN=Hub/O=Acme"_s);
  view(assistInfoValue(weekly()), u"Clean up"_s);
  EXPECT_TRUE(line(u"TriggerType"_s).startsWith(u"TriggerType:   1 "))
      << text("txtFieldContent").toStdString();
  EXPECT_EQ(boxes(), QStringList());
}

TEST_F(AgentInfoTest, DatesThatAreNoneStayEmptyAndTheReadingGoesOn) {
  AgentSchedule schedule = weekly();
  for (const TimeDate& none : {TimeDate{}, TimeDate{{0xFFFFFFFF, 0xFFFFFFFF}}}) {
    schedule.start = none;
    view(assistInfoValue(schedule));
    EXPECT_EQ(line(u"StartTime"_s), "StartTime:            --> (Time/Date)");
    EXPECT_EQ(line(u"EndTime"_s), "EndTime:           24.12.2024   --> (Time/Date)");
    EXPECT_TRUE(line(u"Flags"_s).startsWith(u"Flags:              18 "));
    EXPECT_EQ(boxes(), QStringList());
    app.reset();
  }
}

TEST_F(AgentInfoTest, ATextThatIsNoDateLeavesItsFieldEmptyAndTheReadingGoesOn) {
  capiDoor = std::make_unique<DatelessCApi>(*engineCapi);
  view(assistInfoValue(weekly()));
  EXPECT_EQ(line(u"StartTime"_s), "StartTime:            --> (Time/Date)");
  EXPECT_EQ(line(u"EndTime"_s), "EndTime:           24.12.2024   --> (Time/Date)");
  EXPECT_TRUE(line(u"Flags"_s).startsWith(u"Flags:              18 "));
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(engineCapi->openHandles(), 0);
}

TEST_F(AgentInfoTest, RecordsOfAnyLengthAreShown) {
  const QByteArray whole = assistInfoValue(weekly());
  // Nothing shorter than the type word can be stored.
  for (const int size : {2, 3, 39, 40, 60000}) {
    const QByteArray value = whole.leftJustified(size, '\x7F').first(size);
    view(value);
    const AgentRecord expected = readAgentRecord(value);
    EXPECT_TRUE(line(u"Version"_s) == u"Version:           "_s + QString::number(expected.version)) << size;
    EXPECT_TRUE(
        line(u"Flags"_s).startsWith(u"Flags:              "_s + QString::number(expected.flags) + u" "))
        << size;
    EXPECT_EQ(line(u"StartTime"_s).contains(u"11.03.2024 08:30:00"), size >= 39) << size;
    EXPECT_EQ(boxes(), QStringList()) << size;
    EXPECT_EQ(engineCapi->openHandles(), 0) << size;
    app.reset();
    for (const NoteSummary& summary : database->notes().list(noteclass::Filter))
      database->notes().remove(summary.id);
  }
}

TEST_F(AgentInfoTest, AValueWithoutAWholeTypeWordIsARecordOfZeros) {
  for (const quint32 length : {0u, 1u}) {
    capiDoor = std::make_unique<CuttingCApi>(*engineCapi, length);
    view(assistInfoValue(weekly()));
    EXPECT_EQ(text("txtFieldContent"), kZeros) << length;
    EXPECT_EQ(text("lblSize"), QString::number(length) + u" bytes") << length;
    EXPECT_EQ(boxes(), QStringList()) << length;
    app.reset();
  }
}

TEST_F(AgentInfoTest, ARecordOfAnotherTypeIsReadAllTheSame) {
  const QByteArray record = assistInfoValue(weekly());
  view(rawValue(itemtype::Action, QByteArrayView(record).sliced(2)));
  EXPECT_TRUE(line(u"TriggerType"_s).startsWith(u"TriggerType:   1 "));
  EXPECT_EQ(line(u"EndTime"_s), "EndTime:           24.12.2024   --> (Time/Date)");
}

TEST_F(AgentInfoTest, AClickShowsWhatIsStoredAtThatMoment) {
  view(assistInfoValue(weekly()));
  Note note;
  ASSERT_TRUE(database->notes().read(database->notes().list(noteclass::Filter).constFirst().id, note));
  AgentSchedule changed = weekly();
  changed.trigger = 5;
  note.find(u"$AssistInfo")->value = assistInfoValue(changed);
  save(note);
  clickInfo();
  EXPECT_TRUE(line(u"TriggerType"_s).startsWith(u"TriggerType:   5 "));
}

// --- failures of single calls ---

TEST_F(AgentInfoTest, SaysTheStandardTextOfAFailure) {
  view(assistInfoValue(weekly()));
  notes().failing.insert(u"SERVER"_s, RuntimeError(4102, u"Own words of the model"_s));
  host.boxes.clear();
  clickInfo();
  // The size is told by the words of the model, the record by those of the number.
  EXPECT_EQ(host.boxes, QVector<ShownBox>({{u"Own words of the model"_s, box::Plain, {}},
                                           {u"Application-defined error"_s, box::Plain, {}}}));
  EXPECT_EQ(text("txtFieldContent"), kZeros);
}

TEST_F(AgentInfoTest, AMissingFunctionIsSaidOnceAndEndsNothingElse) {
  view(assistInfoValue(weekly()));
  for (const char16_t* function : {u"OSUnlockObject", u"NSFNoteClose", u"NIFFindDesignNote"}) {
    capi().failFunction = QString::fromUtf16(function);
    host.boxes.clear();
    clickInfo();
    const bool unlock = capi().failFunction == u"OSUnlockObject";
    EXPECT_EQ(host.boxes,
              QVector<ShownBox>(unlock ? 2 : 1, {u"Specified DLL function not found"_s, box::Plain, {}}))
        << capi().failFunction.toStdString();
    EXPECT_EQ(capi().log.last(), "NotesTerm");
    EXPECT_EQ(engineCapi->openHandles(), 0);
  }
}

// Every call of the click fails once; boxes, fields and handles are as told.
TEST_F(AgentInfoTest, EveryCallOfTheLibraryMayFail) {
  view(assistInfoValue(weekly()));
  const QString whole = text("txtFieldContent");
  const QString noStart = QString(whole).replace(u"11.03.2024 08:30:00"_s, QString());
  const QString noEnd = QString(whole).replace(u"24.12.2024"_s, QString());
  struct Expected {
    int boxes;
    QString shown;
  };
  const QVector<Expected> expected = {
      // the size: the record is read all the same
      {1, whole},
      {1, whole},
      {1, whole},
      {1, whole},
      {1, whole},
      {1, whole},
      {0, whole},
      // NotesInitExtended to NSFItemInfo, OSLockObject
      {1, kZeros},
      {1, kZeros},
      {1, kZeros},
      {1, kZeros},
      {1, kZeros},
      {1, kZeros},
      {1, kZeros},
      // the two dates
      {0, noStart},
      {0, noEnd},
      // the releases
      {1, whole},
      {1, whole},
      {1, whole},
      {1, whole},
      {1, whole},
  };
  for (int n = 1; n <= expected.size() + 1; ++n) {
    host.boxes.clear();
    const int before = capi().calls();
    capi().failAt = before + n;
    clickInfo();
    capi().failAt = 0;
    const bool reached = capi().calls() - before >= n;
    ASSERT_EQ(reached, n <= expected.size()) << n;
    if (!reached) return;
    EXPECT_EQ(host.boxes, QVector<ShownBox>(expected[n - 1].boxes,
                                            {u"Specified DLL function not found"_s, box::Plain, {}}))
        << n;
    EXPECT_EQ(text("txtFieldContent"), expected[n - 1].shown) << n;
    EXPECT_EQ(engineCapi->openHandles(), 0) << n;
    EXPECT_EQ(host.pointerCode, pointer::Default) << n;
    EXPECT_EQ(app->routines.mouseBusyCount(), 0) << n;
  }
}

TEST_F(AgentInfoTest, EveryCallOfTheModelMayFail) {
  view(assistInfoValue(weekly()));
  const QString whole = text("txtFieldContent");
  // GETFIRSTITEM, four flags; place and ID of the note for its size; place of the database.
  const QVector<int> boxesAt = {0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1};
  for (int n = 1; n <= boxesAt.size() + 1; ++n) {
    host.boxes.clear();
    notes().log.clear();
    notes().failAt = n;
    clickInfo();
    notes().failAt = 0;
    const bool reached = notes().calls() >= n;
    ASSERT_EQ(reached, n <= boxesAt.size()) << n << " " << notes().log.join(u' ').toStdString();
    if (!reached) return;
    EXPECT_EQ(host.boxes, QVector<ShownBox>(boxesAt[n - 1], {u"Permission denied"_s, box::Plain, {}})) << n;
    EXPECT_EQ(text("txtFieldContent"), n > 9 ? kZeros : whole) << n;
    EXPECT_EQ(engineCapi->openHandles(), 0) << n;
    EXPECT_EQ(app->routines.mouseBusyCount(), 0) << n;
  }
}

}  // namespace
}  // namespace lens
