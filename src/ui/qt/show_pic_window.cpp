// The viewer: a window that is its picture.
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPixmap>
#include <QScreen>
#include <QVBoxLayout>

#include "ui/qt/dialogs.h"
#include "ui/qt/form_window.h"
#include "ui/qt/screen_reader.h"
#include "ui/qt/scroll_room.h"

namespace skv::ui::qt {

namespace {

// A smaller window would not show its title.
constexpr QSize leastRoom(260, 120);

// The picture in the middle of the room: at its full size, or smaller where it has to be.
class FullPicture : public QWidget {
 public:
  FullPicture(Bindings& bindings, Form& form, Image& image) : image_(image) {
    setProperty(isGraphic, true);
    setAccessibleName(QObject::tr("Picture at full size"));
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    binding_ = new Binding(bindings, form, image, this, [this] { take(); });
    take();
  }

  QSize sizeHint() const override { return fitted(roomOnScreen(*screen())).expandedTo(leastRoom); }

 protected:
  void paintEvent(QPaintEvent*) override {
    const QSize seen = fitted(size());
    if (seen.isEmpty()) return;
    const qreal ratio = devicePixelRatio();
    const QSize target = (QSizeF(seen) * ratio).toSize();
    if (scaled_.size() != target)
      scaled_ = QPixmap::fromImage(
          picture_.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    scaled_.setDevicePixelRatio(ratio);
    const QPoint topLeft((width() - seen.width()) / 2, (height() - seen.height()) / 2);
    QPainter(this).drawPixmap(topLeft, scaled_);
  }
  void mouseReleaseEvent(QMouseEvent* event) override {
    if (event->button() == Qt::LeftButton) binding_->fire(image_.click);
  }
  void keyPressEvent(QKeyEvent* event) override {
    const int key = event->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
      binding_->fire(image_.click);
    else
      QWidget::keyPressEvent(event);
  }

 private:
  void take() {
    pixels_ = image_.pixels;
    scaled_ = {};
    picture_ = pixels_ ? QImage(pixels_->rows.data(), pixels_->width, pixels_->height,
                                static_cast<qsizetype>(pixels_->rowBytes()), QImage::Format_BGR888)
                       : QImage();
    update();
  }

  QSize fitted(QSize room) const {
    const QSize full = picture_.size();
    if (full.isEmpty() || full.boundedTo(room) == full) return full;
    return full.scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
  }

  Image& image_;
  Binding* binding_;
  std::shared_ptr<const Pixels> pixels_;  // picture_ looks at its bytes
  QImage picture_;
  QPixmap scaled_;
};

}  // namespace

QWidget* makeShowPicWindow(Bindings& bindings, FrmShowPic& form, const FileSystem&,
                           QWidget* owner) {
  auto* window = new FormDialog(owner);
  new FormWindow(bindings, form, *window);
  auto* column = new QVBoxLayout(window);
  column->setContentsMargins(0, 0, 0, 0);
  auto* picture = new FullPicture(bindings, form, form.imgShowPic);
  column->addWidget(picture);
  // Qt would keep it to two thirds of the screen.
  window->resize(picture->sizeHint());
  picture->setFocus();
  return window;
}

}  // namespace skv::ui::qt
