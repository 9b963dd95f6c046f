#include "client/compare_window.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include "client/database_tree.h"
#include "client/note_texts.h"
#include "client/panes.h"
#include "client/shown_list.h"
#include "controls/pictures.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr QSize kCompareSize(1000, 680);

QString labelOf(const DatabasePlace& place) {
  return CompareWindow::tr("%1 on %2").arg(place.path, serverLabel(place.server));
}

QVector<DatabasePlace> allDatabases(const Workspace& workspace) {
  QVector<DatabasePlace> places;
  for (const QString& server : QStringList(QString()) + workspace.serverNames())
    for (const QString& path : workspace.databases(server)) places += DatabasePlace{server, path};
  return places;
}

// Another copy of the same database is what one most likely wants to compare with.
qsizetype likelyOther(const Workspace& workspace, const QVector<DatabasePlace>& places, qsizetype first) {
  const QString replica = first >= 0 ? workspace.infoOf(places[first]).replicaId : QString();
  for (qsizetype i = 0; !replica.isEmpty() && i < places.size(); ++i)
    if (i != first && workspace.infoOf(places[i]).replicaId == replica) return i;
  return first == 0 && places.size() > 1 ? 1 : 0;
}

}  // namespace

CompareWindow::CompareWindow(std::shared_ptr<Workspace> workspace, QWidget* parent)
    : QWidget(parent, Qt::Window), workspace_(std::move(workspace)) {
  setObjectName(u"compareWindow"_s);
  setWindowIcon(pictures::program());
  setAttribute(Qt::WA_QuitOnClose, false);
  resize(kCompareSize);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(makeHead());
  layout->addWidget(makeTables(), 1);
  layout->addWidget(makeFoot());
  connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this, &QWidget::close);
}

QWidget* CompareWindow::makeHead() {
  head_ = new QWidget(this);
  auto* layout = new QHBoxLayout(head_);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto addBox = [&](const QString& name, const QString& caption) {
    auto* box = new QComboBox(head_);
    box->setObjectName(name);
    box->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* label = new QLabel(caption, head_);
    label->setBuddy(box);
    layout->addWidget(label);
    layout->addWidget(box, 1);
    return box;
  };
  first_ = addBox(u"compareFirst"_s, tr("&First:"));
  second_ = addBox(u"compareSecond"_s, tr("&Second:"));
  auto* compare = new QPushButton(tr("Co&mpare"), head_);
  compare->setObjectName(u"compareStart"_s);
  compare->setToolTip(tr("Lists every note and item that the two databases differ in"));
  connect(compare, &QPushButton::clicked, this, &CompareWindow::compareAsked);
  layout->addWidget(compare);
  return head_;
}

QWidget* CompareWindow::makeTables() {
  found_ = new DifferenceModel(this);
  pairs_ = new ItemPairModel(workspace_->regional(), this);
  differences_ = new QTableView(this);
  differences_->setObjectName(u"compareDifferences"_s);
  differences_->setToolTip(
      tr("The items of the current note stand below; Enter opens it in the client window"));
  prepareTable(*differences_);
  differences_->setModel(found_);
  differences_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  // What is left holds a whole UNID.
  differences_->setColumnWidth(DifferenceModel::Kind, 130);
  differences_->setColumnWidth(DifferenceModel::Title, 240);
  differences_->setColumnWidth(DifferenceModel::Items, 180);
  differences_->setColumnWidth(DifferenceModel::FirstId, 80);
  differences_->setColumnWidth(DifferenceModel::SecondId, 80);
  differences_->horizontalHeader()->setStretchLastSection(true);
  connect(differences_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) { showRow(current.row()); });
  connect(differences_, &QTableView::activated, this, [this](const QModelIndex& index) {
    const NoteDifference& note = found_->difference(index.row());
    const bool inFirst = note.first.id.value() != 0;
    Q_EMIT documentAsked(inFirst ? firstSide_.place : secondSide_.place,
                         inFirst ? note.first.id : note.second.id);
  });
  items_ = new QTableView(this);
  items_->setObjectName(u"compareItems"_s);
  items_->setToolTip(tr("-: only in the first, +: only in the second, ~: changed"));
  prepareTable(*items_);
  items_->setModel(pairs_);
  items_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  items_->setColumnWidth(ItemPairModel::Name, 190);
  items_->horizontalHeader()->setSectionResizeMode(ItemPairModel::First, QHeaderView::Stretch);
  items_->horizontalHeader()->setSectionResizeMode(ItemPairModel::Second, QHeaderView::Stretch);
  connect(items_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
          [this](const QModelIndex& current) { showValues(current.row()); });
  firstValue_ = readingBox(u"compareFirstValue"_s, this);
  secondValue_ = readingBox(u"compareSecondValue"_s, this);
  auto* values = new QSplitter(Qt::Horizontal, this);
  values->addWidget(labelled(tr("Value in the fi&rst:"), firstValue_));
  values->addWidget(labelled(tr("Value in the s&econd:"), secondValue_));
  differencePane_ = labelled(tr("&Differences:"), differences_);
  auto* panes = new QSplitter(Qt::Vertical, this);
  panes->addWidget(differencePane_);
  panes->addWidget(labelled(tr("&Items:"), items_));
  panes->addWidget(values);
  panes->setSizes({260, 220, 140});
  panes->setChildrenCollapsible(false);
  return panes;
}

QWidget* CompareWindow::makeFoot() {
  auto* foot = new QWidget(this);
  auto* layout = new QHBoxLayout(foot);
  layout->setContentsMargins(0, 0, 0, 0);
  summary_ = new QLabel(foot);
  summary_->setObjectName(u"compareSummary"_s);
  summary_->setTextFormat(Qt::PlainText);
  layout->addWidget(summary_, 1);
  const auto addButton = [&](const QString& name, const QString& text, const QString& tip) {
    auto* button = new QPushButton(text, foot);
    button->setObjectName(name);
    button->setToolTip(tip);
    button->setAutoDefault(false);
    layout->addWidget(button);
    return button;
  };
  connect(
      addButton(u"compareCsv"_s, tr("&CSV..."), tr("Writes the list that the keyboard was in to a CSV file")),
      &QPushButton::clicked, this, [this] { Q_EMIT csvAsked(currentTable()); });
  connect(
      addButton(u"compareCopy"_s, tr("C&opy"), tr("Puts that list, or its marked rows, on the clipboard")),
      &QPushButton::clicked, this, [this] { Q_EMIT copyAsked(currentTable()); });
  return foot;
}

// Buttons take the keyboard, so the one that shows a current row last is meant.
QAbstractItemView* CompareWindow::currentTable() const {
  return differencePane_->isVisible() && !items_->selectionModel()->hasSelection() ? differences_ : items_;
}

void CompareWindow::offer(const std::optional<DatabasePlace>& first) {
  setWindowTitle(tr("Compare databases"));
  head_->show();
  differencePane_->show();
  places_ = allDatabases(*workspace_);
  for (QComboBox* box : {first_, second_}) {
    box->clear();
    for (const DatabasePlace& place : std::as_const(places_)) box->addItem(labelOf(place));
  }
  const qsizetype place = first ? places_.indexOf(*first) : 0;
  first_->setCurrentIndex(int(qMax<qsizetype>(0, place)));
  second_->setCurrentIndex(int(likelyOther(*workspace_, places_, place)));
  summary_->clear();
  found_->show({});
  pairs_->show({}, {}, {});
}

std::optional<DatabasePlace> CompareWindow::chosen(const QComboBox& box) const {
  const int index = box.currentIndex();
  return index >= 0 && index < places_.size() ? std::optional(places_[index]) : std::nullopt;
}

void CompareWindow::showDifferences(const Side& first, const Side& second, QVector<NoteDifference> found,
                                    bool finished) {
  firstSide_ = first;
  secondSide_ = second;
  pairs_->setTitles(labelOf(first.place), labelOf(second.place));
  pairs_->show({}, {}, {});
  qsizetype onlyFirst = 0, onlySecond = 0;
  for (const NoteDifference& note : std::as_const(found)) {
    onlyFirst += note.kind == Difference::OnlyInFirst;
    onlySecond += note.kind == Difference::OnlyInSecond;
  }
  QString summary = found.isEmpty() && finished
                        ? tr("The two databases hold the same")
                        : tr("%1 only in the first, %2 only in the second, %3 changed")
                              .arg(onlyFirst)
                              .arg(onlySecond)
                              .arg(found.size() - onlyFirst - onlySecond);
  if (!finished) summary += tr("; the comparison was cancelled");
  summary_->setText(summary);
  found_->show(std::move(found));
  if (found_->rowCount() > 0) differences_->setCurrentIndex(found_->index(0, 0));
  differences_->setFocus();
}

void CompareWindow::showDocuments(const Side& first, const Side& second) {
  Note notes[2];
  const Side* sides[] = {&first, &second};
  for (int i = 0; i < 2; ++i)
    if (!sides[i]->database->notes().read(sides[i]->note, notes[i]))
      throw RuntimeError(
          enginefault::UnknownNote,
          tr("%1: there is no note %2 any more").arg(sides[i]->database->path(), noteIdText(sides[i]->note)));
  firstSide_ = first;
  secondSide_ = second;
  setWindowTitle(tr("Compare documents"));
  head_->hide();
  differencePane_->hide();
  pairs_->setTitles(tr("Note %1").arg(noteIdText(first.note)), tr("Note %1").arg(noteIdText(second.note)));
  showPairs(notes[0], notes[1]);
  const int differing = pairs_->differing();
  summary_->setText(differing == 0 ? tr("The two documents hold the same items")
                                   : tr("%1 of %2 items differ").arg(differing).arg(pairs_->rowCount()));
  items_->setFocus();
}

// What one of the databases lacks is an empty side.
void CompareWindow::showRow(int row) {
  if (row < 0 || row >= found_->rowCount()) return;
  const NoteDifference& difference = found_->difference(row);
  try {
    Note first, second;
    if (difference.first.id) firstSide_.database->notes().read(difference.first.id, first);
    if (difference.second.id) secondSide_.database->notes().read(difference.second.id, second);
    showPairs(first, second);
  } catch (const RuntimeError& error) {
    tell(error.description());
  }
}

void CompareWindow::showPairs(const Note& first, const Note& second) {
  pairs_->show(pairItems(*firstSide_.database, first, *secondSide_.database, second), first, second);
  showValues(-1);
}

void CompareWindow::showValues(int row) {
  const auto value = [&](int column) { return pairs_->index(row, column).data(kWholeText).toString(); };
  firstValue_->setText(row < 0 ? QString() : value(ItemPairModel::First));
  secondValue_->setText(row < 0 ? QString() : value(ItemPairModel::Second));
}

}  // namespace lens
