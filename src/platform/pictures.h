// Pictures of the outside world: in files, in the desktop's clipboard, on the screen.
#pragma once

#include <stop_token>
#include <string>
#include <string_view>

#include "base/outcome.h"
#include "base/pixels.h"

namespace skv {

class PictureReader {
 public:
  virtual ~PictureReader() = default;
  // The picture of a file, by its content, whatever its name says: JPEG, PNG, WebP and GIF (the
  // first of its pictures), BMP (the simulator's textures, too) or WMF, upright and on white.
  // `path` is a Windows path. With `longestSide` above 0 it comes
  // no larger than that many pixels either way, which costs less than reading the whole; it is not
  // made larger. Fails with invalidPicture when the file is none of these, damaged, cut short or
  // larger than 100 million pixels, and with err::cancelled soon after `stop` was asked for. Any
  // thread may call.
  virtual Result<Pixels> read(std::string_view path, int longestSide = 0,
                              std::stop_token stop = {}) const = 0;
  // A text that is another one when another file stands at the path or the file has changed; ""
  // when there is none. Any thread may call.
  virtual std::string state(std::string_view path) const = 0;
};

class Clipboard {
 public:
  virtual ~Clipboard() = default;
  // Fails when the clipboard holds no picture.
  virtual Result<Pixels> picture() = 0;
  virtual Outcome putPicture(const Pixels& picture) = 0;
};

// The windows of other programs. Pixels of the screen are counted from its top left corner.
class Screen {
 public:
  virtual ~Screen() = default;
  // Brings the window with this title to the front, and waits until it is there when told to.
  // Fails when there is no such window, or when it does not come.
  virtual Outcome activate(std::string_view title, bool wait) = 0;
  // The window that activate() found last, with the frame that the desktop draws around it and
  // without what lies above it. It may be of any size, and gone or away again since: that fails.
  virtual Result<Pixels> captureActiveWindow() = 0;
};

}  // namespace skv
