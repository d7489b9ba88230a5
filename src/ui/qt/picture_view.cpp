#include "ui/qt/picture_view.h"

#include <QContextMenuEvent>
#include <QDropEvent>
#include <QFile>
#include <QFileInfo>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QTemporaryDir>
#include <QUrl>
#include <QVBoxLayout>
#include <optional>

#include "ui/qt/flat_drawing.h"
#include "ui/qt/icons.h"
#include "ui/qt/text.h"

namespace skv::ui::qt {

namespace {

constexpr qreal corner = 6;
constexpr int border = 3;
// A picture that comes within it follows the old one without a gap.
constexpr std::chrono::milliseconds longestOutdated{120};

// The place on disk of the one file that is dragged; "" when it is anything else.
QString draggedFile(const QMimeData& data) {
  const QList<QUrl> urls = data.urls();
  return urls.size() == 1 ? urls.first().toLocalFile() : QString();
}

// A file of this machine by a Windows path. One with a name that Windows does not have, as
// "14:30.png", is reached by a link with another one, which goes with this object.
class ReachableFile {
 public:
  ReachableFile(const FileSystem& files, const QString& file) {
    const auto pathOf = [&files](const QString& native) {
      return files.windowsPath(QFile::encodeName(native).toStdString());
    };
    path_ = pathOf(file);
    if (!path_.empty()) return;
    QString name = QFileInfo(file).fileName();
    for (const char sign : "\\:*?\"<>|") name.replace(QLatin1Char(sign), QLatin1Char('_'));
    folder_.emplace();
    const QString link = folder_->filePath(name);
    if (QFile::link(file, link)) path_ = pathOf(link);
    // Whoever opens it says what is wrong.
    if (path_.empty()) path_ = QFile::encodeName(file).toStdString();
  }
  const std::string& path() const { return path_; }

 private:
  std::optional<QTemporaryDir> folder_;
  std::string path_;
};

}  // namespace

PictureView::PictureView(Bindings& bindings, Form& form, Image& image, const FileSystem& files,
                         const QString& accessibleName, const QString& placeholder)
    : image_(image), files_(files), loader_(bindings.pictures()), placeholder_(placeholder) {
  setAccessibleName(accessibleName);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  patience_.setSingleShot(true);
  patience_.setInterval(longestOutdated);
  QObject::connect(&patience_, &QTimer::timeout, this, [this] {
    outdated_ = true;
    picture_ = {};
    update();
  });
  binding_ = new Binding(bindings, form, image, this, [this] { refresh(); });
  // The loader may go before a window that was put away.
  binding_->onDetach = [this] { stopLoading(); };
}

PictureView::~PictureView() { stopLoading(); }

void PictureView::setOverlay(QWidget* label) {
  auto* column = new QVBoxLayout(this);
  column->addStretch();
  column->addWidget(label, 0, Qt::AlignHCenter);
}

void PictureView::refresh() {
  look();
  describe();
  setFocusPolicy(image_.click || image_.mouseDown ? Qt::StrongFocus : Qt::NoFocus);
  setAcceptDrops(image_.fileDropped != nullptr);
  setEnabled(image_.enabled);
  setVisible(image_.visible);
  update();
}

void PictureView::describe() {
  setAccessibleDescription(shown_.none()       ? tr("No picture")
                           : picture_.isNull() ? tr("This picture cannot be shown")
                           : shown_.pixels     ? tr("New picture")
                                               : shown(shown_.path));
  setCursor(image_.click && !picture_.isNull() ? Qt::PointingHandCursor : Qt::ArrowCursor);
}

void PictureView::stopLoading() {
  stop_.request_stop();
  loading_ = false;
  patience_.stop();
}

void PictureView::look() {
  const qreal ratio = devicePixelRatio();
  const WantedPicture now{image_.pixels.get() ? std::string() : image_.picture.get(), image_.pixels,
                          (size() - QSize(2 * border, 2 * border)) * ratio};
  if (now.none()) {
    stopLoading();
    if (!shown_.none() || outdated_) take({});
    return;
  }
  if (now.room.isEmpty() || (loading_ && now == wanted_)) return;
  stop_.request_stop();
  if (now.pixels && now == shown_) {
    stopLoading();
    return;
  }
  if (now.sameSource(shown_))
    patience_.stop();
  else if (!patience_.isActive() && !outdated_)
    patience_.start();
  loading_ = true;
  wanted_ = now;
  stop_ = std::stop_source();
  loader_.load(now, now == shown_ && !outdated_ ? shownState_ : std::string(), stop_.get_token(),
               [this](const auto& picture) { arrived(picture); });
}

void PictureView::arrived(const std::shared_ptr<const LoadedPicture>& picture) {
  loading_ = false;
  patience_.stop();
  if (picture) take(*picture);
}

void PictureView::take(const LoadedPicture& picture) {
  outdated_ = false;
  shown_ = picture.wanted;
  shownState_ = picture.state;
  picture_ = QPixmap::fromImage(picture.image);
  describe();
  update();
}

bool PictureView::event(QEvent* event) {
  // Another program may have had the screen, and changed the file.
  if (event->type() == QEvent::WindowActivate && binding_->attached()) look();
  return QWidget::event(event);
}

void PictureView::paintEvent(QPaintEvent*) {
  if (binding_->attached()) look();
  QPainter painter(this);
  if (!isEnabled()) painter.setOpacity(0.5);
  const QColor line = palette().color(hasFocus() ? QPalette::Link : QPalette::Mid);
  drawBox(painter, rect(), palette().color(QPalette::Base), {line, hasFocus() ? 2.0 : 1.0}, corner);
  if (picture_.isNull()) {
    if (!outdated_) paintPlaceholder(painter);
    return;
  }
  // Of another size than the room only until the one of that size has come.
  const qreal ratio = devicePixelRatio();
  const QSizeF room = size() - QSize(2 * border, 2 * border);
  const QSizeF seen = shown_.room == room.toSize() * ratio
                          ? QSizeF(picture_.size()) / ratio
                          : QSizeF(picture_.size()).scaled(room, Qt::KeepAspectRatio);
  const QPointF corners((width() - seen.width()) / 2, (height() - seen.height()) / 2);
  painter.drawPixmap(QRectF(corners, seen), picture_, QRectF(picture_.rect()));
}

void PictureView::paintPlaceholder(QPainter& painter) {
  const int side = qBound(32, qMin(width(), height()) * 2 / 5, 140);
  const QString words = shown_.none() ? tr("No picture") : tr("This picture cannot be shown");
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
  const int key = event->key();
  if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter)
    binding_->fire(image_.click);
  else
    QWidget::keyPressEvent(event);
}

void PictureView::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard)
    binding_->fire(image_.mouseDown, MouseButton::right);
}

void PictureView::dragEnterEvent(QDragEnterEvent* event) {
  if (!binding_->accepts() || draggedFile(*event->mimeData()).isEmpty()) return;
  // Whatever the other program offers: its file stays where it is.
  event->setDropAction(Qt::CopyAction);
  event->accept();
}

void PictureView::dropEvent(QDropEvent* event) {
  const QString file = draggedFile(*event->mimeData());
  if (file.isEmpty()) return;
  event->setDropAction(Qt::CopyAction);
  event->accept();
  // Later: the other program waits for the end of this event, and boxes may come up.
  QTimer::singleShot(0, this, [this, file] {
    const ReachableFile reachable(files_, file);
    binding_->fire(image_.fileDropped, reachable.path());
  });
}

}  // namespace skv::ui::qt
