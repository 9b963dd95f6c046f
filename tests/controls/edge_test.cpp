// The edges of lists and of the content box at the scales that screens have.
#include <QImage>
#include <QPainter>
#include <set>

#include "control_test.h"
#include "controls/list_box.h"
#include "controls/look.h"
#include "controls/rich_text_box.h"
#include "notes/literals.h"

namespace lens {
namespace {

QImage shownAt(QWidget& window, double ratio) {
  QImage image(window.size() * ratio, QImage::Format_RGB32);
  image.setDevicePixelRatio(ratio);
  window.render(&image);
  return image;
}

// The smallest rectangle that holds all pixels of the colour.
QRect extentOf(const QImage& image, QRgb colour) {
  QRect extent;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (image.pixel(x, y) == colour) extent |= QRect(x, y, 1, 1);
  return extent;
}

std::set<QRgb> coloursIn(const QImage& image) {
  std::set<QRgb> colours;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) colours.insert(image.pixel(x, y));
  return colours;
}

// Every pixel is the window's, the box's or the edge's, and the edge is closed.
void expectWholeEdge(QWidget& window, double ratio, QRgb edge) {
  const QImage image = shownAt(window, ratio);
  for (QRgb colour : coloursIn(image))
    EXPECT_TRUE(colour == 0xFFEFEFEF || colour == 0xFFFFFFFF || colour == edge) << std::hex << colour;
  const QRect extent = extentOf(image, edge);
  for (int x = extent.left(); x <= extent.right(); ++x)
    ASSERT_TRUE(image.pixel(x, extent.top()) == edge && image.pixel(x, extent.bottom()) == edge) << x;
  for (int y = extent.top(); y <= extent.bottom(); ++y)
    ASSERT_TRUE(image.pixel(extent.left(), y) == edge && image.pixel(extent.right(), y) == edge) << y;
}

template <class Box>
void expectWholeEdges() {
  for (double ratio : {1.0, 1.25, 1.5, 1.75, 2.0}) {
    for (int at = 8; at < 12; ++at) {
      SCOPED_TRACE(testing::Message() << "ratio " << ratio << ", place " << at);
      QWidget window;
      window.resize(120, 90);
      Box box(&window);
      box.setGeometry(at, at + 1, 91 - at, 62 + at);
      box.setFocusPolicy(Qt::NoFocus);
      window.show();
      expectWholeEdge(window, ratio, colour::Border);
    }
  }
}

TEST(Edge, OfAListIsWholeAtEveryScale) {
  expectWholeEdges<ListBox>();
}

TEST(Edge, OfTheContentBoxIsWholeAtEveryScale) {
  expectWholeEdges<RichTextBox>();
}

TEST(Edge, TellsWhichBoxHasTheFocus) {
  QWidget window;
  window.resize(200, 90);
  ListBox list(&window);
  list.setGeometry(5, 5, 80, 80);
  RichTextBox box(&window);
  box.setGeometry(100, 5, 80, 80);
  showWithFocus(window);
  for (QWidget* widget : {static_cast<QWidget*>(&list), static_cast<QWidget*>(&box)}) {
    widget->setFocus();
    EXPECT_EQ(extentOf(shownAt(window, 1.5), colour::FocusBorder),
              QRect(QPoint(qRound(widget->x() * 1.5), 8), QSize(120, 120)));
  }
}

TEST(Edge, LeavesTheCornerBetweenTheBarsToTheWindow) {
  QWidget window;
  window.resize(120, 120);
  ListBox list(&window);
  list.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  list.setGeometry(5, 5, 100, 100);
  for (int row = 0; row < 50; ++row) list.addItem(u"row"_s);
  showWithFocus(window);
  list.setFocus();
  const QImage image = shownAt(window, 1);
  EXPECT_EQ(image.pixel(105 - 4, 105 - 4), 0xFFEFEFEF);
  EXPECT_EQ(image.pixel(105 - 1, 105 - 4), colour::FocusBorder);
}

}  // namespace
}  // namespace lens
