// The system's file dialog as a control without a place: it is shown, and then has a file name.
#pragma once

#include <QString>
#include <QWidget>
#include <functional>

namespace lens {

class CommonDialog : public QObject {
  Q_OBJECT

 public:
  explicit CommonDialog(QWidget* owner);

  // Asks for a file to write, which may exist. Without a choice the name is empty: nothing is raised.
  void showSave();
  const QString& fileName() const { return fileName_; }

  // What asks the user; a test answers in the user's place.
  std::function<QString(QWidget* owner)> ask;

 private:
  QWidget* owner_;
  QString fileName_;
};

}  // namespace lens
