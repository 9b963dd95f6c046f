// The yellow line at the foot of a window, with named panels.
#pragma once

#include <QColor>
#include <QStringList>
#include <QWidget>

#include <vector>
#include "controls/event.h"

namespace lens {

class StatusBar : public QWidget {
  Q_OBJECT

 public:
  explicit StatusBar(QWidget* parent = nullptr) : QWidget(parent) {}

  // The width that the places of panels are given for; they grow and shrink with the bar.
  int designWidth() const { return designWidth_; }
  void setDesignWidth(int pixels);

  // Left and width in pixels of the design width.
  void addPanel(const QString& key, int left, int width);
  bool hasPanel(const QString& key) const;
  // In the order in which they were added.
  QStringList panels() const;

  // All of these raise 9 for an unknown key.
  QString panelText(const QString& key) const { return panels_[indexOf(key)].text; }
  void setPanelText(const QString& key, const QString& text);
  bool isPanelEnabled(const QString& key) const { return panels_[indexOf(key)].enabled; }
  // The text of a disabled panel is pale.
  void setPanelEnabled(const QString& key, bool enabled);
  // The present place of a panel on the bar.
  QRect panelRect(const QString& key) const { return placeOf(panels_[indexOf(key)]); }

  // A press of the left button on a panel, by its key.
  Event<const QString&> panelClick;

  // As it is on a light desktop; a dark one shows a deep colour of its hue.
  QColor background() const { return background_; }
  void setBackground(const QColor& colour);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;

 private:
  struct Panel {
    QString key;
    QString text;
    int left = 0;
    int width = 0;
    bool enabled = true;
  };
  std::size_t indexOf(const QString& key) const;
  QRect placeOf(const Panel& panel) const;

  std::vector<Panel> panels_;
  int designWidth_ = 1280;
  QColor background_{0xFF, 0xFF, 0xC0};
};

}  // namespace lens
