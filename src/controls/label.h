// A line of text on a window. Its text is shown as it is, never as markup.
#pragma once

#include <QLabel>

#include "controls/event.h"

namespace lens {

// A caption with an ampersand passes its access key on to the label's buddy. In a place that is too narrow
// for it the text is drawn narrower, by up to a quarter, before its end is cut off.
class Label : public QLabel {
  Q_OBJECT
  Q_PROPERTY(bool link READ isLink WRITE setLink)

 public:
  explicit Label(QWidget* parent = nullptr);

  Event<> click;
  Event<> dblClick;
  void raiseClick() const { click.raise(); }
  void raiseDblClick() const { dblClick.raise(); }

  // Looks like a link: blue, underlined, with a pointing hand.
  bool isLink() const { return link_; }
  void setLink(bool link);

 protected:
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void giveColours();

  bool link_ = false;
};

}  // namespace lens
