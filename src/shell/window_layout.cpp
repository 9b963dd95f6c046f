#include "shell/window_layout.h"

#include <cmath>

#include "controls/list_box.h"
#include "controls/rich_text_box.h"
#include "notes/literals.h"
#include "shell/error_modes.h"

namespace lens {
namespace {

constexpr int kBasePoints = 8;
constexpr int kBaseRowHeight = 16;

int pixels(double twips) {
  return int(std::nearbyint(twips / WindowLayout::kTwipsPerPixel));
}

void setFontSize(QWidget& control, int points) {
  QFont font = control.font();
  font.setPointSize(qMax(points, 1));  // 0 stands for the smallest size
  control.setFont(font);
}

// All of the content box in one plain format; its own colours and those of the search are gone then. An empty
// box keeps its font.
void formatAllText(RichTextBox& box, int points) {
  if (box.text().isEmpty()) return;
  setFontSize(box, points);
  box.setSelStart(0);
  box.setSelLength(int(box.text().size()));
  box.setSelFontName(u"Consolas"_s);
  box.setSelFontSize(qMax(points, 1));
  box.setSelBold(false);
  box.setSelItalic(false);
  box.setSelUnderline(false);
  box.setSelStrikeThru(false);
  box.setSelColor(0);
}

}  // namespace

QVector<QWidget*> layoutControls(const QWidget& window) {
  QVector<QWidget*> controls;
  for (QWidget* child : window.findChildren<QWidget*>())
    if (child->property("tabIndex").isValid() && child->window() == window.window())
      controls.push_back(child);
  return controls;
}

void WindowLayout::GetLocation() {
  records_.clear();
  Continue step;
  for (QWidget* control : layoutControls(window_)) {
    step([&] {
      const QRect place = control->geometry();
      records_.push_back({Int16(control->property("tabIndex").toInt()), control->objectName(),
                          Int16(place.left() * kTwipsPerPixel), Int16(place.top() * kTwipsPerPixel),
                          Int16(place.width() * kTwipsPerPixel), Int16(place.height() * kTwipsPerPixel)});
    });
  }
  // The text names Form1 for every window; users of both windows know it so.
  trapped(host_, {u"GetLocation"_s}, [&] {
    recordedWidth_ = Int16(window_.width() * kTwipsPerPixel);
    recordedHeight_ = Int16(window_.height() * kTwipsPerPixel);
  });
}

void WindowLayout::forgetLocation() {
  records_.clear();
  recordedWidth_ = recordedHeight_ = Int16();
}

void WindowLayout::fitRecordToHeight() {
  const int given = window_.height() * kTwipsPerPixel;
  if (records_.isEmpty() || given >= recordedHeight_) return;
  const double ratio = double(given) / recordedHeight_;
  const auto fitted = [&](Int16 twips) { return Int16(qRound(double(twips) * ratio)); };
  for (Record& record : records_) {
    record.Top = fitted(record.Top);
    record.height = fitted(record.height);
  }
  recordedHeight_ = Int16(given);
}

void WindowLayout::takeRatios() {
  const bool minimised = window_.isMinimized();
  const auto ratio = [&](int present, int recorded) {
    return recorded == 0 || minimised ? 0.0 : double(present) * kTwipsPerPixel / recorded;
  };
  heightRatio_ = ratio(window_.height(), recordedHeight_);
  widthRatio_ = ratio(window_.width(), recordedWidth_);
}

void WindowLayout::ResizeControls() {
  if (records_.isEmpty()) return;
  takeRatios();
  for (QWidget* control : layoutControls(window_)) place(*control);
}

void WindowLayout::ResizeOneControl(const QString& name) {
  if (records_.isEmpty()) return;
  takeRatios();
  for (QWidget* control : layoutControls(window_))
    if (control->objectName() == name) place(*control);
}

void WindowLayout::place(QWidget& control) const {
  const int tabIndex = control.property("tabIndex").toInt();
  for (const Record& record : records_) {
    if (record.TabIndex != tabIndex) continue;
    control.setGeometry(pixels(record.Left * widthRatio_), pixels(record.Top * heightRatio_),
                        pixels(record.width * widthRatio_), pixels(record.height * heightRatio_));
    break;
  }
  const int points = ScaledFontSize();
  if (control.objectName() == u"txtFieldContent") {
    formatAllText(static_cast<RichTextBox&>(control), points);
    return;
  }
  setFontSize(control, points);
  if (auto* list = qobject_cast<ListBox*>(&control))
    list->setRowHeight(qMax(int(kBaseRowHeight * heightRatio_), 1));
}

int WindowLayout::ScaledFontSize() const {
  if (recordedWidth_ == 0 || recordedHeight_ == 0) return 0;
  if (int(heightRatio_) <= 0) return 0;
  return int(kBasePoints * heightRatio_);
}

void LinesBackFromChar(const RichTextBox& box, int targetLine, int position, int& out) {
  if (targetLine == 0) {
    out = position;
    return;
  }
  // A line that is not reached begins behind the position itself.
  out = box.lineFromChar(position) < targetLine ? -1 : position - box.lineStart(targetLine);
}

}  // namespace lens
