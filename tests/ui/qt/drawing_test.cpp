// What the style draws.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdlib>

#include "ui/qt/flat_drawing.h"

namespace skv::test {

namespace {

// A box on a ground of its own, by a painter that has whole pixels or, a hair off them, has not.
QImage boxed(QSize size, int ratio, bool wholePixels, const QColor& ground,
             const ui::qt::Border& border, qreal radius) {
  QImage image((size + QSize(4, 4)) * ratio, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::yellow);
  QPainter painter(&image);
  if (!wholePixels) painter.translate(0, 1e-9);
  drawBox(painter, QRect(QPoint(2, 2), size), ground, border, radius);
  return image;
}

int farthest(const QImage& a, const QImage& b) {
  int distance = 0;
  for (int y = 0; y < a.height(); ++y)
    for (int x = 0; x < a.width(); ++x) {
      const QColor one = a.pixelColor(x, y), other = b.pixelColor(x, y);
      distance =
          std::max({distance, std::abs(one.red() - other.red()),
                    std::abs(one.green() - other.green()), std::abs(one.blue() - other.blue())});
    }
  return distance;
}

}  // namespace

TEST(DrawingTest, ABoxOfPartsIsTheOneThatItsOutlineGives) {
  constexpr int notSeen = 3;
  for (const int ratio : {1, 2})
    for (const QColor& ground : {QColor(Qt::white), QColor(Qt::transparent)})
      for (const ui::qt::Border& border :
           {ui::qt::Border(QColor(Qt::darkBlue), 1), ui::qt::Border(QColor(Qt::darkBlue), 3),
            ui::qt::Border(Qt::transparent)})
        for (const qreal radius : {0.0, 3.0, 8.0})
          for (const QSize& size : {QSize(90, 40), QSize(24, 22), QSize(7, 5)})
            EXPECT_LE(farthest(boxed(size, ratio, true, ground, border, radius),
                               boxed(size, ratio, false, ground, border, radius)),
                      notSeen)
                << "ratio " << ratio << ", ground " << ground.alpha() << ", border "
                << border.colour.alpha() << " by " << border.width << ", radius " << radius << ", "
                << size.width() << " by " << size.height();
}

}  // namespace skv::test
