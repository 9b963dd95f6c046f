#include "controls/combo_box.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScreen>
#include <QScrollBar>
#include <QWheelEvent>
#include <limits>

#include "controls/keys.h"

namespace lens {

ComboBox::ComboBox(QWidget* parent) : QComboBox(parent) {
  setInsertPolicy(NoInsert);
  setMaxCount(std::numeric_limits<int>::max());
  connect(this, &QComboBox::activated, this, [this] {
    showBeginning();
    if (!searching_) click.fire();
  });
}

void ComboBox::setEditable(bool editable) {
  QComboBox::setEditable(editable);
  setInsertPolicy(NoInsert);
  if (!editable) return;
  setCompleter(nullptr);
  lineEdit()->setMaxLength(std::numeric_limits<int>::max());
  lineEdit()->installEventFilter(this);
  // Both would make a typed text that equals a row count as a picked row.
  disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
  disconnect(lineEdit(), &QLineEdit::returnPressed, this, nullptr);
  connect(lineEdit(), &QLineEdit::textChanged, this, [this] {
    if (takeChange()) change.fire();
  });
}

void ComboBox::setText(const QString& text) {
  if (!isEditable()) return setCurrentIndex(findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive));
  keepText(text);
  showBeginning();
  if (takeChange()) change.raise();
}

void ComboBox::addItem(const QString& text) {
  const QString kept = currentText();
  const int row = currentIndex();
  QScopedValueRollback<bool> working(atWork_, true);
  QComboBox::addItem(text);
  // The first row would be taken as the chosen one.
  if (row == -1 && currentIndex() != -1) keepText(kept);
}

void ComboBox::clearRows() {
  const QString kept = currentText();
  QScopedValueRollback<bool> working(atWork_, true);
  QComboBox::clear();
  if (isEditable()) keepText(kept);
}

void ComboBox::keepText(const QString& text) {
  QScopedValueRollback<bool> working(atWork_, true);
  setCurrentIndex(-1);
  if (isEditable()) setEditText(text);
}

// A long text says more with its first words than with its last.
void ComboBox::showBeginning() {
  if (isEditable()) lineEdit()->home(false);
}

// As wide as its rows, which are often longer than the box.
void ComboBox::showPopup() {
  const int frame = view()->verticalScrollBar()->sizeHint().width() + 2 * view()->frameWidth();
  const int widest = screen()->availableGeometry().width();
  view()->setMinimumWidth(qMin(view()->sizeHintForColumn(0) + frame, widest));
  QComboBox::showPopup();
}

// True when the text has become another one since it was last asked.
bool ComboBox::takeChange() {
  if (atWork_ || currentText() == lastText_) return false;
  lastText_ = currentText();
  return true;
}

void ComboBox::keyPressEvent(QKeyEvent* event) {
  QString replacement;
  const TypedKey meaning = takeKey(*event, keyDown, keyPress, replacement);
  if (meaning == TypedKey::Native) {
    // A row found by its first letters is shown but is no picked row.
    QScopedValueRollback<bool> byLetters(searching_, !typedText(*event).isEmpty());
    return QComboBox::keyPressEvent(event);
  }
  if (meaning == TypedKey::InsertText && isEditable()) lineEdit()->insert(replacement);
  event->setAccepted(meaning != TypedKey::PassOn);
}

void ComboBox::inputMethodEvent(QInputMethodEvent* event) {
  offerInput(*event, keyPress, [this](QInputMethodEvent* offered) { QComboBox::inputMethodEvent(offered); });
}

void ComboBox::mouseDoubleClickEvent(QMouseEvent* event) {
  QComboBox::mouseDoubleClickEvent(event);
  if (event->button() == Qt::LeftButton) dblClick.fire();
}

// The text is a widget of its own.
bool ComboBox::eventFilter(QObject* watched, QEvent* event) {
  const bool twice = watched == lineEdit() && event->type() == QEvent::MouseButtonDblClick;
  if (!twice || !dblClick.isConnected()) return QComboBox::eventFilter(watched, event);
  static_cast<QLineEdit*>(watched)->selectAll();
  if (static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) dblClick.fire();
  return true;
}

// Rolling over a closed box would change its row unnoticed.
void ComboBox::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace lens
