#include "ui/qt/picture_view.h"

#include <QContextMenuEvent>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

#include "ui/qt/icons.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {
// A larger picture is read smaller: no window shows more of it.
constexpr int mostPixels = 2400;
constexpr qreal corner = 6;
}  // namespace

PictureView::PictureView(Bindings& bindings, Form& form, Image& image, const FileSystem& files,
                         const QString& accessibleName, const QString& placeholder)
    : image_(image), files_(files), placeholder_(placeholder) {
  setAccessibleName(accessibleName);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  binding_ = new Binding(bindings, form, image, this, [this] { refresh(); });
}

void PictureView::setOverlay(QWidget* label) {
  auto* column = new QVBoxLayout(this);
  column->addStretch();
  column->addWidget(label, 0, Qt::AlignHCenter);
}

void PictureView::refresh() {
  load();
  setAccessibleDescription(picture_.isNull() ? tr("No picture") : shown(image_.picture));
  setFocusPolicy(image_.click || image_.mouseDown ? Qt::StrongFocus : Qt::NoFocus);
  setCursor(image_.click && !picture_.isNull() ? Qt::PointingHandCursor : Qt::ArrowCursor);
  setEnabled(image_.enabled);
  setVisible(image_.visible);
  update();
}

void PictureView::load() {
  if (image_.pixels.get())
    showMemory();
  else
    readFile();
}

void PictureView::readFile() {
  const auto place = files_.nativePath(image_.picture.get());
  const QString path =
      image_.picture == "" || !place.ok() ? QString() : QFile::decodeName(place.value().c_str());
  const QFileInfo file(path);
  const QDateTime time = path.isEmpty() ? QDateTime() : file.lastModified();
  const qint64 length = path.isEmpty() ? -1 : file.size();
  if (!shownPixels_ && loaded_ == image_.picture.get() && time == fileTime_ &&
      length == fileLength_)
    return;
  shownPixels_ = nullptr;
  loaded_ = image_.picture;
  fileTime_ = time;
  fileLength_ = length;
  scaled_ = {};
  picture_ = {};
  if (path.isEmpty()) return;
  QImageReader reader(path);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  if (const QSize size = reader.size(); size.width() > mostPixels || size.height() > mostPixels)
    reader.setScaledSize(size.scaled(mostPixels, mostPixels, Qt::KeepAspectRatio));
  picture_ = reader.read();
}

void PictureView::showMemory() {
  if (shownPixels_ == image_.pixels.get()) return;
  shownPixels_ = image_.pixels;
  loaded_.clear();
  scaled_ = {};
  picture_ = QImage(shownPixels_->rows.data(), shownPixels_->width, shownPixels_->height,
                    static_cast<qsizetype>(shownPixels_->rowBytes()), QImage::Format_BGR888);
}

void PictureView::paintEvent(QPaintEvent*) {
  if (binding_->attached()) load();
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(0.5);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(hasFocus() ? palette().color(QPalette::Link) : palette().color(QPalette::Mid));
  painter.setBrush(palette().color(QPalette::Base));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), corner, corner);
  if (picture_.isNull()) {
    paintPlaceholder(painter);
    return;
  }
  const qreal ratio = devicePixelRatio();
  const QSize room = (size() - QSize(6, 6)) * ratio;
  const QSize target = picture_.size().scaled(room, Qt::KeepAspectRatio);
  if (target.isEmpty()) return;
  if (scaled_.size() != target) {
    scaled_ = QPixmap::fromImage(
        picture_.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    scaled_.setDevicePixelRatio(ratio);
  }
  const QSizeF seen = scaled_.deviceIndependentSize();
  painter.drawPixmap(QPointF((width() - seen.width()) / 2, (height() - seen.height()) / 2),
                     scaled_);
}

void PictureView::paintPlaceholder(QPainter& painter) {
  const int side = qBound(32, qMin(width(), height()) * 2 / 5, 140);
  const QString words =
      loaded_.empty() && !shownPixels_ ? tr("No picture") : tr("This picture cannot be shown");
  const int line = fontMetrics().height();
  const bool withWords = height() > side + 3 * line;
  const int top = (height() - side - (withWords ? line + 8 : 0)) / 2;
  const QPixmap shape =
      drawing(placeholder_, {side, side}, devicePixelRatio(), palette().color(QPalette::Midlight));
  painter.drawPixmap((width() - side) / 2, top, shape);
  if (!withWords) return;
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawText(QRect(0, top + side + 8, width(), line), Qt::AlignCenter, words);
}

void PictureView::mousePressEvent(QMouseEvent* event) {
  binding_->fire(image_.mouseDown,
                 event->button() == Qt::RightButton ? MouseButton::right : MouseButton::left);
}

void PictureView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
    binding_->fire(image_.click);
}

void PictureView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return)
    binding_->fire(image_.click);
  else
    QWidget::keyPressEvent(event);
}

void PictureView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard)
    binding_->fire(image_.mouseDown, MouseButton::right);
}

}  // namespace skv::ui::qt
