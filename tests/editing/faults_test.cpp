// Every editing command with a failure in every place: the n-th call through a door raises, for every n.
// Each box is compared whole, text, icon and title; and what the store holds afterwards is told.
#include "editing/editing_fixture.h"
#include "support/every_fault.h"

namespace lens {
namespace {

using Boxes = QVector<ShownBox>;

class EditingFaults : public EditingTest {
 protected:
  EditingFaults() {
    show(memo());
    files = directory.filePath(u"files"_s);
    QDir().mkpath(files);
  }

  // A new document with an item of each kind, captured; gives its note ID.
  NoteId capture(Note note) {
    noteId = save(note);
    openDocument(noteId);
    form().cmdGetDoc->raiseClick();
    return noteId;
  }
  static Note everyKind() {
    Note note = memo();
    note.add(u"Due"_s, itemflag::Summary, timeValue(timeDateOfDate(QDate(2024, 3, 11))));
    note.add(u"Count"_s, itemflag::Summary, numberListValue({1, 2}));
    note.add(u"Text"_s, 0, rich(u"a pump"_s));
    return note;
  }

  // Presses the button with the n-th call failing, for n = 1, 2, ... until one run has no n-th call; the
  // boxes of each run must be the expected ones. Gives the number of runs that failed.
  template <class Prepare, class Expected>
  int runWithEveryFault(const char* button, Prepare prepare, Expected expected) {
    const auto pressFailing = [&](int n) {
      while (app->routines.mouseBusyCount() > 0) app->routines.SetMousePtr(pointer::Default);
      prepare();
      host.boxes.clear();
      notes().log.clear();
      host.pointers.clear();
      return reachesFault(notes(), n, [&] { press(button); });
    };
    return withEveryFault(pressFailing, [&](int n) {
      EXPECT_EQ(host.boxes, expected(n)) << button << ": " << notes().log[n - 1].toStdString() << " of "
                                         << notes().log.mid(0, n).join(u' ').toStdString();
      EXPECT_EQ(engineCapi->openHandles(), 0);
    });
  }
  // What lies before the n-th call, and the call itself.
  int callsBefore(int n, const QString& name) {
    int count = 0;
    for (const QString& called : notes().log.mid(0, n - 1))
      count += called.compare(name, Qt::CaseInsensitive) == 0;
    return count;
  }
  bool isCall(int n, const QString& name) {
    return notes().log[n - 1].compare(name, Qt::CaseInsensitive) == 0;
  }
  // The size of an item is read with a box of its own, which ends nothing.
  bool readsSize(int n) {
    for (const QString& name : {u"PARENTDATABASE"_s, u"server"_s, u"FILEPATH"_s, u"NoteID"_s})
      if (isCall(n, name)) return true;
    return false;
  }
  // The capture behind a command, without a database for it to look at.
  bool findsNoDatabase(int n) {
    return isCall(n, u"Notes.NotesSession"_s) || isCall(n, u"CURRENTDATABASE"_s);
  }
  // What the capture behind a command, and the size that is read before it, show.
  Boxes boxesBehindSave(int n) {
    if (findsNoDatabase(n)) return {{u"Cann't open DB try again"_s, box::Plain, {}}};
    return readsSize(n) && callsBefore(n, u"CURRENTDATABASE"_s) == 0 ? sizeBox() : Boxes();
  }
  Boxes sizeBox() const { return {{RuntimeError(notesDoor->failNumber).description(), box::Plain, {}}}; }
  static Boxes reloadBox(const QString& title, int number = 70) {
    return {{standardErrorText(number) + u" (please Reload the document again)", box::Information, title}};
  }
  static Boxes errorBox(const QString& procedure, const QString& place = QStringLiteral("Formular Form1")) {
    return {{u"Error 70 ("_s + standardErrorText(70) + u") in procedure " + procedure + u" of " + place,
             box::Plain,
             {}}};
  }
  static Boxes report() {
    return {{u"Run-time error '70':\n\n"_s + standardErrorText(70), box::Critical, {}}};
  }

  // --- one document ---
  void prepareAdding(int type, const QString& content) {
    capture(memo());
    setText("txtFieldName", u"New"_s);
    setText("cmbFieldType", typeSentence(type));
    setText("txtFieldContent", content);
  }
  int addWithEveryFault(int type, const QString& content) {
    return runWithEveryFault(
        "cmdAddField", [&] { prepareAdding(type, content); },
        [&](int n) -> Boxes {
          const bool saved = callsBefore(n, u"SAVE"_s) > 0;
          EXPECT_EQ(stored().has(u"New"), saved || readsSize(n)) << n;
          if (saved) return boxesBehindSave(n);
          return readsSize(n) ? sizeBox() : reloadBox(u"Error in AddField"_s);
        });
  }
  void prepareOverwriting(const QString& name, const QString& content) {
    capture(everyKind());
    selectRow("fldList", name + u":");
    setText("txtFieldContent", content);
    setText("txtSearch", u"pump"_s);
    setText("txtReplace", u"valve"_s);
  }
  int overwriteWithEveryFault(const QString& name, const QString& content) {
    QByteArray before;
    return runWithEveryFault(
        "cmdOverwrite",
        [&] {
          prepareOverwriting(name, content);
          before = stored().find(name)->value;
        },
        [&](int n) -> Boxes {
          const bool saved = callsBefore(n, u"SAVE"_s) > 0;
          EXPECT_EQ(stored().find(name)->value != before, saved) << n;
          if (!saved) return reloadBox(u"Error in Overwrite"_s);
          return boxesBehindSave(n);
        });
  }

  // --- a collection of two documents ---
  void prepareCollection(const QString& name, const QString& type, const QString& content) {
    capture(memo());
    ids.clear();
    ListBox& list = control<ListBox>("idList");
    list.clear();
    for (int i = 0; i < 2; ++i) {
      Note note = everyKind();
      ids += save(note);
      list.addItem(idRow(ids.last()));
    }
    setText("txtFieldName", name);
    setText("cmbFieldType", type);
    setText("txtFieldContent", content);
    setText("txtSearch", u"pump"_s);
    setText("txtReplace", u"valve"_s);
  }
  // The view of the first row follows the run.
  bool isInRun(int n) { return callsBefore(n + 1, u"GETDOCUMENTBYID"_s) <= 2; }
  int batchWithEveryFault(const char* button, const QString& name, const QString& type,
                          const QString& content) {
    return runWithEveryFault(
        button, [&] { prepareCollection(name, type, content); },
        [&](int n) -> Boxes {
          expectWholeDocuments(n);
          // The hourglass goes with the run; that of the view stays where the view fails.
          EXPECT_EQ(host.pointers.mid(0, 2), QVector<int>({pointer::Hourglass, pointer::Default})) << n;
          return isInRun(n) ? errorBox(u"procCollection"_s, u"Modul Globals"_s)
                            : errorBox(u"cmdidList_Click"_s);
        });
  }
  // One save for each document that is done, and none behind the failure.
  void expectWholeDocuments(int n) {
    if (!isInRun(n)) return;
    int sequences = 0;
    for (const NoteId id : ids) sequences += int(stored(id).header.sequence) - 1;
    EXPECT_EQ(sequences, callsBefore(n, u"SAVE"_s)) << n;
  }

  QVector<NoteId> ids;
  QString files;
};

TEST_F(EditingFaults, AddingATextShowsOneBoxUntilItIsSaved) {
  EXPECT_GT(addWithEveryFault(1280, u"one\r\ntwo"_s), 20);
}

TEST_F(EditingFaults, AddingANumberShowsOneBoxUntilItIsSaved) {
  EXPECT_GT(addWithEveryFault(768, u"12"_s), 20);
}

TEST_F(EditingFaults, AddingRichTextShowsOneBoxUntilItIsSaved) {
  EXPECT_GT(addWithEveryFault(1, QString()), 20);
}

TEST_F(EditingFaults, AddingReadersShowsOneBoxUntilTheyAreSaved) {
  EXPECT_GT(addWithEveryFault(1075, u"CN=A"_s), 20);
}

TEST_F(EditingFaults, AddingADateIsSilentFromItsFirstLineOn) {
  const int runs = runWithEveryFault(
      "cmdAddField", [&] { prepareAdding(1024, u"11.03.2024"_s); },
      [&](int n) -> Boxes {
        if (n == 1) return reloadBox(u"Error in AddField"_s);
        return boxesBehindSave(n);
      });
  EXPECT_GT(runs, 20);
}

TEST_F(EditingFaults, OverwritingATextShowsOneBoxUntilItIsSaved) {
  EXPECT_GT(overwriteWithEveryFault(u"Subject"_s, u"new"_s), 20);
}

TEST_F(EditingFaults, OverwritingNumbersShowsOneBoxUntilTheyAreSaved) {
  EXPECT_GT(overwriteWithEveryFault(u"Count"_s, u"5\r\n6"_s), 20);
}

TEST_F(EditingFaults, OverwritingRichTextShowsOneBoxUntilItIsSaved) {
  EXPECT_GT(overwriteWithEveryFault(u"Text"_s, QString()), 20);
}

TEST_F(EditingFaults, OverwritingADateIsSilentFromItsFirstLineOn) {
  const int runs = runWithEveryFault(
      "cmdOverwrite", [&] { prepareOverwriting(u"Due"_s, u"12.03.2024"_s); },
      [&](int n) -> Boxes {
        if (n <= 2) return reloadBox(u"Error in Overwrite"_s);
        return boxesBehindSave(n);
      });
  EXPECT_GT(runs, 20);
}

TEST_F(EditingFaults, OverwritingPassesOverNumber4000) {
  notes().failNumber = 4000;
  const int runs = runWithEveryFault(
      "cmdOverwrite", [&] { prepareOverwriting(u"Subject"_s, u"new"_s); },
      [&](int n) -> Boxes {
        // Without the item its type cannot be read; without its type no path is known.
        if (n == 1) return reloadBox(u"Error in Overwrite"_s, err::ObjectNotSet);
        if (n == 2) return {{u"Not implemented for the field type !!"_s, box::Exclamation, u"Doc Viewer"_s}};
        return boxesBehindSave(n);
      });
  EXPECT_GT(runs, 20);
}

TEST_F(EditingFaults, DeletingShowsOneBoxAndKeepsTheRow) {
  const int runs = runWithEveryFault(
      "cmdDelField", [&] { prepareOverwriting(u"Subject"_s, QString()); },
      [&](int n) -> Boxes {
        EXPECT_TRUE(stored().has(u"Subject")) << n;
        EXPECT_TRUE(rows("fldList").join(u'|').contains(u"Subject:"_s)) << n;
        return reloadBox(u"Error in DeleteFiels"_s);
      });
  EXPECT_EQ(runs, 2);
}

TEST_F(EditingFaults, SearchingShowsTheErrorBoxAndStaysWhereItWas) {
  const int runs = runWithEveryFault(
      "cmdSearch",
      [&] {
        capture(everyKind());
        setText("txtSearch", u"valve"_s);
      },
      [&](int) -> Boxes {
        EXPECT_EQ(control<ListBox>("fldList").listIndex(), -1);
        return errorBox(u"cmdSearch_Click"_s);
      });
  EXPECT_GT(runs, 4);
}

TEST_F(EditingFaults, ReplacingEverywhereShowsOneBoxUntilItIsSaved) {
  const int runs = runWithEveryFault(
      "cmdSearchReplaceAll",
      [&] {
        Note note = everyKind();
        note.add(u"Pump"_s, itemflag::Summary, textListValue({u"pump"_s, u"x"_s}));
        capture(note);
        setText("txtSearch", u"pump"_s);
        setText("txtReplace", u"valve"_s);
      },
      [&](int n) -> Boxes {
        const bool saved = callsBefore(n, u"SAVE"_s) > 0;
        EXPECT_EQ(values(u"Pump"_s).first(), saved ? u"valve"_s : u"pump"_s) << n;
        return saved ? Boxes() : reloadBox(u"Error in SeachReplaceAll"_s);
      });
  EXPECT_GT(runs, 40);
}

TEST_F(EditingFaults, DeletingInACollectionEndsInTheBatchBox) {
  EXPECT_GT(batchWithEveryFault("cmdDelFieldInCol", u"Subject"_s, {}, {}), 10);
}

TEST_F(EditingFaults, AddingInACollectionEndsInTheBatchBox) {
  for (const int type : {1, 768, 1075, 1280})
    EXPECT_GT(batchWithEveryFault("cmdAddFieldInColl", u"Subject"_s, typeSentence(type), u"12"_s), 10)
        << type;
}

TEST_F(EditingFaults, OverwritingInACollectionEndsInTheBatchBox) {
  for (const QString& name : {u"Subject"_s, u"Count"_s, u"Text"_s})
    EXPECT_GT(batchWithEveryFault("cmdWriteDocsInColl", name, {}, u"12"_s), 10) << name.toStdString();
}

TEST_F(EditingFaults, ReplacingInACollectionEndsInTheBatchBox) {
  EXPECT_GT(batchWithEveryFault("cmdReplAllFieldsInColl", {}, {}, {}), 10);
}

TEST_F(EditingFaults, DatesInACollectionAreSilentFromTheFirstLineOn) {
  const int runs = runWithEveryFault(
      "cmdWriteDocsInColl", [&] { prepareCollection(u"Due"_s, {}, u"12.03.2024"_s); },
      [&](int n) -> Boxes {
        if (!isInRun(n)) return errorBox(u"cmdidList_Click"_s);
        return n <= 3 ? errorBox(u"procCollection"_s, u"Modul Globals"_s) : Boxes();
      });
  EXPECT_GT(runs, 10);
}

TEST_F(EditingFaults, ExtractingEndsInTheGeneralReport) {
  const int runs = runWithEveryFault(
      "cmdExtractAtt",
      [&] {
        capture(withAttachment(u"report.pdf"_s, "bytes"));
        control<DirList>("Dir1").setPath(files);
      },
      [&](int) -> Boxes {
        EXPECT_EQ(QDir(files).entryList(QDir::Files), QStringList());
        return report();
      });
  EXPECT_GT(runs, 6);
}

TEST_F(EditingFaults, LoadingAFileShowsTheErrorBoxUntilItIsSaved) {
  QFile file(files + u"/plan.txt"_s);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  const ShownBox question{u"Load attachment: plan.txt into field Text"_s, box::YesNo, u"Load attachment"_s};
  const int runs = runWithEveryFault(
      "cmdLoadAtt",
      [&] {
        capture(everyKind());
        control<DirList>("Dir1").setPath(directory.path());
        control<DirList>("Dir1").setPath(files);
        setText("txtFieldName", u"Text"_s);
        setText("cmbFieldType", u"RICHTEXT (1) means rich text"_s);
      },
      [&](int n) -> Boxes {
        const bool saved = callsBefore(n, u"SAVE"_s) > 0;
        EXPECT_EQ(stored().has(u"$FILE"), saved) << n;
        return saved ? Boxes({question}) : Boxes({question}) + errorBox(u"cmdLoadAtt_Click"_s);
      });
  EXPECT_GT(runs, 10);
}

// Sizes are the only thing that the editing commands read past the object model.
TEST_F(EditingFaults, AFailureOfTheLibraryIsToldAndEndsNothing) {
  const auto overwriteFailing = [&](int n) {
    prepareOverwriting(u"Subject"_s, u"new %1"_s.arg(n));
    host.boxes.clear();
    const bool reached = reachesFault(capi(), n, [&] { press("cmdOverwrite"); });
    EXPECT_EQ(values(u"Subject"_s), QStringList(u"new %1"_s.arg(n)));
    EXPECT_EQ(engineCapi->openHandles(), 0);
    return reached;
  };
  const int failed = withEveryFault(overwriteFailing, [&](int) {
    const QString told = standardErrorText(453);
    for (const ShownBox& shown : host.boxes)
      EXPECT_TRUE(shown == (ShownBox{told, box::Plain, {}}) ||
                  shown == reloadBox(u"Error in Overwrite"_s, 453).first())
          << shown.text.toStdString();
  });
  EXPECT_GE(failed, 6);
}

}  // namespace
}  // namespace lens
