// The page that shows an open document: its subject, its items, and the value of one of them. It
// changes nothing.
#pragma once

#include <QLabel>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QWidget>

#include "client/item_model.h"
#include "client/list_table.h"
#include "controls/rich_text_box.h"
#include "embedded/search/query_hits.h"

namespace lens {

class DocumentReader : public QWidget {
  Q_OBJECT

 public:
  explicit DocumentReader(QWidget* parent = nullptr);

  // Shows another note; the same note read anew keeps the row that is current.
  void show(Note note, const Regional& regional);
  // Marks what a search found, in the items and their values, and goes to the first item that has some.
  void markHits(const QueryHits& hits);
  void clear();
  NoteId noteId() const { return model_ ? model_->note().header.id : NoteId(); }
  void focusItems() { items_->setFocus(); }
  // The place of the current item in the note; -1 without one.
  int currentItem() const;
  // Offers the action in the menu of the items, too.
  void addItemAction(QAction& action);

 Q_SIGNALS:
  // The Close button.
  void closeRequested();

 private:
  QLayout* makeHead();
  QWidget* makeItems();
  QWidget* makeContent();
  void makeModel(const Regional& regional);
  void goToItem(int row);
  void showItem(int row);
  void markPlaces(const QVector<TextPlace>& places);
  void colourPlaces(const QVector<TextPlace>& places);

  QLabel* subject_;
  QLabel* facts_;
  QPushButton* close_;
  ListTable* items_;
  RichTextBox* content_;
  QueryHits hits_;
  ItemModel* model_ = nullptr;
  QSortFilterProxyModel* ordered_ = nullptr;  // the items as they are shown
};

}  // namespace lens
