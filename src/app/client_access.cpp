#include "app/client_access.h"

#include <QShortcut>

#include "notes/literals.h"

namespace lens {

ClientAccess::ClientAccess(Form1& form, std::function<void()> show) : show_(std::move(show)) {
  auto* key = new QShortcut(QKeySequence(Qt::Key_F9), &form);
  key->setContext(Qt::ApplicationShortcut);
  QObject::connect(key, &QShortcut::activated, this, [this] { show_(); });
  Event<>& entry = form.mnuBar->addEntry(u"mnuBarClient"_s, u"Client window"_s);
  entry = [this] { show_(); };
  form.sbrMain->setToolTip(u"Click on the source, or press F9, to show the client window"_s);
  form.sbrMain->panelClick = [this](const QString& panel) { sbrMain_PanelClick(panel); };
}

void ClientAccess::sbrMain_PanelClick(const QString& key) {
  if (key == u"Source") show_();
}

}  // namespace lens
