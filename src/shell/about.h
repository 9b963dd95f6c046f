// The About window: a picture, the program's line and its version.
#pragma once

#include <QWidget>

#include "controls/event.h"
#include "ui_about.h"

namespace lens {

class About : public QWidget, public Ui::About {
  Q_OBJECT

 public:
  explicit About(QWidget* owner);

  Event<> unload;
  Event<> terminate;

 protected:
  void closeEvent(QCloseEvent* event) override;
};

}  // namespace lens
