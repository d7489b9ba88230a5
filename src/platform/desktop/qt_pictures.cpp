#include "platform/desktop/qt_pictures.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <algorithm>

namespace skv {

namespace {

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

}  // namespace

Result<Pixels> QtPictureReader::read(std::string_view path, int longestSide) const {
  const auto place = files_.nativePath(std::string(path));
  if (!place.ok()) return place.outcome();
  QImageReader reader(QFile::decodeName(place.value().c_str()));
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  if (const QSize size = reader.size();
      longestSide > 0 && (size.width() > longestSide || size.height() > longestSide))
    reader.setScaledSize(size.scaled(longestSide, longestSide, Qt::KeepAspectRatio));
  const QImage image = reader.read();
  if (image.isNull()) return Outcome::failure(err::invalidPicture, std::string(path));
  return pixelsOf(image);
}

Result<Pixels> QtClipboard::picture() {
  const QImage image = QGuiApplication::clipboard()->image();
  if (image.isNull()) return Outcome::failure(err::invalidClipboardFormat, "");
  return pixelsOf(image);
}

Outcome QtClipboard::putPicture(const Pixels& picture) {
  QGuiApplication::clipboard()->setImage(QImage(picture.rows.data(), picture.width, picture.height,
                                                static_cast<qsizetype>(picture.rowBytes()),
                                                QImage::Format_BGR888)
                                             .copy());
  return {};
}

}  // namespace skv
