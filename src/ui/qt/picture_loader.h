// Pictures made ready for the screen, off the window's thread.
#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QThreadPool>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>

#include "platform/pictures.h"

namespace skv::ui::qt {

// A picture on screen: a file, or in its place a picture in memory, scaled to the room there is.
struct WantedPicture {
  std::string path;
  std::shared_ptr<const Pixels> pixels;
  QSize room;  // in the screen's own pixels
  bool operator==(const WantedPicture&) const = default;
  bool none() const { return path.empty() && !pixels; }
  bool sameSource(const WantedPicture& other) const {
    return path == other.path && pixels == other.pixels;
  }
};

struct LoadedPicture {
  WantedPicture wanted;
  std::string state;  // of the file that was read
  QImage image;       // null when the picture cannot be shown
};

class PictureLoader : public QObject {
 public:
  explicit PictureLoader(const PictureReader& reader);
  // Drops what waits and returns when what is being read has ended. Whoever asked has stopped it
  // before.
  ~PictureLoader() override;

  // Calls `ready` on the calling thread, later, unless `stop` was asked for before: with nothing
  // when the file is in the state `known`.
  using Ready = std::function<void(std::shared_ptr<const LoadedPicture>)>;
  void load(const WantedPicture& wanted, const std::string& known, const std::stop_token& stop,
            Ready ready);

 private:
  std::shared_ptr<LoadedPicture> loaded(const WantedPicture& wanted, const std::string& known,
                                        const std::stop_token& stop) const;

  const PictureReader& reader_;
  QThreadPool pool_;
};

}  // namespace skv::ui::qt
