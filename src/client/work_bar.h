// The progress of an import, export or other long work in the status bar, with a button that ends it.
#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QWidget>

namespace lens {

class WorkBar : public QWidget {
  Q_OBJECT

 public:
  explicit WorkBar(QWidget* parent = nullptr);

  enum class Work { Import, Export, Index, Read, Compare, Preview, Undo, Copy, Search };
  // Shown and running from begin() to finish().
  void begin(Work work);
  void finish();
  bool isRunning() const { return running_; }
  bool isCancelled() const { return cancelled_; }
  // As the button does.
  void cancel();
  Work work() const { return work_; }
  // A total of 0 is not known yet.
  void showProgress(const QString& file, qint64 done, qint64 total);

 Q_SIGNALS:
  void cancelled();

 private:
  QLabel* file_;
  QProgressBar* bar_;
  QPushButton* cancel_;
  Work work_ = Work::Import;
  QString text_;  // about the file
  bool running_ = false;
  bool cancelled_ = false;
};

// Lets events through while the exporter works, which reads only. An export that lost its window ends itself.
class ExportWatch {
 public:
  explicit ExportWatch(WorkBar* bar) : bar_(bar) {}
  // False when the export is to end.
  bool go(const QString& file, qint64 done, qint64 total);

 private:
  QPointer<WorkBar> bar_;
  QElapsedTimer sinceYield_;
};

}  // namespace lens
