// Proportional layout: a window records its controls once after load and places them anew from that
// record at each resize, so rounding never adds up. Font size follows the height alone.
#pragma once

#include <QString>
#include <QVector>
#include <QWidget>

#include "host/host.h"
#include "notes/numbers.h"

namespace lens {

// The controls that a window places: those with a tab index, without those of windows that it owns.
QVector<QWidget*> layoutControls(const QWidget& window);

class WindowLayout {
 public:
  // Twips in one device-independent pixel.
  static constexpr int kTwipsPerPixel = 15;

  WindowLayout(QWidget& window, Host& host) : window_(window), host_(host) {}

  // Records place and size of each control that has a tab index, 16 bits wide in twips; a control
  // that does not fit is left out. An overflow of the window's own size shows the error box.
  void GetLocation();
  // Drops the record, so that a load that ends early leaves none behind.
  void forgetLocation();
  // The record as if the window had been designed as high as it is now: a desktop that gave less than was
  // asked for must not bring up a window below its design height, whose text is the smallest there is. Does
  // nothing in a window that is as high as its record or higher.
  void fitRecordToHeight();
  // Places all controls for the window's present size. Without a record nothing happens.
  void ResizeControls();
  void ResizeOneControl(const QString& name);
  int recordedHeight() const { return recordedHeight_; }  // twips
  // Points for the present ratios; 0 below the design height, which means the smallest font.
  int ScaledFontSize() const;

 private:
  struct Record {
    Int16 TabIndex;
    QString Name;
    Int16 Left, Top, width, height;  // twips, relative to the control's frame
  };
  void takeRatios();
  void place(QWidget& control) const;

  QWidget& window_;
  Host& host_;
  QVector<Record> records_;
  Int16 recordedWidth_, recordedHeight_;
  double widthRatio_ = 0, heightRatio_ = 0;
};

// Steps back in a rich text box: how far a position is from the last place on the line before the
// target line, which is the column that the status bar shows.
class RichTextBox;
void LinesBackFromChar(const RichTextBox& box, int targetLine, int position, int& out);

}  // namespace lens
