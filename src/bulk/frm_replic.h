// The bulk document tool's window: a record of its controls. What they do lives in the other classes of this
// folder, each of which connects its own events; places, captions and tooltips are data of frm_replic.ui.
//
// There is one such window as long as the application lives. A run that was started in it goes on when the
// window is closed, so its controls must outlast each showing.
#pragma once

#include <QDialog>

#include "controls/event.h"
#include "ui_frm_replic.h"

namespace lens {

class FrmReplic : public QDialog, public Ui::FrmReplic {
  Q_OBJECT

 public:
  explicit FrmReplic(QWidget* owner = nullptr);

  OptionButton* Opt[3];  // "DBs", "Views", "Agents"

  Event<> resized;    // the window has a new size, is minimised, or is shown
  Event<> unload;     // the window is about to go
  Event<> terminate;  // the window has gone

 protected:
  // Esc belongs to what runs: it leaves the window open.
  void reject() override {}
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
};

}  // namespace lens
