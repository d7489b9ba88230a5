#include "platform/desktop/qt_pixels.h"

#include <algorithm>

namespace skv {

Pixels pixelsOf(const QImage& image) {
  const QImage plain = image.convertToFormat(QImage::Format_BGR888);
  Pixels pixels{plain.width(), plain.height(), {}};
  const std::size_t row = pixels.rowBytes();
  pixels.rows.resize(row * static_cast<std::size_t>(plain.height()));
  for (int y = 0; y < plain.height(); ++y)
    std::copy_n(plain.constScanLine(y),
                std::min<qsizetype>(plain.bytesPerLine(), static_cast<qsizetype>(row)),
                pixels.rows.data() + row * static_cast<std::size_t>(y));
  return pixels;
}

}  // namespace skv
