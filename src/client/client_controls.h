// The controls of the client window and what those who work on them share. What the controls do lives in
// panes and controllers, each of which connects its own actions.
#pragma once

#include <QMainWindow>
#include <memory>

#include "client/file_choice.h"
#include "client/work_bar.h"
#include "ui_client_window.h"

namespace lens {

struct ClientControls : ::Ui::ClientWindow {
  // Puts the controls into the window.
  explicit ClientControls(QMainWindow& window);

  // A failure, in the strip at the window's top.
  void showError(const QString& text);
  void clearError();
  // What some work did. One line stands in the strip at the window's top, more in a window of its own that
  // takes nobody's focus.
  void showResult(const QString& windowTitle, const QString& heading, const QString& text);
  // True, and told to the user, while an import, export, index or reading is on its way: there is one at a
  // time.
  bool refuseWhileBusy();

  QMainWindow& window;
  WorkBar* workBar;
  std::unique_ptr<FileChoice> choice;

 private:
  void giveColours();
};

}  // namespace lens
