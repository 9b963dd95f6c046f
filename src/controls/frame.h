// A titled frame around controls. The title stands in the upper line, 8 pixels from the left.
#pragma once

#include <QGroupBox>

namespace lens {

class Frame : public QGroupBox {
  Q_OBJECT

 public:
  explicit Frame(QWidget* parent = nullptr) : QGroupBox(parent) {}

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace lens
