#include "client/guide_window.h"

#include <QAction>
#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "controls/pictures.h"
#include "host/shipped_files.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kWidestPicture = 820;  // pixels, as wide as a column of text
constexpr QSize kPageSize(920, 720);

bool isMarkdown(const QUrl& url) {
  return url.path().endsWith(u".md"_s);
}

QString contentOf(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QPushButton* barButton(const QString& text, const QString& tip, QWidget* bar) {
  auto* button = new QPushButton(text, bar);
  button->setToolTip(tip);
  button->setAutoDefault(false);
  return button;
}

}  // namespace

GuidePage::GuidePage(QWidget* parent) : QTextBrowser(parent) {
  setOpenExternalLinks(true);
}

QVariant GuidePage::loadResource(int type, const QUrl& name) {
  const QString path = source().resolved(name).toLocalFile();
  if (type == QTextDocument::ImageResource) {
    const QImage picture(path);
    return picture.width() > kWidestPicture ? picture.scaledToWidth(kWidestPicture, Qt::SmoothTransformation)
                                            : picture;
  }
  if (!QFileInfo(path).isFile()) return tr("%1 is not shipped with the program").arg(name.fileName());
  const QString content = contentOf(path);
  return isMarkdown(name) ? content : QString(u"<pre>"_s + content.toHtmlEscaped() + u"</pre>"_s);
}

// Laid out once, when all of it is there: a page with large tables takes half a minute otherwise.
void GuidePage::doSetSource(const QUrl& url, QTextDocument::ResourceType) {
  const bool isThere = QFileInfo(source().resolved(url).toLocalFile()).isFile();
  document()->setLayoutEnabled(false);
  QTextBrowser::doSetSource(
      url, isMarkdown(url) && isThere ? QTextDocument::MarkdownResource : QTextDocument::HtmlResource);
  document()->setLayoutEnabled(true);
  document()->markContentsDirty(0, document()->characterCount());
}

GuideWindow::GuideWindow(QWidget* parent)
    : QWidget(parent, Qt::Window), page_(new GuidePage(this)), words_(new QLineEdit(this)) {
  setObjectName(u"guideWindow"_s);
  setWindowTitle(tr("Guide"));
  setWindowIcon(pictures::program());
  setAttribute(Qt::WA_QuitOnClose, false);
  resize(kPageSize);
  page_->setObjectName(u"guidePage"_s);
  page_->setAccessibleName(tr("Page"));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(makeBar());
  layout->addWidget(page_, 1);
  connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, words_,
          [this] { words_->setFocus(); });
  connect(new QShortcut(QKeySequence::FindNext, this), &QShortcut::activated, this, &GuideWindow::findNext);
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

QWidget* GuideWindow::makeBar() {
  auto* bar = new QWidget(this);
  QPushButton* back = barButton(tr("&Back"), tr("The page before this one (Alt+Left)"), bar);
  QPushButton* contents = barButton(tr("&Guide"), tr("The first page of the guide"), bar);
  back->setEnabled(false);
  connect(back, &QPushButton::clicked, page_, &QTextBrowser::backward);
  connect(page_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
  connect(contents, &QPushButton::clicked, this, [this] { open(u"docs/guide.md"_s); });
  words_->setObjectName(u"guideWords"_s);
  words_->setClearButtonEnabled(true);
  words_->setToolTip(tr("Words to be found on the page; Enter or F3 finds the next place"));
  connect(words_, &QLineEdit::returnPressed, this, &GuideWindow::findNext);
  auto* label = new QLabel(tr("&Find:"), bar);
  label->setBuddy(words_);
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(back);
  layout->addWidget(contents);
  layout->addStretch(1);
  layout->addWidget(label);
  layout->addWidget(words_);
  return bar;
}

void GuideWindow::open(const QString& name) {
  const QString path = shippedFile(name);
  page_->setSource(QUrl::fromLocalFile(path.isEmpty() ? name : path));
}

// From the last place on; from the last one begins again.
void GuideWindow::findNext() {
  if (words_->text().isEmpty() || page_->find(words_->text())) return;
  page_->moveCursor(QTextCursor::Start);
  page_->find(words_->text());
}

}  // namespace lens
