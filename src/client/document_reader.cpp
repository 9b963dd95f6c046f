#include "client/document_reader.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QSplitter>

#include "client/note_texts.h"
#include "client/panes.h"
#include "notes/literals.h"

namespace lens {

DocumentReader::DocumentReader(QWidget* parent) : QWidget(parent) {
  auto* halves = new QSplitter(Qt::Vertical, this);
  halves->setObjectName(u"readerHalves"_s);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(makeHead());
  halves->addWidget(makeItems());
  halves->addWidget(makeContent());
  halves->setChildrenCollapsible(false);
  layout->addWidget(halves, 1);
}

QLayout* DocumentReader::makeHead() {
  subject_ = new QLabel(this);
  subject_->setObjectName(u"readerSubject"_s);
  subject_->setTextFormat(Qt::PlainText);
  subject_->setWordWrap(true);
  QFont strong = subject_->font();
  strong.setBold(true);
  subject_->setFont(strong);
  facts_ = new QLabel(this);
  facts_->setTextFormat(Qt::PlainText);
  close_ = new QPushButton(tr("&Close"), this);
  close_->setObjectName(u"readerClose"_s);
  close_->setToolTip(tr("Closes the document and goes back to the view (Esc)"));
  connect(close_, &QPushButton::clicked, this, &DocumentReader::closeRequested);
  auto* words = new QVBoxLayout;
  words->addWidget(subject_);
  words->addWidget(facts_);
  auto* head = new QHBoxLayout;
  head->addLayout(words, 1);
  head->addWidget(close_, 0, Qt::AlignTop);
  return head;
}

QWidget* DocumentReader::makeItems() {
  items_ = new QTableView(this);
  items_->setObjectName(u"readerItems"_s);
  items_->setToolTip(tr("The items of the document; the value of the current one stands below"));
  prepareTable(*items_);
  items_->setSelectionMode(QAbstractItemView::SingleSelection);
  return labelled(tr("&Items:"), items_);
}

QWidget* DocumentReader::makeContent() {
  content_ = new QPlainTextEdit(this);
  content_->setObjectName(u"readerContent"_s);
  content_->setReadOnly(true);
  content_->setTabChangesFocus(true);
  content_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  content_->setToolTip(tr("The value of the current item, for reading and copying"));
  useListFont(*content_);
  return labelled(tr("Con&tent:"), content_);
}

void DocumentReader::show(Note note, const Regional& regional) {
  const int row = note.header.id == noteId() ? qMax(0, items_->currentIndex().row()) : 0;
  const NoteTexts texts = textsOf(note, regional);
  subject_->setText(texts.subject.isEmpty() ? tr("(no subject)") : texts.subject);
  facts_->setText(tr("%1    Note ID %2    Modified %3")
                      .arg(texts.form.isEmpty() ? tr("(no form)") : texts.form, noteIdText(note.header.id),
                           texts.modified.isEmpty() ? tr("(unknown)") : texts.modified));
  if (!model_) {
    model_ = new ItemModel(regional, this);
    items_->setModel(model_);
    items_->setColumnWidth(ItemModel::Name, 170);
    items_->setColumnWidth(ItemModel::Type, 110);
    items_->horizontalHeader()->setStretchLastSection(true);
    connect(items_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) { showItem(current.row()); });
  }
  model_->show(std::move(note));
  content_->clear();
  items_->setCurrentIndex(model_->index(qMin(row, model_->rowCount() - 1), 0));
}

void DocumentReader::clear() {
  if (!model_) return;
  model_->show({});
  subject_->clear();
  facts_->clear();
  content_->clear();
}

void DocumentReader::addItemAction(QAction& action) {
  items_->addAction(&action);
  items_->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void DocumentReader::showItem(int row) {
  content_->setPlainText(model_->text(row));
}

}  // namespace lens
