// The bulk document tool's window: a record of its controls. What they do lives in the other classes of this
// folder, each of which connects its own events; places, captions and tooltips are data of frm_replic.ui.
//
// There is one such window from its first showing on, as long as the application lives. A run that was
// started in it goes on when the window is closed, so its controls must outlast each showing.
#pragma once

#include <QVector>

#include "shell/owned_window.h"
#include "ui_frm_replic.h"

namespace lens {

class FrmReplic : public OwnedWindow, public Ui::FrmReplic {
  Q_OBJECT

 public:
  explicit FrmReplic(QWidget* owner = nullptr);

  OptionButton* Opt[3];  // "DBs", "Views", "Agents"

  Event<> load;     // the window is about to be shown
  Event<> resized;  // the window has a new size, is minimised, or is shown

  // As designed: size, places, texts and marks, without a row in any list.
  void restoreDesign();
  // Whether a procedure that takes events on its way is at work in the window.
  bool isRunning() const { return runs_ > 0; }

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  friend class ReplicRun;
  struct Designed {
    QWidget* control;
    QRect place;
    QFont font;
    QString text;
    bool isShown, isEnabled;
  };
  void giveColours();
  void rememberDesign();
  static void restore(const Designed& designed);

  QVector<Designed> design_;
  QSize designSize_;
  int runs_ = 0;
};

// Lives as long as a procedure of the window works that takes events on its way and reads the controls
// afterwards: the window may be closed and shown again meanwhile, and must not lose what the procedure works
// on.
class ReplicRun {
 public:
  explicit ReplicRun(FrmReplic& window) : window_(window) { ++window_.runs_; }
  ~ReplicRun() { --window_.runs_; }
  Q_DISABLE_COPY_MOVE(ReplicRun)

 private:
  FrmReplic& window_;
};

}  // namespace lens
