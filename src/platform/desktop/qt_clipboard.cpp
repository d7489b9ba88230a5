#include "platform/desktop/qt_clipboard.h"

#include <QBuffer>
#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QMimeData>
#include <new>

#include "platform/desktop/qt_pixels.h"

namespace skv {

namespace {

// What programs offer one picture as, those without loss first.
constexpr const char* pictureTypes[] = {"image/png",  "image/bmp", "image/x-bmp", "image/x-ms-bmp",
                                        "image/tiff", "image/gif", "image/webp",  "image/jpeg"};
// A program that does not answer is waited for by Qt, some seconds for each question. After this
// time it is asked no other.
constexpr qint64 longestWait = 4000;

Outcome tooLarge() { return Outcome::failure(err::invalidPicture, "more than 100 million pixels"); }

long long pixelCount(QSize size) {
  return static_cast<long long>(size.width()) * static_cast<long long>(size.height());
}

Result<QImage> decoded(QByteArray bytes) {
  QBuffer buffer(&bytes);
  QImageReader reader(&buffer);
  reader.setAutoTransform(true);
  if (pixelCount(reader.size()) > mostPixels) return tooLarge();
  QImage image = reader.read();
  if (image.isNull()) return Outcome::failure(err::invalidPicture);
  return image;
}

// What this program has put there itself.
Result<QImage> own(const QMimeData& data) {
  const auto image = qvariant_cast<QImage>(data.imageData());
  if (image.isNull()) return Outcome::failure(err::invalidClipboardFormat);
  if (pixelCount(image.size()) > mostPixels) return tooLarge();
  return image;
}

Result<QImage> offered(const QMimeData& data) {
  QElapsedTimer waited;
  waited.start();
  const QStringList offers = data.formats();
  if (offers == QStringList{QStringLiteral("application/x-qt-image")}) return own(data);
  Outcome why = Outcome::failure(err::invalidClipboardFormat);
  for (const char* type : pictureTypes)
    for (const QString& offer : offers) {
      if (offer.compare(QLatin1String(type), Qt::CaseInsensitive) != 0) continue;
      if (waited.elapsed() > longestWait) return why;
      auto image = decoded(data.data(offer));
      if (image.ok()) return image;
      why = image.outcome();
    }
  return why;
}

}  // namespace

Result<Pixels> QtClipboard::picture() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  if (!data) return Outcome::failure(err::invalidClipboardFormat);
  try {
    const auto image = offered(*data);
    if (!image.ok()) return image.outcome();
    return pixelsOf(image.value());
  } catch (const std::bad_alloc&) {
    return Outcome::failure(err::invalidPicture, "there is not enough memory for it");
  }
}

Outcome QtClipboard::putPicture(const Pixels& picture) {
  const QImage image(picture.rows.data(), picture.width, picture.height,
                     static_cast<qsizetype>(picture.rowBytes()), QImage::Format_BGR888);
  if (image.isNull()) return Outcome::failure(err::invalidPicture);
  QGuiApplication::clipboard()->setImage(image.copy());
  return {};
}

}  // namespace skv
