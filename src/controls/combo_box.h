// A text with a list of rows to choose from. Rows and text are separate things: neither changes the
// other, except when the user picks a row.
#pragma once

#include <QComboBox>

#include "controls/event.h"

namespace lens {

class ComboBox : public QComboBox {
  Q_OBJECT
  Q_PROPERTY(bool editable READ isEditable WRITE setEditable)

 public:
  explicit ComboBox(QWidget* parent = nullptr);

  // Runs only when the user picks a row by mouse or arrow key.
  Event<> click;
  void raiseClick() const { click.raise(); }
  // The mouse's double click on the text or, in a box without free text, on the box.
  Event<> dblClick;
  // Runs when the text of an editable box has become another one.
  Event<> change;
  // As in TextBox.
  Event<int&> keyPress;
  Event<int, int> keyDown;

  // Free text: nothing is completed, corrected or added to the rows.
  void setEditable(bool editable);

  QString text() const { return currentText(); }
  // A box without free text takes only texts of its rows; another text leaves it without a row.
  void setText(const QString& text);

  void addItem(const QString& text);
  // Takes away the rows; the text of an editable box stays.
  void clearRows();
  // Would take away rows and text at once.
  void clear() = delete;
  int listCount() const { return count(); }
  // Empty outside of the rows.
  QString list(int row) const { return itemText(row); }
  int listIndex() const { return currentIndex(); }

  void showPopup() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void keepText(const QString& text);
  void showBeginning();
  bool takeChange();

  QString lastText_;
  bool atWork_ = false;
  bool searching_ = false;
};

}  // namespace lens
