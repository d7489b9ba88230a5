#include "platform/desktop/qt_pixels.h"

#include <algorithm>

namespace skv {

namespace {

bool alphaIsAllZero(const QImage& image) {
  for (int y = 0; y < image.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    if (std::any_of(row, row + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 0; }))
      return false;
  }
  return true;
}

int onWhite(int colour, int alpha) { return (colour * alpha + 255 * (255 - alpha) + 127) / 255; }

}  // namespace

QImage flattened(QImage image) {
  if (!image.hasAlphaChannel()) return image.convertToFormat(QImage::Format_RGB32);
  image = std::move(image).convertToFormat(QImage::Format_ARGB32);
  // Programs that don't know of transparency leave its bits 0.
  const bool withoutMeaning = alphaIsAllZero(image);
  for (int y = 0; y < image.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    std::transform(row, row + image.width(), row, [withoutMeaning](QRgb pixel) {
      const int alpha = withoutMeaning ? 255 : qAlpha(pixel);
      return qRgb(onWhite(qRed(pixel), alpha), onWhite(qGreen(pixel), alpha),
                  onWhite(qBlue(pixel), alpha));
    });
  }
  image.reinterpretAsFormat(QImage::Format_RGB32);
  return image;
}

Pixels pixelsOf(const QImage& picture) {
  const QImage image = flattened(picture);
  Pixels pixels{image.width(), image.height(), {}};
  pixels.rows.resize(pixels.rowBytes() * static_cast<std::size_t>(image.height()));
  for (int y = 0; y < image.height(); ++y) {
    const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    std::uint8_t* to = pixels.rows.data() + pixels.rowBytes() * static_cast<std::size_t>(y);
    for (int x = 0; x < image.width(); ++x, to += 3) {
      to[0] = static_cast<std::uint8_t>(qBlue(from[x]));
      to[1] = static_cast<std::uint8_t>(qGreen(from[x]));
      to[2] = static_cast<std::uint8_t>(qRed(from[x]));
    }
  }
  return pixels;
}

}  // namespace skv
