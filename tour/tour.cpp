// Makes the pictures of the documentation: the real windows on the sample databases, each after what a user
// would have done.
//
//   lens_tour DIRECTORY
#include <QApplication>
#include <QDialog>
#include <QDir>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <cstdio>
#include <functional>

#include "app/application.h"
#include "app/sample_workspace.h"
#include "client/client_window.h"
#include "controls/look.h"
#include "embedded/capi/embedded_capi.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/formula/compiled/compiled_writer.h"
#include "embedded/formula/evaluation_context.h"
#include "embedded/model/embedded_gateway.h"
#include "embedded/nsf/made_samples.h"
#include "embedded/nsf/maker/made_bytes.h"
#include "host/desktop_host.h"
#include "notes/literals.h"

namespace lens {
namespace {

const QString kMail = u"mail/kmeier.nsf"_s, kDiscussion = u"disc/ideas.nsf"_s;

// Nobody is there to close a box; what a box says ends the tour, since no step of it should bring one.
class TourHost : public DesktopHost {
 public:
  int messageBox(const QString& text, int, const QString&) override {
    std::fprintf(stderr, "A box came up: %s\n", qPrintable(text));
    std::exit(1);
  }
};

class Tour {
 public:
  explicit Tour(QString directory) : directory_(std::move(directory)) {
    workspace_ = Workspace::open(files_.filePath(u"workspace"_s), host_.regional());
    fillFirstTime(*workspace_);
    const std::shared_ptr<Database> mail = openSampleMail(*workspace_);
    QDir(files_.path()).mkdir(u"letters"_s);
    QDir::setCurrent(files_.filePath(u"letters"_s));  // what the file list shows
    notes_ = std::make_unique<EmbeddedGateway>(workspace_);
    capi_ = std::make_unique<EmbeddedCApi>(workspace_);
    application_ = std::make_unique<Application>(*notes_, *capi_, host_, u"Embedded: samples"_s);
    application_->start();
  }

  void run() {
    form().cmdExtractAtt->raiseClick();
    picture(u"form1"_s, form());
    form().resize(1280, 800);
    changeASubject();
    addToACollection();
    showAnAgent();
    explainTheFlags();
    lookUpAFunction();
    showTheSmallWindows();
    showTheBulkTool(u"bulk"_s);
    showTheClientWindow(u"client"_s);
    showARealDatabase();
    showItDark();
  }

 private:
  Form1& form() { return application_->form; }

  void picture(const QString& name, QWidget& window) {
    QTest::qWait(100);
    const QString file = QDir(directory_).filePath(name + u".png"_s);
    if (!window.grab().save(file)) {
      std::fprintf(stderr, "%s cannot be written\n", qPrintable(file));
      std::exit(1);
    }
    std::printf("%s\n", qPrintable(file));
  }
  // The first row that begins so; its absence ends the tour.
  void choose(ListBox& list, const QString& beginning) {
    const int row = list.find(beginning);
    if (row < 0) {
      std::fprintf(stderr, "%s has no row \"%s\"\n", qPrintable(list.objectName()), qPrintable(beginning));
      std::exit(1);
    }
    list.setSelected(row, true);
  }
  void capture() { form().cmdGetDoc->raiseClick(); }

  void changeASubject() {
    capture();
    choose(*form().fldList, u"Subject"_s);
    form().txtFieldContent->setText(u"Pump station Nordhang: delivery dates confirmed"_s);
    form().cmdOverwrite->raiseClick();
    choose(*form().fldList, u"Subject"_s);
    picture(u"edited"_s, form());
  }

  void addToACollection() {
    const auto ideas = workspace_->database({}, kDiscussion);
    QVector<NoteId> some;
    for (const NoteSummary& summary : ideas->notes().list(noteclass::Document).first(3)) some += summary.id;
    workspace_->client().showDatabase({{}, kDiscussion});
    workspace_->client().select(some);
    capture();
    form().txtFieldName->setText(u"Reviewed"_s);
    form().cmbFieldType->setText(u"TEXT (1280) means text or text list"_s);
    form().txtFieldContent->setText(u"yes"_s);
    form().cmdAddFieldInColl->raiseClick();
    form().idList->setListIndex(0);
    form().cmdidList->raiseClick();
    choose(*form().fldList, u"Reviewed"_s);
    picture(u"collection"_s, form());
  }

  void showAnAgent() {
    choose(*form().lstDesigns, u"SELECTAGENTS"_s);
    form().lstDesigns->raiseDblClick();
    choose(*form().idList, u"Every half hour"_s);
    form().cmdidList->raiseClick();
    choose(*form().fldList, u"$AssistInfo"_s);
    picture(u"agent"_s, form());
  }

  void explainTheFlags() {
    form().lastModified->dblClick.raise();
    picture(u"flags"_s, form());
  }

  void lookUpAFunction() {
    form().cmdFuncList->raiseClick();
    choose(*form().idList, u"@Begins"_s);
    form().idList->raiseDblClick();
    choose(*form().fldList, u"Body"_s);
    picture(u"help"_s, form());
  }

  void showTheSmallWindows() {
    application_->designCopy().Form_Load();
    showOne(u"design-copy"_s, application_->designCopy().window);
    application_->databasePicker().Form_Load();
    showOne(u"picker"_s, application_->databasePicker().window);
    form().cmdDump->raiseClick();
    showOne(u"dump"_s, *form().findChild<DumpToFile*>());
    form().Label6->raiseClick();
    showOne(u"about"_s, *form().findChild<About*>());
  }

  void showOne(const QString& name, QWidget& window) {
    window.show();
    picture(name, window);
    window.close();
  }

  // As on a dark desktop.
  void showItDark() {
    applyLook(Scheme::Dark);
    workspace_->client().showDatabase({{}, kMail});
    const QVector<NoteSummary> mails = workspace_->database({}, kMail)->notes().list(noteclass::Document);
    workspace_->client().showDocument(mails.first().id);
    capture();
    form().txtSearch->setText(u"delivery"_s);
    choose(*form().fldList, u"Body"_s);
    picture(u"form1-dark"_s, form());
    showTheBulkTool(u"bulk-dark"_s);
    showTheClientWindow(u"client-dark"_s);
  }

  void showTheBulkTool(const QString& name) {
    form().cmdCMRcoll->raiseClick();
    FrmReplic& window = application_->bulk().window;
    for (ComboBox* server : {window.lstServer, window.lstDesignServer}) server->setText(u"Local"_s);
    window.cmdExpand->raiseClick();
    window.cmdExpand2->raiseClick();
    choose(*window.lstDBNames, kMail);
    window.lstDBNames->raiseDblClick();
    window.txtFind->setText(u"delivery"_s);
    window.chkFields->setValue(1);
    window.lstViewNames->setListIndex(0);
    choose(*window.lstDBNamesDest, u"disc"_s);
    picture(name, window);
    window.close();
  }

  void showTheClientWindow(const QString& name) {
    ClientWindow client(workspace_);
    client.resize(1100, 700);
    client.show();
    QTest::qWait(500);
    picture(name, client);
  }

  // A file of the platform's own format, of which a letter was lost.
  void showARealDatabase() {
    const QString file = files_.filePath(u"archive.nsf"_s);
    made::MadeDatabase archive = letters();
    archive.change = [lost = archive.notes[3].id](made::MadePart part, quint32 note, QByteArray& bytes) {
      if (part == made::MadePart::Record && note == lost) made::put32(bytes, 6, 0);
    };
    if (!made::makeFile(archive).write(file)) std::exit(1);
    ClientWindow client(workspace_);
    client.resize(1100, 700);
    client.show();
    client.openDatabase({QString(), file});
    client.findChild<QListWidget*>(u"viewList"_s)->setCurrentRow(2);
    picture(u"real"_s, client);
    client.findChild<QAction*>(u"readingReportAction"_s)->trigger();
    picture(u"reading-report"_s, *client.findChild<QDialog*>(u"ImportReport"_s));
  }

  static made::MadeDatabase letters() {
    using namespace made;
    constexpr quint16 kText = 0x0500, kFormula = 0x0600, kViewFormat = 0x0005;
    MadeDatabase archive;
    archive.information = "Pump station archive";
    archive.replicaId = someTime(9000);
    const std::pair<const char*, const char*> kLetters[] = {
        {"Ada Byron/Acme", "Delivery of the second pump"}, {"Carl Dorn/Acme", "Drawings of the inlet"},
        {"Eva Falk/Acme", "Re: Drawings of the inlet"},    {"Ada Byron/Acme", "Contract, last draft"},
        {"Gil Hart/Acme", "Pressure test on Monday"},      {"Eva Falk/Acme", "Minutes of the meeting"}};
    quint32 number = 0;
    for (const auto& [from, subject] : kLetters) {
      MadeNote letter = document(++number, subject);
      letter.items.push_back({"Form", kText, flag::Summary, "Memo"});
      letter.items.push_back({"From", kText, flag::Summary, from});
      archive.add(letter);
    }
    const formula::MachineEnvironment environment;
    ViewColumn who, what;
    who.item = u"From"_s;
    who.title = u"Who"_s;
    what.item = u"Subject"_s;
    what.title = u"What"_s;
    who.width = what.width = 30 * 8;
    MadeNote view = document(++number);
    view.noteClass = noteclass::View;
    view.items = {{"$TITLE", kText, flag::Summary, "Letters"},
                  {"$FORMULA", kFormula, flag::Summary,
                   formula::writeCompiledSelection(u"SELECT Form = \"Memo\"", {}, environment).bytes},
                  {"$VIEWFORMAT", kViewFormat, flag::Summary, viewFormatValue({who, what}, false).sliced(2)}};
    archive.add(view);
    return archive;
  }

  const QString directory_;
  QTemporaryDir files_{QDir::temp().filePath(u"samples-XXXXXX"_s)};
  TourHost host_;
  std::shared_ptr<Workspace> workspace_;
  std::unique_ptr<EmbeddedGateway> notes_;
  std::unique_ptr<EmbeddedCApi> capi_;
  std::unique_ptr<Application> application_;
};

}  // namespace
}  // namespace lens

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "lens_tour DIRECTORY\n");
    return 2;
  }
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  lens::applyLook();
  QDir().mkpath(QString::fromLocal8Bit(argv[1]));
  lens::Tour tour(QDir(QString::fromLocal8Bit(argv[1])).absolutePath());
  tour.run();
  std::fflush(nullptr);
  std::_Exit(0);  // as the program itself ends
}
