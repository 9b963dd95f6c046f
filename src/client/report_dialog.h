// What an import did, to read and to copy. It stands beside the other windows and blocks none.
#pragma once

#include <QDialog>

namespace lens {

class ReportDialog : public QDialog {
  Q_OBJECT

 public:
  ReportDialog(const QString& heading, const QString& report, QWidget* parent);
};

}  // namespace lens
