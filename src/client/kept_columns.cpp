#include "client/kept_columns.h"

#include <QCryptographicHash>
#include <QHeaderView>

#include "notes/literals.h"

namespace lens {
namespace {

constexpr int kColumnsQuietMs = 250;
constexpr int kNarrowest = 10, kWidest = 10'000;  // pixels; what lies outside was not written by us
constexpr qsizetype kTitleDigits = 12;

}  // namespace

KeptColumns::KeptColumns(QTableView& table, KeptSettings& settings)
    : QObject(&table), table_(table), settings_(settings) {
  restore_.setSingleShot(true);
  connect(&restore_, &QTimer::timeout, this, &KeptColumns::restore);
  save_.setSingleShot(true);
  save_.setInterval(kColumnsQuietMs);
  connect(&save_, &QTimer::timeout, this, &KeptColumns::save);
  QHeaderView* header = table.horizontalHeader();
  connect(header, &QHeaderView::sectionCountChanged, this, [this] {
    watchModel();
    columnsCome();
  });
  connect(header, &QHeaderView::sectionResized, this, [this] {
    if (!shown_.isEmpty()) save_.start();
  });
  watchModel();
  restore();
}

void KeptColumns::watchModel() {
  if (model_ == table_.horizontalHeader()->model()) return;
  if (model_) disconnect(model_, nullptr, this, nullptr);
  model_ = table_.horizontalHeader()->model();  // the table itself gets its model later
  if (model_) connect(model_, &QAbstractItemModel::modelReset, this, &KeptColumns::columnsCome);
}

// What is resized until then is not the user's doing.
void KeptColumns::columnsCome() {
  if (save_.isActive()) save();
  shown_.clear();
  restore_.start(0);
}

// A column that takes what is left of the table has no width of its own.
void KeptColumns::restore() {
  const QString key = keyOfColumns();
  if (key.isEmpty()) return;
  QHeaderView& header = *table_.horizontalHeader();
  const QVariantList widths = settings_.value(key).toList();
  for (int column = 0; widths.size() == header.count() && column < header.count(); ++column) {
    const int width = widths[column].toInt();
    if (width >= kNarrowest && width <= kWidest &&
        header.sectionResizeMode(column) == QHeaderView::Interactive)
      header.resizeSection(column, width);
  }
  shown_ = key;
}

void KeptColumns::save() {
  save_.stop();
  if (shown_.isEmpty()) return;
  const QHeaderView& header = *table_.horizontalHeader();
  QVariantList widths;
  for (int column = 0; column < header.count(); ++column) widths += header.sectionSize(column);
  settings_.set(shown_, widths);
}

QString KeptColumns::keyOfColumns() const {
  if (!model_ || model_->columnCount() == 0) return {};
  QCryptographicHash titles(QCryptographicHash::Sha256);
  for (int column = 0; column < model_->columnCount(); ++column) {
    titles.addData(model_->headerData(column, Qt::Horizontal).toString().toUtf8());
    titles.addData(QByteArrayView("\n"));
  }
  return u"columns/"_s + table_.objectName() + u'/' +
         QString::fromLatin1(titles.result().toHex().first(kTitleDigits));
}

}  // namespace lens
