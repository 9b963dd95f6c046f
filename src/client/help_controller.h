// The help menu of the client window: the guide and what else is shipped to read, and About.
#pragma once

#include <QMenu>
#include <QObject>
#include <QPointer>

namespace lens {

class AboutDialog;
class GuideWindow;
struct ClientControls;

class HelpController : public QObject {
  Q_OBJECT

 public:
  explicit HelpController(ClientControls& controls);

  // Shows a shipped document in the guide's window.
  void showDocument(const QString& name);
  void showAbout();

 private:
  void addPage(QMenu& menu, const QString& name, const QString& text, const QString& document);

  ClientControls& controls_;
  GuideWindow* guide_ = nullptr;  // made when it is first asked for
  QPointer<AboutDialog> about_;
};

}  // namespace lens
