#include "bulk/shown_replic.h"

namespace lens {
namespace {

class ReplicPicture : public ShownReplic {};

// The window as a user sees it; BULK_PICTURE names a file to keep it in.
TEST_F(ReplicPicture, ShowsAllCaptionsWholeWithListsThatAreFilled) {
  addServers();
  for (const char* path :
       {"admin/certlog", "apps/assets", "apps/contracts", "apps/crm", "apps/helpdesk", "apps/projects",
        "apps/suppliers", "apps/travel", "dirs/people", "disc/board", "disc/ideas", "mail/dokafor",
        "mail/jlindt", "mail/kmeier", "teams/legal", "teams/sales"}) {
    for (const QString& server : {kHub, kMail}) {
      const auto store = make(QString::fromLatin1(path) + u".nsf"_s, server, {}, u"ACME_contract"_s);
      if (QLatin1String(path) != QLatin1String("apps/contracts")) continue;
      for (const QString& view : {u"($All)"_s, u"1. Open|Open"_s, u"2. Closed|Closed"_s,
                                  u"3. By partner|Partner"_s, u"Archive"_s, u"Drafts"_s})
        addView(*store, view);
      for (const QString& agent :
           {u"(CleanLocks)|clean"_s, u"Nightly expiry check|expiry"_s, u"Send reminders"_s})
        addAgent(*store, agent);
      for (int i = 0; i < 317; ++i)
        addDocument(*store, {{u"Subject"_s, u"The contract of pump station %1"_s.arg(i)},
                             {u"Categories"_s, u"contract"_s},
                             {u"From"_s, u"CN=Karin Meier/O=Acme"_s},
                             {u"LinkTitle"_s, u"contract register"_s}});
    }
  }
  openTool();
  window().lstDesignServer->setText(kMail);
  window().cmdExpand2->click.fire();
  choose(*window().lstDBNames, native(u"apps/projects.nsf"_s));
  choose(*window().lstDBNames, native(u"apps/contracts.nsf"_s));
  window().lstDBNames->dblClick.fire();
  window().chkFields->setValue(1);
  choose(*window().lstViewNames, u"1. Open"_s);
  choose(*window().lstDBNamesDest, native(u"apps/contracts.nsf"_s));
  choose(*window().fldList, u"Subject"_s);
  window().txtReplace->setText(u"agreement"_s);
  window().activateWindow();
  QCoreApplication::processEvents();
  window().lstViewNames->setFocus();
  EXPECT_EQ(host.boxes, Boxes());
  EXPECT_EQ(window().txtDocsSelected->text(), "317");
  EXPECT_EQ(window().txtNumDocs->text(), "250");
  EXPECT_EQ(fields(), QStringList({u"Categories: contract"_s, u"LinkTitle: contract register"_s,
                                   u"Subject: The contract of pump station 0"_s}));
  const QString file = qEnvironmentVariable("BULK_PICTURE");
  if (!file.isEmpty()) window().grab().save(file + u".opened.png"_s);
  const QSize opened = window().size();
  window().resize(1280, opened.height() * 9 / 8 + 1);
  for (const CommandButton* button : window().findChildren<CommandButton*>()) {
    const int text = button->fontMetrics().size(Qt::TextShowMnemonic, button->text()).width();
    EXPECT_LE(text, button->width() - 4) << button->objectName().toStdString();
  }
  for (const Label* label : window().findChildren<Label*>())
    EXPECT_LE(label->sizeHint().width(), label->width()) << label->objectName().toStdString();
  if (!file.isEmpty()) window().grab().save(file);
}

}  // namespace
}  // namespace lens
