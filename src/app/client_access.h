// The ways to the client window: the key F9 in every window, an entry of the tray menu, and the panel of the
// status bar that names the source.
#pragma once

#include <QObject>
#include <functional>

#include "shell/form1.h"

namespace lens {

class ClientAccess : public QObject {
  Q_OBJECT

 public:
  // The function shows the client window, on top and with the keyboard. The form must outlive this.
  ClientAccess(Form1& form, std::function<void()> show);

 private:
  void sbrMain_PanelClick(const QString& key);
  std::function<void()> show_;
};

}  // namespace lens
