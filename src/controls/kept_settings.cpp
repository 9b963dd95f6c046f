#include "controls/kept_settings.h"

#include <QEvent>

namespace lens {
namespace {

constexpr int kPlaceQuietMs = 250;

}  // namespace

KeptSettings::KeptSettings(const QString& file) {
  if (!file.isEmpty()) file_ = std::make_unique<QSettings>(file, QSettings::IniFormat);
}

QVariant KeptSettings::value(const QString& key) const {
  return file_ ? file_->value(key) : QVariant();
}

void KeptSettings::set(const QString& key, const QVariant& value) {
  if (!file_ || file_->value(key) == value) return;
  if (value.isValid())
    file_->setValue(key, value);
  else
    file_->remove(key);
  file_->sync();
}

KeptPlace::KeptPlace(QWidget& window, KeptSettings& settings, const QString& key)
    : QObject(&window), window_(window), settings_(settings), key_(key) {
  later_.setSingleShot(true);
  later_.setInterval(kPlaceQuietMs);
  connect(&later_, &QTimer::timeout, this, &KeptPlace::save);
  window.installEventFilter(this);
}

bool KeptPlace::restore() {
  const QByteArray place = settings_.value(key_).toByteArray();
  return !place.isEmpty() && window_.restoreGeometry(place);
}

bool KeptPlace::eventFilter(QObject* window, QEvent* event) {
  switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
      if (window_.isVisible()) later_.start();
      break;
    case QEvent::Close:
    case QEvent::Hide:
      if (later_.isActive()) save();
      break;
    default:
      break;
  }
  return QObject::eventFilter(window, event);
}

void KeptPlace::save() {
  later_.stop();
  settings_.set(key_, window_.saveGeometry());
}

}  // namespace lens
