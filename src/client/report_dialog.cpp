#include "client/report_dialog.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "client/panes.h"
#include "notes/literals.h"

namespace lens {

ReportDialog::ReportDialog(const QString& heading, const QString& report, QWidget* parent)
    : QDialog(parent), buttons_(new QDialogButtonBox(QDialogButtonBox::Close, this)) {
  setObjectName(u"ImportReport"_s);
  setAttribute(Qt::WA_DeleteOnClose);
  setWindowTitle(tr("Import report"));
  resize(640, 360);
  auto* title = new QLabel(heading, this);
  title->setTextFormat(Qt::PlainText);
  title->setWordWrap(true);
  auto* text = new QPlainTextEdit(report, this);
  text->setObjectName(u"reportText"_s);
  text->setAccessibleName(tr("Report"));
  text->setReadOnly(true);
  text->setTabChangesFocus(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  useListFont(*text);
  QPushButton* copy = addButton(tr("C&opy"), tr("Puts the whole report on the clipboard"));
  connect(copy, &QPushButton::clicked, this, [report] { QGuiApplication::clipboard()->setText(report); });
  connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(title);
  layout->addWidget(text, 1);
  layout->addWidget(buttons_);
}

QPushButton* ReportDialog::addButton(const QString& text, const QString& toolTip) {
  QPushButton* button = buttons_->addButton(text, QDialogButtonBox::ActionRole);
  button->setToolTip(toolTip);
  return button;
}

}  // namespace lens
