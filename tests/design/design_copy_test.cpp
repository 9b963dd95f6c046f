// "Copy/Move design doc": the window, and what becomes of the note.
#include "design/design_copy.h"

#include <QTest>
#include <QTimer>

#include "design/tools_fixture.h"
#include "shell/exact_texts.h"

namespace lens {
namespace {

const QString kHub = u"CN=Hub/O=Acme"_s;

class DesignCopyTest : public ToolsTest {
 protected:
  DesignCopyTest() {
    source = database;
    target = openDatabase(u"target.nsf"_s);
    workspace->client().showDatabase({{}, u"mail.nsf"_s});
    database = source;
  }
  // The program with a form in the list.
  void startWith(const Note& note) {
    Note copy = note;
    id = save(copy);
    startOnDatabase();
    state().gSession = NotesSession::ofClient(*notesDoor);
    fill("idList", {row(u"Memo"_s, id)});
    control<ListBox>("idList").setListIndex(0);
  }
  Form2& window() { return app->designCopy().window; }
  // Presses "Copy/Move design doc" and does the rest in the window.
  void open(const std::function<void()>& inside) {
    QTimer::singleShot(0, &window(), [&] {
      inside();
      window().hide();
    });
    press("cmdDocCopy");
  }
  void chooseTarget(const QString& path = u"target.nsf"_s) {
    window().lstDBNamesDest->setListIndex(window().lstDBNamesDest->find(path));
  }
  void copy() { window().cmdCopy->click.fire(); }
  void move() { window().cmdMoveDocs->click.fire(); }
  QVector<Note> notesIn(Database& where, quint16 noteClass = noteclass::Form) {
    QVector<Note> found;
    for (const NoteSummary& summary : where.notes().list(noteClass)) {
      Note note;
      EXPECT_TRUE(where.notes().read(summary.id, note));
      found += note;
    }
    return found;
  }
  static Note formNote() {
    Note note;
    note.header.noteClass = noteclass::Form;
    note.add(u"$TITLE"_s, itemflag::Summary, textValue(u"Memo"_s));
    return note;
  }
  static QString textOfItem(const Note& note, const QString& name) {
    const Item* item = note.find(name);
    return item ? firstText(*item) : u"(none)"_s;
  }
  bool isThere(NoteId noteId) {
    Note note;
    return source->notes().read(noteId, note);
  }

  std::shared_ptr<Database> source, target;
  NoteId id;
};

// --- the window ---

TEST_F(DesignCopyTest, LoadsTheSourceTheNoteAndTheDatabases) {
  startWith(formNote());
  open([&] {
    EXPECT_TRUE(window().isModal());
    EXPECT_EQ(window().windowTitle(), "Copy/Move design doc");
    EXPECT_EQ(window().txtSourceDB->text(), u"!!mail.nsf"_s);
    EXPECT_EQ(window().txtDocID->text(), digits(id));
    EXPECT_EQ(window().lstDesignServer->text(), u"Local"_s);
    EXPECT_GE(window().lstDBNamesDest->find(u"target.nsf"_s), 0);
    EXPECT_EQ(window().lblDB2->text(), "Select target DB");
  });
}

TEST_F(DesignCopyTest, ListsTheDatabasesOfAServer) {
  workspace->addServer(kHub);
  workspace->createDatabase(kHub, u"apps/hub.nsf"_s, {}, true);
  startWith(formNote());
  open([&] {
    window().lstDesignServer->setText(kHub);
    EXPECT_EQ(window().lstDBNamesDest->find(u"apps"_s), -1);
    QTest::keyClick(window().lstDesignServer, Qt::Key_Return);
    EXPECT_EQ(window().lblDB2->text(), u"Databases on: "_s + kHub);
    EXPECT_EQ(window().lstDBNamesDest->listCount(), 1);
    window().lstDesignServer->setText(u"Local"_s);
    window().cmdExpand2->click.fire();
    EXPECT_EQ(window().lblDB2->text(), u"Databases on: Local"_s);
    EXPECT_GE(window().lstDBNamesDest->find(u"target.nsf"_s), 0);
  });
}

TEST_F(DesignCopyTest, ListingShowsTheHourglassMeanwhile) {
  startWith(formNote());
  open([&] {
    host.pointers.clear();
    window().cmdExpand2->click.fire();
    EXPECT_EQ(host.pointers, QVector<int>({pointer::Hourglass, pointer::Default}));
  });
}

// The row's title may have a mark of its own: the first one counts.
TEST_F(DesignCopyTest, TheNoteIsWhatStandsBehindTheFirstMarkOfTheRow) {
  startWith(formNote());
  for (const auto& [chosen, shown] :
       {std::pair(u"Memo # 5  # 00000102"_s, u"5  # 00000102"_s), std::pair(u"00000102"_s, u"00000102"_s),
        std::pair(u"Memo #00000102"_s, u"Memo #00000102"_s)}) {
    fill("idList", {chosen});
    control<ListBox>("idList").setListIndex(0);
    open([&] {
      EXPECT_EQ(window().txtDocID->text(), shown);
      window().close();
    });
  }
  fill("idList", {});
  open([&] { EXPECT_EQ(window().txtDocID->text(), QString()); });
}

TEST_F(DesignCopyTest, WithoutADatabaseTheSourceIsEmpty) {
  startWith(formNote());
  state().gDb.release();
  open([&] { EXPECT_EQ(window().txtSourceDB->text(), QString()); });
}

TEST_F(DesignCopyTest, AHiddenWindowStaysLoadedAClosedOneIsLoadedAnew) {
  startWith(formNote());
  open([&] { window().txtDocID->setText(u"typed"_s); });
  EXPECT_FALSE(state().gSession.isNothing());
  open([&] {
    EXPECT_EQ(window().txtDocID->text(), u"typed"_s);
    window().close();
    EXPECT_TRUE(state().gSession.isNothing());
  });
  open([&] {
    EXPECT_EQ(window().txtDocID->text(), digits(id));
    EXPECT_FALSE(state().gSession.isNothing());
    // The session that the load made is none of the client's.
    copy();
    EXPECT_EQ(boxes(), QStringList(exact::kNoDatabase));
  });
}

TEST_F(DesignCopyTest, EscLeavesItOpen) {
  startWith(formNote());
  open([&] {
    QTest::keyClick(&window(), Qt::Key_Escape);
    EXPECT_TRUE(window().isVisible());
  });
}

// Without an address book the library's servers go into this window, whichever window asked.
TEST_F(DesignCopyTest, ServersOfTheLibraryLoadItUnseenAndItsFirstShowingLoadsItAgain) {
  workspace->addServer(u"CN=A/O=Acme"_s);
  workspace->addServer(u"CN=B/O=Acme"_s);
  startWith(formNote());
  EXPECT_FALSE(window().isVisible());
  ASSERT_GE(window().lstDesignServer->listCount(), 4);  // its own load within the walk, then the walk
  EXPECT_EQ(window().txtDocID->text(), QString());
  open([&] { EXPECT_EQ(window().txtDocID->text(), digits(id)); });
}

// Commands that begin with a look at the session do nothing until another one has made a new session.
TEST_F(DesignCopyTest, ClosingItLeavesNoSessionToTheMainWindow) {
  startWith(formNote());
  open([&] { window().close(); });
  EXPECT_TRUE(state().gSession.isNothing());
  EXPECT_EQ(state().gDb.filePath(), u"mail.nsf"_s);
  notes().log.clear();
  press("cmdFuncList");
  EXPECT_EQ(notes().log, QStringList());
  EXPECT_EQ(boxes(), QStringList());
}

// --- copying ---

TEST_F(DesignCopyTest, WithoutASessionTheButtonsDoNothing) {
  startWith(formNote());
  open([&] {
    chooseTarget();
    state().gSession.release();
    notes().log.clear();
    copy();
    move();
    EXPECT_TRUE(window().isVisible());
  });
  EXPECT_EQ(notes().log, QStringList());
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_TRUE(isThere(id));
}

TEST_F(DesignCopyTest, CopiesOntoAServer) {
  workspace->addServer(kHub);
  const auto hub = workspace->createDatabase(kHub, u"apps/hub.nsf"_s, {}, true);
  startWith(formNote());
  open([&] {
    window().lstDesignServer->setText(kHub);
    window().cmdExpand2->click.fire();
    window().lstDBNamesDest->setListIndex(0);
    copy();
  });
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(notesIn(*hub).size(), 1);
  EXPECT_EQ(notesIn(*target).size(), 0);
}

TEST_F(DesignCopyTest, CopiesASecondNoteWhileItStaysOpen) {
  startWith(formNote());
  Note second = formNote();
  const NoteId secondId = save(second);
  open([&] {
    chooseTarget();
    copy();
    window().txtDocID->setText(digits(secondId));
    copy();
  });
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(notesIn(*target).size(), 2);
  EXPECT_EQ(host.sounds, QStringList()) << "there is no sound beside the program";
}

TEST_F(DesignCopyTest, ATargetThatCannotBeOpenedIsReported) {
  startWith(formNote());
  for (const bool moving : {false, true}) {
    host.boxes.clear();
    open([&] {
      chooseTarget(u"no row of that name"_s);
      if (!moving) window().lstDBNamesDest->addItem(u"gone.nsf"_s);
      if (!moving) chooseTarget(u"gone.nsf"_s);
      moving ? move() : copy();
      EXPECT_TRUE(window().isVisible());
    });
    ASSERT_EQ(host.boxes.size(), 1);
    EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error"_s)) << host.boxes[0].text.toStdString();
    EXPECT_EQ(host.boxes[0].style, box::Critical);
    EXPECT_TRUE(isThere(id));
    EXPECT_EQ(host.sounds, QStringList());
  }
}

// They are written back as texts, and a text is no list of access any more.
TEST_F(DesignCopyTest, RewritingTakesNamesReadersAndAuthorsForTexts) {
  Note form = formNote();
  form.add(u"Who"_s, itemflag::Summary | itemflag::Names, textValue(u"CN=Ada/O=Acme"_s));
  form.add(u"Sees"_s, itemflag::Summary | itemflag::Readers, textValue(u"CN=Ben/O=Acme"_s));
  form.add(u"Writes"_s, itemflag::Summary | itemflag::Authors, textValue(u"CN=Cora/O=Acme"_s));
  startWith(form);
  setText("txtSearch", u"Ben"_s);
  setText("txtReplace", u"Bob"_s);
  open([&] {
    chooseTarget();
    copy();
  });
  EXPECT_EQ(boxes(), QStringList());
  const QVector<Note> copies = notesIn(*target);
  ASSERT_EQ(copies.size(), 1);
  EXPECT_EQ(textOfItem(copies[0], u"Who"_s), "CN=Ada/O=Acme");
  EXPECT_EQ(textOfItem(copies[0], u"Sees"_s), "CN=Bob/O=Acme");
  for (const QString& name : {u"Who"_s, u"Sees"_s, u"Writes"_s})
    EXPECT_EQ(copies[0].find(name)->flags & (itemflag::Names | itemflag::Readers | itemflag::Authors), 0)
        << name.toStdString();
}

TEST_F(DesignCopyTest, ANumberIsReadByItsLeadingDigitsAndADateByTheRegion) {
  struct Case {
    QByteArray value;
    QString search, replace;
    Value expected;  // none: the copy ends in a report
  };
  const QByteArray day = timeValue(timeDateOf({QDate(2024, 3, 11), QTime()}));
  const Case cases[] = {
      {numberValue(2024), u"20"_s, u"7x"_s, Value::array({7.0})},
      {numberValue(2024), u"2024"_s, u"x"_s, Value::array({0.0})},
      {numberValue(0.5), u"."_s, u","_s, Value::array({0.0})},
      {day, u"03"_s, u"12"_s, Value::array({DateTime{QDate(2024, 12, 11), QTime()}})},
      {day, u"11.03.2024"_s, u"no day"_s, Value()},
  };
  for (const Case& one : cases) {
    Note form = formNote();
    form.items.clear();
    form.add(u"Part"_s, itemflag::Summary, one.value);
    startWith(form);
    host.boxes.clear();
    setText("txtSearch", one.search);
    setText("txtReplace", one.replace);
    open([&] {
      chooseTarget();
      copy();
    });
    const Note last = notesIn(*target).last();
    if (one.expected.isEmpty()) {
      ASSERT_EQ(host.boxes.size(), 1);
      EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '13':"_s))
          << host.boxes[0].text.toStdString();
      EXPECT_EQ(last.find(u"Part")->value, one.value);
    } else {
      EXPECT_EQ(boxes(), QStringList());
      EXPECT_EQ(itemValues(*last.find(u"Part")), one.expected) << one.search.toStdString();
    }
    app.reset();
  }
}

TEST_F(DesignCopyTest, CopiesANoteAsItIs) {
  Note form = formNote();
  form.add(u"$Body"_s, 0, rawValue(itemtype::RichText, QByteArray("\x81\x02", 2)));
  form.add(u"Several"_s, itemflag::Summary, textListValue({u"a"_s, u"b"_s}));
  startWith(form);
  host.programDir = directory.path();
  QFile sound(directory.filePath(u"done.wav"_s));
  ASSERT_TRUE(sound.open(QIODevice::WriteOnly));
  notes().log.clear();
  open([&] {
    chooseTarget();
    copy();
    EXPECT_TRUE(window().isVisible());
  });
  const QVector<Note> copies = notesIn(*target);
  ASSERT_EQ(copies.size(), 1);
  EXPECT_EQ(textOfItem(copies[0], u"$TITLE"_s), "Memo");
  EXPECT_TRUE(copies[0].find(u"$Body"_s) && copies[0].find(u"Several"_s));
  EXPECT_TRUE(isThere(id));
  EXPECT_FALSE(notes().log.contains(u"SAVE"_s));
  EXPECT_EQ(host.sounds.size(), 1);
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_TRUE(state().gDoc.isNothing());
}

TEST_F(DesignCopyTest, RewritesSingleValuesAndKeepsTheirTypes) {
  Note form = formNote();
  form.add(u"Server"_s, itemflag::Summary, textValue(u"Hub 2024 and Hub 2024"_s));
  form.add(u"Count"_s, itemflag::Summary, numberValue(20245));
  form.add(u"Day"_s, itemflag::Summary, timeValue(timeDateOf({QDate(2024, 3, 11), QTime()})));
  form.add(u"Other"_s, itemflag::Summary, numberValue(7.5));
  startWith(form);
  setText("txtSearch", u"2024"_s);
  setText("txtReplace", u"1999"_s);
  notes().log.clear();
  open([&] {
    chooseTarget();
    copy();
  });
  EXPECT_EQ(boxes(), QStringList());
  const QVector<Note> copies = notesIn(*target);
  ASSERT_EQ(copies.size(), 1);
  EXPECT_EQ(textOfItem(copies[0], u"Server"_s), "Hub 1999 and Hub 1999");
  EXPECT_EQ(itemValues(*copies[0].find(u"Count"_s)), Value::array({19995.0}));
  EXPECT_EQ(itemValues(*copies[0].find(u"Day"_s)), Value::array({DateTime{QDate(1999, 3, 11), QTime()}}));
  EXPECT_EQ(itemValues(*copies[0].find(u"Other"_s)), Value::array({7.5}));
  EXPECT_EQ(notes().log.count(u"SAVE"_s), 1);
  EXPECT_EQ(notes().log.count(u"REPLACEITEMVALUE"_s), 5);  // changed or not
}

// What is asked of an object that nobody set ends the click; the copy is there as it was made.
TEST_F(DesignCopyTest, SeveralValuesAndRichTextEndACopyWithASearchText) {
  const QByteArray several = textListValue({u"Hub"_s, u"b"_s}),
                   rich = rawValue(itemtype::RichText, QByteArray("\x81\x02", 2)),
                   formula = rawValue(itemtype::Formula, QByteArray(12, '\0'));
  struct Case {
    QByteArray value;
    int error;
  };
  for (const Case& one : {Case{several, err::ObjectNotSet}, Case{rich, err::MemberNotSupported},
                          Case{formula, err::TypeMismatch}}) {
    Note form = formNote();
    form.items.clear();
    form.add(u"Part"_s, itemflag::Summary, one.value);
    form.add(u"Server"_s, itemflag::Summary, textValue(u"Hub"_s));
    startWith(form);
    setText("txtSearch", u"Hub"_s);
    for (const bool moving : {false, true}) {
      const qsizetype before = notesIn(*target).size();
      host.boxes.clear();
      open([&] {
        chooseTarget();
        moving ? move() : copy();
        EXPECT_TRUE(window().isVisible());
      });
      ASSERT_EQ(host.boxes.size(), 1) << one.error;
      EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error '%1'"_s.arg(one.error)))
          << host.boxes[0].text.toStdString();
      const QVector<Note> copies = notesIn(*target);
      ASSERT_EQ(copies.size(), before + 1);
      EXPECT_EQ(textOfItem(copies.last(), u"Server"_s), "Hub");
      EXPECT_TRUE(isThere(id));
      EXPECT_EQ(host.sounds, QStringList());
    }
    app.reset();
  }
}

// --- moving ---

TEST_F(DesignCopyTest, MovesANoteWithoutAStubAndHides) {
  startWith(formNote());
  open([&] {
    chooseTarget();
    move();
    EXPECT_FALSE(window().isVisible());
  });
  EXPECT_EQ(notesIn(*target).size(), 1);
  EXPECT_FALSE(isThere(id));
  NoteVersion version;
  EXPECT_FALSE(source->versions().findVersion(notesIn(*target)[0].header.unid, version));
  EXPECT_EQ(rows("idList"), QStringList(row(u"Memo"_s, id)));
  EXPECT_FALSE(state().gSession.isNothing());
  EXPECT_TRUE(state().gDoc.isNothing());
  // The row stays, and what it names has gone.
  press("cmdidList");
  EXPECT_TRUE(rows("fldList").isEmpty() || !rows("fldList").join(u'|').contains(u"$TITLE"_s));
}

TEST_F(DesignCopyTest, AMoveWithoutATargetIsReportedAndKeepsItsSource) {
  startWith(formNote());
  open([&] { move(); });
  ASSERT_EQ(host.boxes.size(), 1);
  EXPECT_TRUE(host.boxes[0].text.startsWith(u"Run-time error"_s));
  EXPECT_TRUE(isThere(id));
  EXPECT_EQ(notesIn(*target).size(), 0);
}

TEST_F(DesignCopyTest, EveryFailingCallLeavesTheNoteInAtLeastOnePlace) {
  for (const bool moving : {false, true}) {
    startWith(formNote());
    const QString unused = digits(id);
    const auto run = [&](int n) {
      return reachesFault(notes(), n, [&] {
        open([&] {
          chooseTarget();
          moving ? move() : copy();
        });
      });
    };
    open([&] { chooseTarget(); });
    withEveryFault(run, [&](int) {
      ASSERT_TRUE(isThere(id) || !notesIn(*target).isEmpty());
      ASSERT_TRUE(moving || isThere(id));
    });
    app.reset();
  }
}

// --- the ID ---

TEST_F(DesignCopyTest, FindsTheIdBehindTheMarkOfATypedRow) {
  startWith(formNote());
  open([&] {
    chooseTarget();
    window().txtDocID->setText(u"$Name # "_s + digits(id));
    copy();
  });
  EXPECT_EQ(notesIn(*target).size(), 1);
}

TEST_F(DesignCopyTest, WithoutAnIdOnlyACopySaysSo) {
  startWith(formNote());
  open([&] {
    chooseTarget();
    window().txtDocID->setText(QString());
    copy();
    EXPECT_EQ(boxes(), QStringList(u"not enough privilege to copy/Element is write protected!"_s));
    host.boxes.clear();
    move();
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(boxes(), QStringList());
  });
  EXPECT_EQ(notesIn(*target).size(), 0);
}

TEST_F(DesignCopyTest, ANoteThatHasGoneEndsSilently) {
  startWith(formNote());
  source->notes().remove(id);
  open([&] {
    chooseTarget();
    copy();
    EXPECT_TRUE(window().isVisible());
    move();
    EXPECT_FALSE(window().isVisible());
  });
  EXPECT_EQ(boxes(), QStringList());
  EXPECT_EQ(host.sounds, QStringList());
}

TEST_F(DesignCopyTest, TheOpenDocumentOfTheClientIsClosedFirst) {
  startWith(formNote());
  const NoteId open1 = memo();
  openDocument(open1);
  open([&] {
    chooseTarget();
    copy();
  });
  EXPECT_TRUE(notes().log.contains(u"Close"_s));
  EXPECT_TRUE(NotesUIWorkspace::of(*notesDoor).currentDocument().isNothing());
  EXPECT_TRUE(state().gUIWorkspace.isNothing());
}

// Without its mark the text is a path and no server.
TEST_F(DesignCopyTest, ASourceTextWithoutItsMarkIsAPath) {
  startWith(formNote());
  open([&] {
    chooseTarget();
    window().txtSourceDB->setText(u"mail.nsf"_s);
    copy();
  });
  EXPECT_EQ(notesIn(*target).size(), 1);
}

}  // namespace
}  // namespace lens
