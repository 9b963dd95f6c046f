// The documents that are shipped with the program, to read: pages lead to each other, and a line finds words.
#pragma once

#include <QLineEdit>
#include <QTextBrowser>
#include <QWidget>

namespace lens {

// Shows Markdown with its pictures, and everything else as plain text. Addresses of the web go to the
// browser.
class GuidePage : public QTextBrowser {
  Q_OBJECT

 public:
  explicit GuidePage(QWidget* parent);

 protected:
  QVariant loadResource(int type, const QUrl& name) override;
  void doSetSource(const QUrl& url, QTextDocument::ResourceType type) override;
};

class GuideWindow : public QWidget {
  Q_OBJECT

 public:
  explicit GuideWindow(QWidget* parent);

  // Shows a shipped document; one that is missing is told on the page.
  void open(const QString& name);

 private:
  QWidget* makeBar();
  void findNext();

  GuidePage* page_;
  QLineEdit* words_;
};

}  // namespace lens
