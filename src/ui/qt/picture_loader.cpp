#include "ui/qt/picture_loader.h"

#include <algorithm>
#include <utility>

namespace skv::ui::qt {

namespace {

// A picture that takes its time must not hold up the other ones of its window.
constexpr int threads = 2;

// As large as the room allows, in the screen's own format.
QImage forScreen(const Pixels& pixels, QSize room) {
  const QImage image(pixels.rows.data(), pixels.width, pixels.height,
                     static_cast<qsizetype>(pixels.rowBytes()), QImage::Format_BGR888);
  const QSize target = image.size().scaled(room, Qt::KeepAspectRatio).expandedTo({1, 1});
  if (target == image.size()) return image.convertToFormat(QImage::Format_RGB32);
  return image.scaled(target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
      .convertToFormat(QImage::Format_RGB32);
}

}  // namespace

PictureLoader::PictureLoader(const PictureReader& reader) : reader_(reader) {
  pool_.setMaxThreadCount(threads);
}

PictureLoader::~PictureLoader() {
  pool_.clear();
  pool_.waitForDone();
}

void PictureLoader::load(const WantedPicture& wanted, const std::string& known,
                         const std::stop_token& stop, Ready ready) {
  pool_.start([this, wanted, known, stop, ready = std::move(ready)]() mutable {
    if (stop.stop_requested()) return;
    const std::shared_ptr<const LoadedPicture> picture = loaded(wanted, known, stop);
    // Stopped on the same thread alone that looks here: what was stopped never arrives.
    QMetaObject::invokeMethod(
        this,
        [stop, picture, ready = std::move(ready)] {
          if (!stop.stop_requested()) ready(picture);
        },
        Qt::QueuedConnection);
  });
}

std::shared_ptr<LoadedPicture> PictureLoader::loaded(const WantedPicture& wanted,
                                                     const std::string& known,
                                                     const std::stop_token& stop) const {
  auto picture = std::make_shared<LoadedPicture>();
  picture->wanted = wanted;
  if (wanted.pixels) {
    picture->image = forScreen(*wanted.pixels, wanted.room);
    return picture;
  }
  // Before it is read: what changes meanwhile is another state the next time.
  picture->state = reader_.state(wanted.path);
  if (!picture->state.empty() && picture->state == known) return nullptr;
  const auto pixels =
      reader_.read(wanted.path, std::max(wanted.room.width(), wanted.room.height()), stop);
  if (pixels.ok()) picture->image = forScreen(pixels.value(), wanted.room);
  return picture;
}

}  // namespace skv::ui::qt
