#include "client/document_reader.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QSplitter>

#include "client/note_texts.h"
#include "client/panes.h"
#include "controls/look.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr qsizetype kMostMarks = 10'000;  // more are of no use to anybody, and slow
constexpr quint32 kRed = 0x0000FF;

}  // namespace

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
  items_ = new ListTable(this);
  items_->setObjectName(u"readerItems"_s);
  items_->setAccessibleName(tr("Items"));
  items_->setToolTip(tr("The items of the document; the value of the current one stands below"));
  prepareTable(*items_);
  items_->setSelectionMode(QAbstractItemView::SingleSelection);
  return labelled(tr("&Items:"), items_);
}

QWidget* DocumentReader::makeContent() {
  content_ = readingBox(u"readerContent"_s, this);
  content_->setAccessibleName(tr("Content"));
  content_->setToolTip(tr("The value of the current item, for reading and copying"));
  return labelled(tr("Con&tent:"), content_);
}

void DocumentReader::show(Note note, const Regional& regional) {
  if (!model_) makeModel(regional);
  const int row = note.header.id == noteId() ? qMax(0, currentItem()) : 0;
  const NoteTexts texts = textsOf(note, regional);
  subject_->setText(texts.subject.isEmpty() ? tr("(no subject)") : texts.subject);
  facts_->setText(tr("%1    Note ID %2    Modified %3")
                      .arg(texts.form.isEmpty() ? tr("(no form)") : texts.form, noteIdText(note.header.id),
                           texts.modified.isEmpty() ? tr("(unknown)") : texts.modified));
  model_->show(std::move(note));
  content_->setText(QString());
  goToItem(qMin(row, model_->rowCount() - 1));
}

void DocumentReader::makeModel(const Regional& regional) {
  model_ = new ItemModel(regional, this);
  ordered_ = new QSortFilterProxyModel(this);
  ordered_->setSortLocaleAware(true);
  ordered_->setSortCaseSensitivity(Qt::CaseInsensitive);
  ordered_->setSourceModel(model_);
  items_->setModel(ordered_);
  offerOrder(*items_);
  connect(items_->horizontalHeader(), &QHeaderView::sortIndicatorChanged, ordered_,
          &QSortFilterProxyModel::sort);
  items_->setColumnWidth(ItemModel::Name, 170);
  items_->setColumnWidth(ItemModel::Type, 110);
  items_->horizontalHeader()->setStretchLastSection(true);
  connect(items_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this] { showItem(currentItem()); });
}

int DocumentReader::currentItem() const {
  return !ordered_ ? -1 : ordered_->mapToSource(items_->currentIndex()).row();
}

void DocumentReader::goToItem(int row) {
  items_->setCurrentIndex(ordered_->mapFromSource(model_->index(row, 0)));
}

void DocumentReader::markHits(const QueryHits& hits) {
  hits_ = hits;
  if (!model_) return;
  model_->markHits(hits);
  const int first = model_->firstHit();
  if (first >= 0 && first != currentItem()) return goToItem(first);
  showItem(currentItem());
}

void DocumentReader::clear() {
  if (!model_) return;
  model_->show({});
  subject_->clear();
  facts_->clear();
  content_->setText(QString());
}

void DocumentReader::addItemAction(QAction& action) {
  items_->addAction(&action);
  items_->setContextMenuPolicy(Qt::ActionsContextMenu);
}

void DocumentReader::showItem(int row) {
  content_->setText(model_->text(row));
  content_->setExtraSelections({});
  if (hits_.isEmpty()) return;
  // Of a short text the box's document has all, and its places count; of a long one it has a part.
  const bool isLong = content_->isPart();
  QVector<TextPlace> places =
      hits_.in(isLong ? content_->text() : content_->toPlainText(), model_->name(row));
  if (places.isEmpty()) return;
  places.resize(qMin(kMostMarks, places.size()));
  if (isLong)
    colourPlaces(places);
  else
    markPlaces(places);
}

void DocumentReader::markPlaces(const QVector<TextPlace>& places) {
  QList<QTextEdit::ExtraSelection> marks;
  for (const TextPlace& place : places) {
    QTextEdit::ExtraSelection mark;
    mark.cursor = QTextCursor(content_->document());
    mark.cursor.setPosition(int(place.at));
    mark.cursor.setPosition(int(place.at + place.size), QTextCursor::KeepAnchor);
    mark.format.setBackground(QColor(colour::HitMark));
    mark.format.setForeground(QColor(colour::HitText));
    marks.push_back(mark);
  }
  content_->setExtraSelections(marks);
  QTextCursor place(content_->document());
  place.setPosition(marks.first().cursor.selectionStart());
  content_->refresh();  // it would put its own caret in place later
  content_->setTextCursor(place);
}

// As the content box of the main window shows them: that stays with the text wherever the box scrolls to.
void DocumentReader::colourPlaces(const QVector<TextPlace>& places) {
  for (const TextPlace& place : places) {
    content_->setSelStart(int(place.at));
    content_->setSelLength(int(place.size));
    content_->setSelColor(kRed);
  }
  content_->setSelStart(int(places.first().at));
}

}  // namespace lens
