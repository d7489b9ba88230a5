#include "platform/desktop/qt_clipboard.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <new>

#include "platform/desktop/picture_decoder.h"
#include "platform/desktop/qt_pixels.h"

namespace skv {

namespace {

// What programs offer one picture as, those without loss first.
constexpr const char* pictureTypes[] = {"image/png", "image/bmp",  "image/x-bmp", "image/x-ms-bmp",
                                        "image/gif", "image/webp", "image/jpeg"};
// A program that does not answer is waited for by Qt, some seconds for each question. After this
// time it is asked no other.
constexpr qint64 patience = 4000;

// What this program has put there itself.
Result<Pixels> own(const QMimeData& data) {
  const auto image = qvariant_cast<QImage>(data.imageData());
  if (image.isNull()) return Outcome::failure(err::invalidClipboardFormat);
  if (qint64{image.width()} * image.height() > mostPixels)
    return Outcome::failure(err::invalidPicture, "more than 100 million pixels");
  return pixelsOf(image);
}

Result<Pixels> offered(const QMimeData& data) {
  QElapsedTimer waited;
  waited.start();
  const QStringList offers = data.formats();
  if (offers == QStringList{QStringLiteral("application/x-qt-image")}) return own(data);
  Outcome why = Outcome::failure(err::invalidClipboardFormat);
  for (const char* type : pictureTypes)
    for (const QString& offer : offers) {
      if (offer.compare(QLatin1String(type), Qt::CaseInsensitive) != 0) continue;
      if (waited.elapsed() > patience) return why;
      auto picture = decodePicture(data.data(offer), "the clipboard");
      if (picture.ok()) return picture;
      why = picture.outcome();
    }
  return why;
}

}  // namespace

Result<Pixels> QtClipboard::picture() {
  const QMimeData* data = QGuiApplication::clipboard()->mimeData();
  if (!data) return Outcome::failure(err::invalidClipboardFormat);
  try {
    return offered(*data);
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
