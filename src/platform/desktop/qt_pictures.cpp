#include "platform/desktop/qt_pictures.h"

#include <QFile>
#include <QImageReader>

#include "platform/desktop/qt_pixels.h"

namespace skv {

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

}  // namespace skv
