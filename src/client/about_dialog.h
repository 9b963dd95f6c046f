// About the program: version, how it was built, the libraries that it runs on, and the licences.
#pragma once

#include <QDialog>

namespace lens {

// One fact a line: versions of the program, of its libraries and of the system, for reports of faults.
QString programFacts();

class AboutDialog : public QDialog {
  Q_OBJECT

 public:
  explicit AboutDialog(QWidget* parent);

 Q_SIGNALS:
  // A shipped document is to be shown.
  void documentAsked(const QString& name);
};

}  // namespace lens
