// The client window in the language of its user.
#include <QMenu>
#include <QStatusBar>
#include <QTranslator>

#include "client/client_fixture.h"
#include "host/shipped_files.h"

namespace lens {

#ifdef LENS_TRANSLATED

class ClientLanguages : public Client {
 protected:
  void speak(const QLocale& locale) { speakLanguageOf(locale); }
  ~ClientLanguages() override {
    window.reset();
    for (auto* translator : qApp->findChildren<QTranslator*>()) {
      QCoreApplication::removeTranslator(translator);
      delete translator;
    }
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

TEST_F(ClientLanguages, AnyOtherUserSeesEnglish) {
  speak(QLocale(QLocale::Finnish));
  start();
  EXPECT_EQ(part<QMenu>("fileMenu").title(), u"&File"_s);
}

#endif

}  // namespace lens
