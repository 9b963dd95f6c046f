// The client window in the language of its user.
#include <QMenu>
#include <QRegularExpression>
#include <QSet>
#include <QStatusBar>
#include <QTranslator>
#include <utility>

#include "client/about_dialog.h"
#include "client/client_fixture.h"
#include "client/guide_window.h"
#include "client/import_dialog.h"
#include "client/list_export.h"
#include "client/note_texts.h"
#include "client/report_dialog.h"
#include "client/shown_texts.h"
#include "embedded/dxl/import_report.h"
#include "embedded/dxl/view_elements.h"
#include "embedded/format/source_formula.h"
#include "host/shipped_files.h"

namespace lens {

#ifdef LENS_TRANSLATED

class ClientLanguages : public Client {
 protected:
  void speak(const QLocale& locale) { speakLanguageOf(locale); }
  void silence() {
    for (auto* translator : qApp->findChildren<QTranslator*>()) {
      QCoreApplication::removeTranslator(translator);
      delete translator;
    }
  }
  ~ClientLanguages() override {
    window.reset();
    silence();
  }
};

TEST_F(ClientLanguages, AGermanUserSeesGermanMenusListsAndReports) {
  save(memo(u"A"_s));
  speak(QLocale(QLocale::German, QLocale::Austria));
  start();
  EXPECT_EQ(part<QMenu>("fileMenu").title(), u"&Datei"_s);
  EXPECT_EQ(part<QMenu>("helpMenu").title(), u"&Hilfe"_s);
  openMail();
  EXPECT_EQ(table().model()->headerData(1, Qt::Horizontal).toString(), u"Betreff"_s);
  choice->target = directory.path();
  table().setFocus();
  trigger("exportListAction");
  EXPECT_TRUE(part<QStatusBar>("statusBar").currentMessage().startsWith(u"1 Zeile nach "_s))
      << part<QStatusBar>("statusBar").currentMessage().toStdString();
}

// Whether the user's language is English or one that the program does not speak.
TEST_F(ClientLanguages, EnglishTellsOneFromMany) {
  save(memo(u"A"_s));
  for (const QLocale& locale :
       {QLocale(QLocale::English, QLocale::Canada), QLocale(QLocale::Icelandic), QLocale::c()}) {
    speak(locale);
    EXPECT_EQ(ListExport::tr("%n row(s) copied", nullptr, 1), u"1 row copied"_s)
        << locale.name().toStdString();
    EXPECT_EQ(ListExport::tr("%n row(s) copied", nullptr, 2), u"2 rows copied"_s);
    silence();
  }
}

TEST_F(ClientLanguages, EveryKeyOfTheMenusStaysInEveryLanguage) {
  start();
  QMap<QString, QKeySequence> keys;
  for (const QAction* action : window->findChildren<QAction*>())
    if (!action->objectName().isEmpty()) keys[action->objectName()] = action->shortcut();
  speak(QLocale(QLocale::German));
  window.reset();
  start();
  for (const QAction* action : window->findChildren<QAction*>()) {
    if (action->objectName().isEmpty()) continue;
    EXPECT_EQ(action->shortcut(), keys.value(action->objectName())) << action->objectName().toStdString();
  }
}

// Names of databases, notes and items, and words that are the same in both languages.
bool isTheSameEverywhere(const QString& text) {
  static const QSet<QString> same{u"Client"_s,    u"Filter"_s,  u"Fi&lter:"_s, u"UNID"_s,   u"Agent"_s,
                                  u"Navigator"_s, u"&CSV..."_s, u"Hub/Acme"_s, u"$TITLE"_s, u"$Flags"_s};
  static const QSet<QString> ofTheLibrary{u"Close"_s, u"&Close"_s, u"Cancel"_s, u"&Cancel"_s, u"&OK"_s};
  static const QRegularExpression name(
      u"^[^A-Za-z]*$|\\.nsf|\\bdata\\b|^Client: |^Qt |^SQLite |^[0-9A-F]{8}|/"
      "|^([-+~ ]*|TEXT|TEXT: )(Form|Subject|Memo)?$"_s);
  return same.contains(text) || ofTheLibrary.contains(text) || text.contains(name);
}

// What a user comes by who looks into everything.
class WalkThroughTheClient : public ClientLanguages {
 protected:
  WalkThroughTheClient() {
    workspace->createDatabase(u"CN=Hub/O=Acme"_s, u"hub.nsf"_s, {});
    first = save(memo(u"data 1"_s));
    save(memo(u"data 2"_s));
    ViewColumn category;
    category.title = u"data"_s;
    category.item = u"Tags"_s;
    category.sorted = category.categorized = true;
    Note view;
    view.header.noteClass = noteclass::View;
    view.add(u"$TITLE"_s, itemflag::Summary, textValue(u"data view"));
    view.add(u"$Formula"_s, itemflag::Summary, sourceFormulaValue(u"SELECT @All"_s));
    view.add(u"$ViewFormat"_s, itemflag::Summary, viewFormatValue({category}, false));
    view.add(u"$Collation"_s, itemflag::Summary, collationValue({category}));
    save(view);
    Note untitled;
    untitled.header.noteClass = noteclass::View;
    save(untitled);
  }
  void look(const QWidget& at) {
    seen += shownTexts(at);
    for (const QString& shared : sharedKeys(at))
      if (!keys.contains(shared)) keys += shared;
  }
  void walk() {
    seen.clear();
    start();
    look(*window);
    openMail();
    auto& views = part<QListWidget>("viewList");
    for (int row = 0; row < views.count(); ++row) {
      views.setCurrentRow(row);
      look(*window);
    }
    views.setCurrentRow(0);
    for (int work = 0; work <= int(WorkBar::Work::Search); ++work) {
      auto& bar = part<WorkBar>("importBar");
      bar.begin(WorkBar::Work(work));
      bar.showProgress(u"mail.nsf"_s, 1, 2);
      trigger("importFilesAction");
      look(*window);
      bar.finish();
    }
    table().selectAll();
    trigger("compareMarkedAction");
    EXPECT_EQ(error(), QString());
    look(part<QWidget>("compareWindow"));
    trigger("compareDatabasesAction");
    part<QPushButton>("compareStart").click();
    look(part<QWidget>("compareWindow"));
    EXPECT_TRUE(window->openDocument(first));
    trigger("showFormulaAction");
    look(part<QDialog>("FormulaWindow"));
    look(*window);
    lookAtDialogs();
    window->closeDatabase();
    window.reset();
  }
  void lookAtDialogs() {
    look(AboutDialog(nullptr));
    look(GuideWindow(nullptr));
    ImportReport report;
    report.cancelled = true;
    report.failed = report.otherFiles = report.origin = {u"data"_s};
    report.keptKinds[u"data"_s] = {2, 2, {}};
    report.ignoredKinds[u"data"_s] = {2, 5, {}};
    for (const QString& line : report.text().split(u'\n'))
      seen.push_back({u"line of an import's report"_s, line});
    look(ReportDialog(u"data"_s, u"data"_s, nullptr));
    ImportOffer offer;
    offer.paths = {directory.path(), u"data"_s};
    offer.open = mail;
    offer.regional = &workspace->regional();
    look(ImportDialog(offer, nullptr));
    for (int noteClass = 1; noteClass < 0x0800; noteClass *= 2)
      for (char16_t flag = u'0'; flag <= u'~'; ++flag) {
        Note note;
        note.header.noteClass = quint16(noteClass == noteclass::Document ? 0x0800 : noteClass);
        note.add(u"$Flags"_s, itemflag::Summary, textValue(QStringView(&flag, 1)));
        seen.push_back({u"kind of a note"_s, textsOf(note, workspace->regional()).form});
      }
  }

  QVector<ShownText> seen;
  QStringList keys;  // that are shared
  NoteId first;
};

TEST_F(WalkThroughTheClient, AGermanUserMeetsNoEnglishTextAndNobodyAKeyOfTwo) {
  walk();
  const QVector<ShownText> english = std::exchange(seen, {});
  ASSERT_GT(english.size(), 1000);
  speak(QLocale(QLocale::German));
  walk();
  ASSERT_EQ(seen.size(), english.size());
  QStringList told;
  for (qsizetype i = 0; i < seen.size(); ++i) {
    ASSERT_EQ(seen[i].where, english[i].where);
    const QString line = seen[i].where + u": "_s + seen[i].text;
    if (seen[i].text != english[i].text || isTheSameEverywhere(seen[i].text) || told.contains(line)) continue;
    told += line;
    ADD_FAILURE() << line.toStdString();
  }
  EXPECT_EQ(keys, QStringList()) << "captions that share an access key";
}

TEST_F(ClientLanguages, AnyOtherUserSeesEnglish) {
  speak(QLocale(QLocale::Finnish));
  start();
  EXPECT_EQ(part<QMenu>("fileMenu").title(), u"&File"_s);
}

#endif

}  // namespace lens
