#include "client/compare_models.h"

#include <QApplication>
#include <algorithm>

#include "client/note_texts.h"
#include "client/shown_list.h"
#include "notes/literals.h"

namespace lens {
namespace {

constexpr qsizetype kShownOfAValue = 200;  // characters that a row can show
constexpr double kTint = 0.16;

// As the command for comparing prints it.
QChar markOf(Difference kind) {
  return kind == Difference::OnlyInFirst ? u'-' : kind == Difference::OnlyInSecond ? u'+' : u'~';
}

QString idOf(const NoteHeader& header) {
  return header.id ? noteIdText(header.id) : QString();
}

// The ground of what differs, on a light and on a dark one.
QColor tinted(const QPalette& palette) {
  const QColor base = palette.color(QPalette::Base),
               mark = palette.color(QPalette::Active, QPalette::Highlight);
  const auto mixed = [](int a, int b) { return int(a + (b - a) * kTint); };
  return QColor(mixed(base.red(), mark.red()), mixed(base.green(), mark.green()),
                mixed(base.blue(), mark.blue()));
}

}  // namespace

void DifferenceModel::show(QVector<NoteDifference> differences) {
  beginResetModel();
  differences_ = std::move(differences);
  endResetModel();
}

int DifferenceModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(differences_.size());
}

int DifferenceModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant DifferenceModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  switch (section) {
    case Kind:
      return tr("Difference");
    case Title:
      return tr("Title");
    case Items:
      return tr("Items");
    case FirstId:
      return tr("First ID");
    case SecondId:
      return tr("Second ID");
    default:
      return tr("UNID");
  }
}

QVariant DifferenceModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !index.isValid()) return {};
  const NoteDifference& note = differences_[index.row()];
  switch (index.column()) {
    case Kind:
      return note.kind == Difference::OnlyInFirst    ? tr("only in the first")
             : note.kind == Difference::OnlyInSecond ? tr("only in the second")
                                                     : tr("changed");
    case Title:
      return note.title.simplified();
    case Items: {
      QStringList names;
      if (note.otherClass) names += tr("(class)");
      if (note.otherParent) names += tr("(parent)");
      for (const ItemDifference& item : note.items) names += QString(markOf(item.kind) + item.name);
      return names.join(u", "_s);
    }
    case FirstId:
      return idOf(note.first);
    case SecondId:
      return idOf(note.second);
    default:
      return (note.first.id ? note.first : note.second).unid.text();
  }
}

void ItemPairModel::show(QVector<ItemPair> pairs, Note first, Note second) {
  beginResetModel();
  pairs_ = std::move(pairs);
  first_ = std::move(first);
  second_ = std::move(second);
  endResetModel();
}

void ItemPairModel::setTitles(const QString& first, const QString& second) {
  firstTitle_ = first;
  secondTitle_ = second;
  Q_EMIT headerDataChanged(Qt::Horizontal, First, Second);
}

int ItemPairModel::differing() const {
  return int(std::count_if(pairs_.begin(), pairs_.end(), [](const ItemPair& pair) { return !pair.same; }));
}

int ItemPairModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : int(pairs_.size());
}

int ItemPairModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant ItemPairModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return section == Name ? tr("Item") : section == First ? firstTitle_ : secondTitle_;
}

QString ItemPairModel::name(const ItemPair& pair) const {
  const QString name = pair.first >= 0 ? first_.items[pair.first].name : second_.items[pair.second].name;
  if (pair.same) return u"  "_s + name;
  const Difference kind = pair.second < 0  ? Difference::OnlyInFirst
                          : pair.first < 0 ? Difference::OnlyInSecond
                                           : Difference::Changed;
  return QString(markOf(kind)) + u' ' + name;
}

QString ItemPairModel::text(const Note& note, qsizetype place) const {
  if (place < 0) return {};
  const Item& item = note.items[place];
  try {
    return itemTypeName(item) + u": "_s + itemText(item, regional_);
  } catch (const RuntimeError& error) {
    return tr("(unreadable) %1").arg(error.description());
  }
}

QVariant ItemPairModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const ItemPair& pair = pairs_[index.row()];
  if (role == Qt::BackgroundRole) return pair.same ? QVariant() : tinted(QApplication::palette());
  if (role != Qt::DisplayRole && role != kWholeText) return {};
  if (index.column() == Name) return name(pair);
  const QString whole = index.column() == First ? text(first_, pair.first) : text(second_, pair.second);
  return role == kWholeText ? whole : whole.left(2 * kShownOfAValue).simplified().left(kShownOfAValue);
}

}  // namespace lens
