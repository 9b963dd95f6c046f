// What some work did, to read and to copy. It stands beside the other windows and blocks none.
#pragma once

#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>

namespace lens {

class ReportDialog : public QDialog {
  Q_OBJECT

 public:
  ReportDialog(const QString& heading, const QString& report, QWidget* parent);
  // One more beside "Close" and "Copy".
  QPushButton* addButton(const QString& text, const QString& toolTip);

 private:
  QDialogButtonBox* buttons_;
};

}  // namespace lens
