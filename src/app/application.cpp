#include "app/application.h"

#include <QScreen>

#include "inspector/type_table.h"
#include "notes/literals.h"
#include "shell/screen_fit.h"

namespace lens {
namespace {

constexpr QSize kComfortableSize(1440, 900);

}  // namespace

Application::Application(Gateway& notes, CApi& api, Host& host, const QString& source)
    : routines(host, api),
      sessions(state, notes, host),
      servers(state, host, api, routines),
      databases(state, host),
      layout(form, host),
      desk{form, state, notes, api, host, routines, sessions, layout},
      lifecycle(desk, servers),
      capture(desk),
      lowLevel(desk),
      agentInfo(desk),
      viewer(desk, lowLevel, agentInfo),
      properties(desk),
      addition(desk, lowLevel),
      overwriting(desk, lowLevel),
      searchReplace(desk),
      contentBox(desk),
      collection(desk),
      filePane(desk),
      designs(desk),
      designDocs(desk),
      profiles(desk),
      deletion(desk),
      fieldTypes(desk),
      fieldDump(desk),
      formulaTools(desk),
      helpLookup(desk),
      remoteConsole(desk),
      hostTools(desk),
      notes_(notes),
      host_(host) {
  installUntrappedReport(host);
  fieldDump.openFile = [this](const QString& path) { filePane.ShellOpenFile(path); };
  hostTools.openFile = [this](const QString& path) { filePane.ShellOpenFile(path); };
  lifecycle.addDocTypes = [this, &host] { addDocTypes(state, *form.cmbFieldType, host); };
  deletion.refreshCurrentView = [this] { capture.RefreshCurrentView(); };
  servers.setFallbackBox([this]() -> ComboBox& { return designCopy().serversOfLoadedWindow(); });
  form.cmdDocCopy->click = [this] { designCopy().cmdDocCopy_Click(); };
  form.cmdDbPicker->click = [this] { databasePicker().cmdDbPicker_Click(); };
  form.cmdCMRcoll->click = [this] { cmdCMRcoll_Click(); };
  form.sbrMain->setPanelText(u"Source"_s, source);
}

ReplicTool& Application::bulk() {
  if (!bulk_) {
    bulk_ = std::make_unique<ReplicTool>(&form, state, notes_, host_, routines, sessions, servers, databases);
    bulk_->dump.openFile = [this](const QString& path) { filePane.ShellOpenFile(path); };
  }
  return *bulk_;
}

DesignCopy& Application::designCopy() {
  if (!designCopy_) designCopy_ = std::make_unique<DesignCopy>(desk, servers, databases);
  return *designCopy_;
}

DatabasePicker& Application::databasePicker() {
  if (!databasePicker_) databasePicker_ = std::make_unique<DatabasePicker>(desk, servers, databases);
  return *databasePicker_;
}

void Application::cmdCMRcoll_Click() {
  bulk().lifecycle.show();
}

void Application::start() {
  fitDesignToScreen(form);
  lifecycle.Form_Load();
  // A load that ended early has made no record to lay the window out by: it keeps the size of its design.
  if (layout.recordedHeight() != 0) {
    const QSize room = roomInside(*form.screen());
    if (room.expandedTo(kComfortableSize) == room) form.resize(kComfortableSize);
    restoreSize();
  }
  form.Timer2->setEnabled(true);
  lifecycle.Timer2_Timer();
  form.show();
  settleOnDesktop(form, layout, [this] { lifecycle.Form_Resize(); });
}

// A resize like any other, behind the record. Below its height all text is the smallest there is, which
// nobody wants to begin with.
void Application::restoreSize() {
  if (!restorePlace || !restorePlace(form)) return;
  form.resize(form.width(), qMax(form.height(), layout.recordedHeight() / WindowLayout::kTwipsPerPixel));
}

void installUntrappedReport(Host& host) {
  setUntrappedReport([&host](const RuntimeError& error) {
    host.messageBox(u"Run-time error '%1':"_s.arg(error.number()) + u"\n\n" + error.description(),
                    box::Critical);
  });
}

}  // namespace lens
