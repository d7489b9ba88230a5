// What a window or a pixmap of the X server shows, as a picture.
#pragma once

#include <xcb/xcb.h>

#include <span>

#include "base/outcome.h"
#include "base/pixels.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_windows.h"

namespace skv {

// How a server stores the pixels of a picture.
struct X11PixelFormat {
  int bitsPerPixel = 32;
  int rowPadding = 32;  // rows end at a multiple of so many bits
  bool lowByteFirst = true;
  std::uint32_t red = 0xff0000, green = 0x00ff00, blue = 0x0000ff;
};

// None when the bytes are too few, or the pixels no colours but numbers of a table.
std::optional<Pixels> pixelsFrom(std::span<const std::uint8_t> bytes, int width, int height,
                                 const X11PixelFormat& format);

// A part of a window or pixmap that lies wholly within it.
Result<Pixels> imageOf(const X11Connection& server, xcb_drawable_t drawable, xcb_visualid_t visual,
                       const PixelRect& part);

}  // namespace skv
