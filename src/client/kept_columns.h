// The widths that the user gave the columns of a table, kept for each set of columns that the table shows.
#pragma once

#include <QPointer>
#include <QTableView>
#include <QTimer>

#include "controls/kept_settings.h"

namespace lens {

class KeptColumns : public QObject {
  Q_OBJECT

 public:
  // The table owns it; the settings live longer. What is kept for the present columns is given to them.
  KeptColumns(QTableView& table, KeptSettings& settings);

 private:
  void watchModel();
  void columnsCome();
  void restore();
  void save();
  QString keyOfColumns() const;

  QTableView& table_;
  KeptSettings& settings_;
  QPointer<QAbstractItemModel> model_;
  QString shown_;   // the key of the columns that are laid out; "" while others come
  QTimer restore_;  // runs until those who laid out the new columns are done
  QTimer save_;     // runs while the user drags
};

}  // namespace lens
