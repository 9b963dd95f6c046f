// A workspace in a temporary directory with a mail file, the client window on it, and the object model
// as a program sees it.
#pragma once

#include <gtest/gtest.h>

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <functional>

#include "client/client_window.h"
#include "client/database_tree.h"
#include "client/document_model.h"
#include "client/document_reader.h"
#include "client/work_bar.h"
#include "embedded/model/embedded_gateway.h"
#include "support/printers.h"

namespace lens {

using namespace Qt::StringLiterals;

// Answers that a test has prepared; asked counts the questions for files and new names.
struct ScriptedChoice : FileChoice {
  QStringList files;
  QString directory, name, target, database, report, otherName;
  bool sure = true;
  bool intoNew = false;  // where there is a choice
  int asked = 0;
  QString lastQuestion;
  ImportOffer lastOffer;
  std::function<void()> whileAsked;  // what happens while a question stands, to the window too
  ImportTarget importTarget(QWidget*, const ImportOffer& offer) override {
    lastOffer = offer;
    const bool open = offer.open && offer.whyNotOpen.isEmpty() && !intoNew;
    return answer(ImportTarget{open ? ImportTarget::Kind::Open : ImportTarget::Kind::New,
                               name.isEmpty() ? offer.newPath : name});
  }
  bool confirm(QWidget*, const QString& question, const QString&) override {
    lastQuestion = question;
    return answer(sure);
  }
  QString otherDatabaseName(QWidget*, const QString&, const QString&) override { return answer(otherName); }
  QStringList dxlFiles(QWidget*) override { return ++asked, files; }
  QString databaseFile(QWidget*) override { return ++asked, database; }
  QString folder(QWidget*) override { return ++asked, directory; }
  QString exportFile(QWidget*, const QString& suggestion) override {
    return ++asked, target.isEmpty() ? QString() : target + u'/' + suggestion;
  }
  QString reportFile(QWidget*, const QString&) override { return ++asked, report; }
  QString databaseName(QWidget*, const QString&) override { return ++asked, name; }

 private:
  template <class Answer>
  Answer answer(Answer given) {
    if (const auto happen = whileAsked) happen();
    return given;
  }
};

// Acts when the bar of some work comes up, before the work begins: whoever waited for events might be too
// late.
class WhenWorkBegins : public QObject {
 public:
  WhenWorkBegins(ClientWindow& window, std::function<void()> act) : act_(std::move(act)) {
    window.findChild<WorkBar*>()->installEventFilter(this);
  }

 private:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::Show) act_();
    return false;
  }
  const std::function<void()> act_;
};

class Client : public testing::Test {
 protected:
  Client() {
    workspace = Workspace::open(directory.path() + u"/workspace"_s, Regional(QLocale(QLocale::German)));
    workspace->addServer(u"CN=Hub/O=Acme"_s);
    DatabaseInfo info;
    info.title = u"Karin's mail"_s;
    mail = workspace->createDatabase({}, u"mail.nsf"_s, info);
    gateway = std::make_unique<EmbeddedGateway>(workspace);
  }
  ~Client() override { window.reset(); }

  static Note memo(const QString& subject) {
    Note note;
    note.add(u"Form"_s, itemflag::Summary, textValue(u"Memo"));
    note.add(u"Subject"_s, itemflag::Summary, textValue(subject));
    return note;
  }
  NoteId save(Note note) const {
    mail->notes().save(note);
    return note.header.id;
  }
  void start() {
    window = std::make_unique<ClientWindow>(workspace);
    auto scripted = std::make_unique<ScriptedChoice>();
    choice = scripted.get();
    window->setFileChoice(std::move(scripted));
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
  }
  // Enough for work on them to take a while.
  void saveMany(int memos) const {
    Database::Transaction all(*mail);
    for (int i = 1; i <= memos; ++i) save(memo(u"Letter %1 "_s.arg(i) + QString(200, u'x')));
    all.commit();
  }
  // As another program would, whoever has the database open.
  static void putAnotherInPlaceOf(const QString& path) {
    for (const char* suffix : {"", "-wal", "-shm"}) QFile::remove(path + QLatin1String(suffix));
    DatabaseInfo info;
    info.title = u"Another"_s;
    Database::create(path, info);
  }
  void openMail() { ASSERT_TRUE(window->openDatabase({QString(), u"mail.nsf"_s})); }

  template <class Widget>
  Widget& part(const char* name) {
    auto* found = window->findChild<Widget*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(name);
    return *found;
  }
  QTableView& table() { return part<QTableView>("documentTable"); }
  QString cell(int row, int column) { return table().model()->index(row, column).data().toString(); }
  QString page() { return part<QStackedWidget>("pages").currentWidget()->objectName(); }
  // What the strip for failures says, "" while it is hidden or tells a result.
  QString error() {
    const bool told = part<QWidget>("errorStrip").isVisible() && !isResult();
    return told ? part<QLabel>("errorText").text() : QString();
  }
  bool isResult() { return part<QLabel>("errorText").foregroundRole() == QPalette::ButtonText; }
  // Neither painting nor selecting all of so many documents reads more notes than are in sight.
  void expectOnlyRowsInSightAreRead(int rows, int documents) {
    window->grab();
    auto* model = qobject_cast<DocumentModel*>(table().model());
    EXPECT_EQ(model->rowCount(), rows);
    EXPECT_GT(model->notesRead(), 0);
    EXPECT_LT(model->notesRead(), 200);
    trigger("selectAllAction");
    EXPECT_EQ(workspace->client().visibleSelection().size(), documents);
    window->refresh();
    EXPECT_EQ(workspace->client().visibleSelection().size(), documents);
    EXPECT_LT(model->notesRead(), 200);
  }
  void trigger(const char* action) { part<QAction>(action).trigger(); }
  // Cancels the work of an action at once; the caption of the button that did it.
  QString cancelled(const char* action) {
    QString caption;
    const WhenWorkBegins cancel(*window, [&] {
      auto& button = part<QPushButton>("importCancel");
      caption = button.text();
      button.click();
    });
    trigger(action);
    return caption;
  }
  void showView(const QString& title) {
    auto& views = part<QListWidget>("viewList");
    const auto found = views.findItems(title, Qt::MatchExactly);
    ASSERT_EQ(found.size(), 1);
    views.setCurrentItem(found.first());
  }
  // The text of the report that stands open, or a result of one line in the strip; "" without either.
  QString report() {
    auto* dialog = window->findChild<QDialog*>(u"ImportReport"_s);
    if (dialog) return dialog->findChild<QPlainTextEdit*>(u"reportText"_s)->toPlainText();
    return isResult() ? part<QLabel>("errorText").text() : QString();
  }

  Object session() { return gateway->create(u"Notes.NotesSession"_s); }
  Object uiWorkspace() { return gateway->create(u"Notes.NotesUIWorkSpace"_s); }
  Object databaseOnTop() { return uiWorkspace().get(u"CURRENTDATABASE"_s).object(); }
  int unprocessed() {
    const Object top = session().get(u"CURRENTDATABASE"_s).object();
    return int(top.get(u"UNPROCESSEDDOCUMENTS"_s).object().get(u"COUNT"_s).number());
  }

  // Writes a DXL file of some memos and gives its path.
  QString dxlFile(const QString& name, int memos, const QByteArray& tail = "</database>\n") {
    QByteArray text =
        "<?xml version='1.0' encoding='utf-8'?>\n<database xmlns='http://www.lotus.com/dxl' title='Other'>\n";
    for (int i = 1; i <= memos; ++i)
      text += "<document form='Memo'><noteinfo unid='" + QByteArray::number(i).rightJustified(32, '0') +
              "'/><item name='Subject'><text>Imported " + QByteArray::number(i) +
              "</text></item></document>\n";
    QFile file(directory.path() + u'/' + name);
    if (!file.open(QIODevice::WriteOnly)) throw std::runtime_error("no room for test data");
    file.write(text + tail);
    return file.fileName();
  }

  QTemporaryDir directory;
  std::shared_ptr<Workspace> workspace;
  std::shared_ptr<Database> mail;
  std::unique_ptr<EmbeddedGateway> gateway;
  std::unique_ptr<ClientWindow> window;
  ScriptedChoice* choice = nullptr;
};

}  // namespace lens
