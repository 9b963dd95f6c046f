// The page that shows an open document: its subject, its items, and the value of one of them. It
// changes nothing.
#pragma once

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableView>
#include <QWidget>

#include "client/item_model.h"

namespace lens {

class DocumentReader : public QWidget {
  Q_OBJECT

 public:
  explicit DocumentReader(QWidget* parent = nullptr);

  // Shows another note; the same note read anew keeps the row that is current.
  void show(Note note, const Regional& regional);
  void clear();
  NoteId noteId() const { return model_ ? model_->note().header.id : NoteId(); }
  void focusItems() { items_->setFocus(); }
  // The place of the current item in the note; -1 without one.
  int currentItem() const { return items_->currentIndex().row(); }
  // Offers the action in the menu of the items, too.
  void addItemAction(QAction& action);

 Q_SIGNALS:
  // The Close button.
  void closeRequested();

 private:
  QLayout* makeHead();
  QWidget* makeItems();
  QWidget* makeContent();
  void showItem(int row);

  QLabel* subject_;
  QLabel* facts_;
  QPushButton* close_;
  QTableView* items_;
  QPlainTextEdit* content_;
  ItemModel* model_ = nullptr;
};

}  // namespace lens
