// A window over the main one, which it blocks. Esc leaves it open; its frame closes it.
#pragma once

#include <QDialog>

#include "controls/event.h"

namespace lens {

class OwnedWindow : public QDialog {
  Q_OBJECT

 public:
  explicit OwnedWindow(QWidget* owner);

  Event<> unload;     // the window is about to go
  Event<> terminate;  // the window has gone

 protected:
  void reject() override {}
  void closeEvent(QCloseEvent* event) override;
};

}  // namespace lens
