// What the windows keep between two starts: places, sizes, widths of columns, what was open last. One file
// for all of them, of the user's own.
#pragma once

#include <QObject>
#include <QSettings>
#include <QTimer>
#include <QVariant>
#include <QWidget>
#include <memory>

namespace lens {

class KeptSettings {
 public:
  // Without a file nothing is kept. A file that cannot be read holds nothing; one that cannot be written
  // keeps nothing, in silence: the program works without it.
  explicit KeptSettings(const QString& file = {});

  // Invalid where nothing is kept under the key, groups parted by "/".
  QVariant value(const QString& key) const;
  // Is in the file when it returns, whole or not at all. An invalid value removes the key.
  void set(const QString& key, const QVariant& value);

 private:
  std::unique_ptr<QSettings> file_;
};

// Keeps place and size of a window from now on, and whether it is maximised.
class KeptPlace : public QObject {
  Q_OBJECT

 public:
  // The window owns it; the settings live longer than the window.
  KeptPlace(QWidget& window, KeptSettings& settings, const QString& key);

  // Puts the window where it was, as far as the screens of today have room for it. False where no place is
  // kept.
  bool restore();

 private:
  bool eventFilter(QObject* window, QEvent* event) override;
  void save();

  QWidget& window_;
  KeptSettings& settings_;
  const QString key_;
  QTimer later_;  // runs while the window is being moved
};

}  // namespace lens
