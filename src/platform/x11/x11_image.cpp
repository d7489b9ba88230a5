#include "platform/x11/x11_image.h"

#include <array>

#include "base/colour_channel.h"

namespace skv {

namespace {

const xcb_visualtype_t* findVisual(const xcb_screen_t& screen, xcb_visualid_t id) {
  for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0;
       xcb_depth_next(&depths))
    for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
         xcb_visualtype_next(&visuals))
      if (visuals.data->visual_id == id) return visuals.data;
  return nullptr;
}

const xcb_format_t* findFormat(const xcb_setup_t& setup, int depth) {
  for (auto formats = xcb_setup_pixmap_formats_iterator(&setup); formats.rem > 0;
       xcb_format_next(&formats))
    if (formats.data->depth == depth) return formats.data;
  return nullptr;
}

Outcome noPicture(std::string_view why) { return Outcome::failure(err::invalidPicture, why); }

}  // namespace

std::optional<Pixels> pixelsFrom(std::span<const std::uint8_t> bytes, int width, int height,
                                 const X11PixelFormat& format) {
  const ColourChannel red(format.red), green(format.green), blue(format.blue);
  const std::size_t pixelBytes = static_cast<std::size_t>(format.bitsPerPixel) / 8;
  if (!red.usable() || !green.usable() || !blue.usable() || format.bitsPerPixel % 8 != 0 ||
      pixelBytes < 1 || pixelBytes > 4 || format.rowPadding < 8 || width < 1 || height < 1)
    return std::nullopt;
  const std::size_t padding = static_cast<std::size_t>(format.rowPadding) / 8;
  const std::size_t rowBytes =
      (static_cast<std::size_t>(width) * pixelBytes + padding - 1) / padding * padding;
  if (bytes.size() / rowBytes < static_cast<std::size_t>(height)) return std::nullopt;

  Pixels pixels{width, height, {}};
  pixels.rows.resize(pixels.rowBytes() * static_cast<std::size_t>(height));
  for (std::size_t y = 0; y < static_cast<std::size_t>(height); ++y) {
    const std::uint8_t* from = bytes.data() + y * rowBytes;
    std::uint8_t* to = pixels.rows.data() + y * pixels.rowBytes();
    for (int x = 0; x < width; ++x, from += pixelBytes, to += 3) {
      std::uint32_t pixel = 0;
      for (std::size_t i = 0; i < pixelBytes; ++i)
        pixel = pixel << 8 | from[format.lowByteFirst ? pixelBytes - 1 - i : i];
      to[0] = blue.of(pixel);
      to[1] = green.of(pixel);
      to[2] = red.of(pixel);
    }
  }
  return pixels;
}

Result<Pixels> imageOf(const X11Connection& server, xcb_drawable_t drawable, xcb_visualid_t visual,
                       const PixelRect& part) {
  const xcb_visualtype_t* look = findVisual(server.screen(), visual);
  if (!look || (look->_class != XCB_VISUAL_CLASS_TRUE_COLOR &&
                look->_class != XCB_VISUAL_CLASS_DIRECT_COLOR))
    return noPicture("the window has a table of colours");
  const X11Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(
      server.get(),
      xcb_get_image(server.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable,
                    static_cast<std::int16_t>(part.x), static_cast<std::int16_t>(part.y),
                    static_cast<std::uint16_t>(part.width), static_cast<std::uint16_t>(part.height),
                    ~std::uint32_t{0}),
      nullptr));
  const xcb_format_t* format = reply ? findFormat(server.setup(), reply->depth) : nullptr;
  if (!format) return noPicture("the window has gone");
  // A fourth channel is passed over: programs that draw with one fill it with whatever they like.
  const auto pixels = pixelsFrom({xcb_get_image_data(reply.get()),
                                  static_cast<std::size_t>(xcb_get_image_data_length(reply.get()))},
                                 part.width, part.height,
                                 {format->bits_per_pixel, format->scanline_pad,
                                  server.setup().image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST,
                                  look->red_mask, look->green_mask, look->blue_mask});
  if (!pixels) return noPicture("the window's pixels are of an unknown form");
  return *pixels;
}

}  // namespace skv
