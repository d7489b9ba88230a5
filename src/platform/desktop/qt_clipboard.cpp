#include "platform/desktop/qt_clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

#include "platform/desktop/qt_pixels.h"

namespace skv {

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
