// Every command of the inspector with a failure in every place: the n-th call through a door raises,
// for every n. Each run ends as its error mode tells, leaves the window usable and every handle closed.

#include "embedded/mime/mime_entity.h"
#include "embedded/richtext/rich_text.h"
#include "support/every_fault.h"
#include "support/lens_fixture.h"

namespace lens {
namespace {

struct Command {
  const char* name;
  void (*prepare)(Form1&);
  void (*run)(Form1&);
  // Texts of boxes that the command may show beside those of the routines it calls.
  QStringList ownBoxes;
};

class FaultsTest : public LensFixture {
 protected:
  FaultsTest() {
    openDatabase(u"mail/kmeier.nsf"_s);
    RichText body;
    body.appendText(u"Dear Mr Okafor"_s);
    memo_ = document(u"Memo"_s);
    memo_.add(u"Numbers"_s, itemflag::Summary, numberListValue({1, 2}));
    memo_.add(u"Body"_s, 0, rawValue(itemtype::RichText, body.toBytes()));
    memo_.add(u"$AssistAction"_s, 0, rawValue(itemtype::Action, QByteArray::fromHex("810285ff0300014142")));
    attach(memo_, u"contract.pdf"_s, QByteArray(30, 'x'));
    for (const QByteArray& value :
         mimePartValues("Content-Type: multipart/mixed; "
                        "boundary=\"b\"\r\n\r\n--b\r\n\r\none\r\n--b\r\n\r\ntwo\r\n--b--"))
      memo_.add(u"Message"_s, 0, value);
    openDocument(save(memo_));
    start();
  }

  // Runs the command with the n-th call of a door failing, for n = 1, 2, ... until a run has none.
  // Gives the number of runs that met the failure.
  int runWithEveryFault(const Command& command, bool objectModel) {
    const auto runFailing = [&](int n) {
      resetState();
      command.prepare(form());
      host.boxes.clear();
      notes().log.clear();
      const auto run = [&] {
        EXPECT_NO_THROW(command.run(form())) << command.name << ", failure in call " << n;
      };
      const bool reached = objectModel ? reachesFault(notes(), n, run) : reachesFault(capi(), n, run);
      expectOrder(command, n);
      return reached;
    };
    return withEveryFault(runFailing, [](int) {});
  }

  void resetState() {
    openDocument(memo_.header.id);
    state().gAttachmentSizes.clear();
    while (app->routines.mouseBusyCount() > 0) app->routines.SetMousePtr(pointer::Default);
    form().NotesID->setText(QString());
    form().cmdGetDoc->raiseClick();
  }

  void expectOrder(const Command& command, int n) {
    EXPECT_EQ(engineCapi->openHandles(), 0) << command.name << " leaves a handle, failure in call " << n;
    EXPECT_TRUE(form().isVisible());
    for (const ShownBox& box : host.boxes) {
      const bool own = command.ownBoxes.contains(box.text);
      // The low-level reader shows the plain description of the failure.
      const bool plain = box.text == standardErrorText(70) || box.text == standardErrorText(453) ||
                         box.text == standardErrorText(91) || box.text == standardErrorText(5);
      bool trappedBox = false;
      for (const QString& allowed : command.ownBoxes) trappedBox = trappedBox || box.text.endsWith(allowed);
      EXPECT_TRUE(own || plain || trappedBox)
          << command.name << ", failure in call " << n << ": " << box.text.toStdString();
    }
  }

  Note memo_;
};

void nothing(Form1&) {}

TEST_F(FaultsTest, GetDocContentPassesOverEveryFailure) {
  const Command command{"cmdGetDoc",
                        nothing,
                        [](Form1& form) { form.cmdGetDoc->raiseClick(); },
                        {u"Cann't open DB try again"_s}};
  EXPECT_GT(runWithEveryFault(command, true), 40);
  EXPECT_GT(runWithEveryFault(command, false), 6);
}

TEST_F(FaultsTest, FieldTypePassesOverEveryFailure) {
  const Command command{"cmdFldtype",
                        [](Form1& form) { form.cmbFieldType->setText(form.cmbFieldType->list(26)); },
                        [](Form1& form) { form.cmdFldtype->raiseClick(); },
                        {u"Cann't open DB try again"_s, u"Cann't open document try again"_s}};
  EXPECT_GT(runWithEveryFault(command, true), 15);
}

TEST_F(FaultsTest, ViewByNoteIdEndsInItsOwnBoxes) {
  const Command command{"viewNotesID",
                        [](Form1& form) {
                          const QString row = form.idList->list(0);
                          form.NotesID->setText(QString::number(row.toUInt(nullptr, 16)));
                        },
                        [](Form1& form) { form.viewNotesID->raiseClick(); },
                        {u"Invalid note ID"_s, u") in procedure viewNotesID_Click of Formular Form1"_s,
                         u") in procedure cmdidList_Click of Formular Form1"_s}};
  EXPECT_GT(runWithEveryFault(command, true), 25);
  EXPECT_GT(runWithEveryFault(command, false), 6);
}

TEST_F(FaultsTest, ViewByUniversalIdEndsInItsOwnBoxes) {
  const Command command{"viewNotesID by UNID",
                        nothing,
                        [](Form1& form) { form.viewNotesID->raiseClick(); },
                        {u"Invalid universal ID"_s, u") in procedure viewNotesID_Click of Formular Form1"_s,
                         u") in procedure cmdidList_Click of Formular Form1"_s}};
  EXPECT_GT(runWithEveryFault(command, true), 25);
  EXPECT_GT(runWithEveryFault(command, false), 6);
}

TEST_F(FaultsTest, ViewSelectedEndsInTheErrorBox) {
  const Command command{"cmdidList",
                        [](Form1& form) { form.idList->setSelected(0, true); },
                        [](Form1& form) { form.cmdidList->raiseClick(); },
                        {u") in procedure cmdidList_Click of Formular Form1"_s}};
  EXPECT_GT(runWithEveryFault(command, true), 25);
  EXPECT_GT(runWithEveryFault(command, false), 6);
}

TEST_F(FaultsTest, AClickOnEachItemPassesOverEveryFailure) {
  for (const char16_t* row : {u"Numbers:", u"Body:", u"$AssistAction:", u"$FILE:", u"Message:"}) {
    static QString wanted;
    wanted = QString::fromUtf16(row);
    const Command command{"fldList",
                          nothing,
                          [](Form1& form) { form.fldList->setSelected(form.fldList->find(wanted, 0), true); },
                          {}};
    EXPECT_GT(runWithEveryFault(command, true), 8) << wanted.toStdString();
    EXPECT_GT(runWithEveryFault(command, false), 6) << wanted.toStdString();
  }
}

TEST_F(FaultsTest, AfterAFailureTheNextClickShowsTheDocumentAgain) {
  const QStringList whole = rows("fldList");
  for (int n = 1; n < 40; ++n) {
    reachesFault(notes(), n, [&] { click("cmdGetDoc"); });
    click("cmdGetDoc");
    EXPECT_EQ(rows("fldList"), whole) << n;
    EXPECT_EQ(text("txtFieldContent"), "Dear Mr Okafor") << n;
  }
}

}  // namespace
}  // namespace lens
