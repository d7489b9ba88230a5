// skyvault-wmf: draws a Windows metafile.
//
//   skyvault-wmf [LONGEST SIDE] <picture.wmf >picture.ppm
//
// The picture comes in its own size, no larger than that many pixels, on white. Nothing is written
// when the metafile cannot be drawn. Where the kernel cannot keep this process to the fonts, the
// picture has no letters.
#include <libwmf/api.h>
#include <libwmf/font.h>
#include <libwmf/gd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/wmf/confinement.h"
#include "platform/wmf/metafile.h"

namespace {

constexpr int mostSide = 2000;
constexpr std::size_t mostBytes = std::size_t{32} << 20;

std::vector<std::uint8_t> wholeInput() {
  std::vector<std::uint8_t> bytes;
  std::array<std::uint8_t, 65536> block;
  for (off_t at = 0; bytes.size() <= mostBytes;) {
    const auto got = ::pread(STDIN_FILENO, block.data(), block.size(), at);
    if (got <= 0) break;
    bytes.insert(bytes.end(), block.begin(), block.begin() + got);
    at += got;
  }
  return bytes;
}

bool writeAll(const std::string& bytes) {
  for (std::size_t done = 0; done < bytes.size();) {
    const auto count = ::write(STDOUT_FILENO, bytes.data() + done, bytes.size() - done);
    if (count <= 0) return false;
    done += static_cast<std::size_t>(count);
  }
  return true;
}

// Of what the metafile draws, when it does not say how large its picture is.
void measure(skv::Metafile& metafile, const wmfD_Rect& drawn, int longestSide) {
  const double width = drawn.BR.x - drawn.TL.x, height = drawn.BR.y - drawn.TL.y;
  if (!(width > 0 && height > 0)) return;
  const double scale = std::min(1.0, longestSide / std::max(width, height));
  metafile.width = std::max(1, static_cast<int>(width * scale));
  metafile.height = std::max(1, static_cast<int>(height * scale));
}

// What draws, for a metafile with fonts and without text: those are not looked for.
void drawWithoutLetters(wmfAPI* api) {
  wmf_gd_function(api);
  static_cast<wmfFontData*>(api->font_data)->map = [](wmfAPI*, wmfFont*) {};
}

// As pixels of red, green, blue behind their header; "" when it cannot be drawn.
std::string draw(skv::Metafile metafile, int longestSide, bool letters) {
  wmfAPI* api = nullptr;
  wmfAPI_Options options{};
  options.function = letters ? wmf_gd_function : drawWithoutLetters;
  if (wmf_api_create(&api, WMF_OPT_FUNCTION | WMF_OPT_NO_ERROR | WMF_OPT_IGNORE_NONFATAL,
                     &options) != wmf_E_None)
    return {};
  auto* const canvas = WMF_GD_GetData(api);
  if (wmf_mem_open(api, metafile.bytes.data(), static_cast<long>(metafile.bytes.size())) !=
          wmf_E_None ||
      wmf_scan(api, 0, &canvas->bbox) != wmf_E_None)
    return {};
  if (metafile.width > 0) {
    canvas->bbox.TL = {0, 0};
    canvas->bbox.BR = {static_cast<float>(metafile.width), static_cast<float>(metafile.height)};
  } else {
    measure(metafile, canvas->bbox, longestSide);
  }
  if (metafile.width <= 0) return {};
  canvas->type = wmf_gd_image;
  canvas->width = static_cast<unsigned>(metafile.width);
  canvas->height = static_cast<unsigned>(metafile.height);
  wmfD_Rect drawn = canvas->bbox;
  if (wmf_play(api, 0, &drawn) != wmf_E_None || !canvas->gd_image) return {};

  const int* pixels = wmf_gd_image_pixels(canvas->gd_image);
  const auto count = static_cast<std::size_t>(metafile.width) * metafile.height;
  std::string result =
      "P6\n" + std::to_string(metafile.width) + " " + std::to_string(metafile.height) + "\n255\n";
  result.reserve(result.size() + count * 3);
  for (const int* pixel = pixels; pixel != pixels + count; ++pixel)
    for (const int shift : {16, 8, 0}) result.push_back(static_cast<char>(*pixel >> shift));
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  const skv::Confinement confinement = skv::confine();
  if (confinement == skv::Confinement::failed) return 2;
  const bool letters = confinement == skv::Confinement::withFonts;
  const int wished = argc > 1 ? std::atoi(argv[1]) : 0;
  const int longestSide = wished > 0 ? std::min(wished, mostSide) : mostSide;
  const auto file = wholeInput();
  if (file.size() > mostBytes) return 1;
  const auto metafile = skv::readMetafile(file, longestSide, letters);
  if (!metafile) return 1;
  const std::string picture = draw(*metafile, longestSide, letters);
  // Not through the library's own end, which a hostile file may have spoiled.
  _exit(!picture.empty() && writeAll(picture) ? 0 : 1);
}
