#include "controls/status_bar.h"

#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>

#include "controls/look.h"
#include "notes/runtime_error.h"

namespace lens {
namespace {

struct BarColours {
  QRgb line, text, disabledText;
};
constexpr BarColours kOnLight = {0xFFC9C98F, 0xFF3B3B22, 0xFFA3A36F};
constexpr BarColours kOnDark = {0xFF5C5B40, 0xFFEDECD2, 0xFF8E8D72};
constexpr int kPanelTextLeft = 8;

}  // namespace

QStringList StatusBar::panels() const {
  QStringList keys;
  for (const Panel& panel : panels_) keys += panel.key;
  return keys;
}

void StatusBar::setDesignWidth(int pixels) {
  designWidth_ = qMax(1, pixels);
  update();
}

void StatusBar::addPanel(const QString& key, int left, int width) {
  panels_.push_back({key, QString(), left, width, true});
  update();
}

bool StatusBar::hasPanel(const QString& key) const {
  return std::any_of(panels_.begin(), panels_.end(), [&](const Panel& panel) { return panel.key == key; });
}

void StatusBar::setPanelText(const QString& key, const QString& text) {
  const std::size_t place = indexOf(key);
  panels_[place].text = text;
  update(panelRect(key));
  if (!QAccessible::isActive()) return;
  QAccessibleEvent changed(this, QAccessible::NameChanged);
  changed.setChild(int(place));
  QAccessible::updateAccessibility(&changed);
}

void StatusBar::setPanelEnabled(const QString& key, bool enabled) {
  panels_[indexOf(key)].enabled = enabled;
  update(panelRect(key));
}

void StatusBar::setBackground(const QColor& colour) {
  background_ = colour;
  update();
}

void StatusBar::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  for (const Panel& panel : panels_)
    if (placeOf(panel).contains(event->position().toPoint())) {
      const QString key = panel.key;
      return panelClick.fire(key);
    }
}

void StatusBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const BarColours& colours = isDark(palette()) ? kOnDark : kOnLight;
  painter.fillRect(rect(), colour::shownGround(background_, palette()));
  painter.fillRect(0, 0, width(), 1, QColor(colours.line));
  for (const Panel& panel : panels_) {
    const QRect place = placeOf(panel);
    if (panel.left > 0) painter.fillRect(place.left(), 3, 1, height() - 5, QColor(colours.line));
    painter.setPen(QColor(panel.enabled ? colours.text : colours.disabledText));
    const QRect textPlace = place.adjusted(kPanelTextLeft, 1, -2, 0);
    const QString shown = fontMetrics().elidedText(panel.text, Qt::ElideRight, textPlace.width());
    painter.drawText(textPlace, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
  }
}

std::size_t StatusBar::indexOf(const QString& key) const {
  for (std::size_t place = 0; place < panels_.size(); ++place)
    if (panels_[place].key == key) return place;
  throw RuntimeError(err::SubscriptOutOfRange);
}

QRect StatusBar::placeOf(const Panel& panel) const {
  const auto scaled = [this](int place) { return int(qint64(place) * width() / designWidth_); };
  const int left = scaled(panel.left);
  return QRect(left, 0, scaled(panel.left + panel.width) - left, height());
}

}  // namespace lens
