#include "sample/sample_formats.h"

#include <array>
#include <cmath>
#include <functional>
#include <numbers>

#include "sample/sample_files.h"

namespace skv::sample {
namespace {

void put16(std::string& out, std::uint32_t value) {
  out += static_cast<char>(value & 0xff);
  out += static_cast<char>((value >> 8) & 0xff);
}

void put32(std::string& out, std::uint32_t value) {
  put16(out, value & 0xffff);
  put16(out, value >> 16);
}

std::uint8_t shaded(std::uint8_t value, int by) {
  const int sum = value + by;
  return static_cast<std::uint8_t>(sum < 0 ? 0 : sum > 255 ? 255 : sum);
}

Paint shaded(Paint paint, int by) {
  return {shaded(paint.red, by), shaded(paint.green, by), shaded(paint.blue, by)};
}

using Pixel = std::function<Paint(int x, int y)>;

// `y` of the pixel function counts from the top.
std::string bmp(int width, int height, int bitsPerPixel, const Pixel& pixel) {
  const bool palette = bitsPerPixel == 8;
  const std::uint32_t stride = (static_cast<std::uint32_t>(width * bitsPerPixel) + 31) / 32 * 4;
  const std::uint32_t start = 54 + (palette ? 1024 : 0);
  const std::uint32_t size = start + stride * static_cast<std::uint32_t>(height);

  std::string out = "BM";
  out.reserve(size);
  put32(out, size);
  put32(out, 0);
  put32(out, start);
  put32(out, 40);
  put32(out, static_cast<std::uint32_t>(width));
  put32(out, static_cast<std::uint32_t>(height));
  put16(out, 1);
  put16(out, static_cast<std::uint32_t>(bitsPerPixel));
  for (const std::uint32_t field :
       {0u, stride * static_cast<std::uint32_t>(height), 2835u, 2835u, palette ? 256u : 0u, 0u})
    put32(out, field);
  // A palette of 6 levels for each colour, and greys behind them.
  for (std::uint32_t i = 0; palette && i < 256; ++i) {
    const std::uint32_t grey = i < 216 ? 0 : (i - 216) * 255 / 39;
    const std::uint32_t blue = i < 216 ? i % 6 * 51 : grey;
    const std::uint32_t green = i < 216 ? i / 6 % 6 * 51 : grey;
    const std::uint32_t red = i < 216 ? i / 36 * 51 : grey;
    put32(out, blue | green << 8 | red << 16);
  }
  for (int y = height - 1; y >= 0; --y) {
    const std::size_t row = out.size();
    for (int x = 0; x < width; ++x) {
      const Paint paint = pixel(x, y);
      if (palette) {
        out += static_cast<char>((paint.red + 25) / 51 * 36 + (paint.green + 25) / 51 * 6 +
                                 (paint.blue + 25) / 51);
      } else {
        out += static_cast<char>(paint.blue);
        out += static_cast<char>(paint.green);
        out += static_cast<char>(paint.red);
      }
    }
    out.append(row + stride - out.size(), '\0');
  }
  return out;
}

// Bytes that repeat in part, as tables of numbers do.
void fillBody(std::string& out, std::size_t size, Random& random) {
  std::uint32_t value = 0x3f800000;
  while (out.size() + 4 <= size) {
    const std::uint64_t chance = random.next();
    if (chance % 4 != 0) value += static_cast<std::uint32_t>(chance >> 44) & 0xffff;
    put32(out, value);
    if (chance % 32 == 0) value = 0x3f000000 + static_cast<std::uint32_t>(chance >> 40);
  }
  out.append(out.size() < size ? size - out.size() : 0, '\0');
}

}  // namespace

Paint paintOf(std::string_view name) {
  static constexpr std::array<Paint, 9> colours{{{0x1f, 0x4e, 0x9c},
                                                 {0xb8, 0x20, 0x2e},
                                                 {0x0e, 0x7a, 0x5a},
                                                 {0xe0, 0x8a, 0x12},
                                                 {0x5b, 0x2a, 0x86},
                                                 {0x12, 0x8a, 0xb0},
                                                 {0x6e, 0x7a, 0x1c},
                                                 {0x3a, 0x3f, 0x4a},
                                                 {0xc0, 0x4c, 0x86}}};
  return colours[Random(name).below(colours.size())];
}

std::string liveryBmp(Paint body, Paint accent, int bitsPerPixel, std::string_view seed) {
  Random random(seed);
  return bmp(256, 256, bitsPerPixel, [&](int x, int y) {
    // Wear: one pixel in three a little darker or lighter.
    const std::uint64_t chance = random.next();
    const int dirt = chance % 3 == 0 ? static_cast<int>(chance >> 60) - 8 : 0;
    if (y < 110) {  // fuselage
      const int round = 24 - std::abs(y - 55) * std::abs(y - 55) / 60;
      if (y > 44 && y < 54 && x % 12 > 3 && x % 12 < 9 && x > 30 && x < 226)
        return Paint{0x20, 0x28, 0x38};
      if (y > 60 + x / 24 && y < 74 + x / 24) return shaded(accent, dirt);
      return shaded(body, round + dirt);
    }
    if (y < 180) {  // wing: bare metal with panel lines
      const bool line = x % 43 == 0 || (y - 110) % 23 == 0;
      return shaded(Paint{0xb4, 0xb8, 0xbe}, (line ? -48 : 0) + dirt);
    }
    // Tail: the accent, an emblem in the body's colour.
    const int dx = x - 128, dy = y - 218;
    const int ring = dx * dx + dy * dy * 2;
    return shaded(ring < 700 || (ring > 1100 && ring < 1500) ? body : accent, dirt);
  });
}

std::string groundBmp(std::string_view seed) {
  Random random(seed);
  const std::uint32_t lean = 1 + random.below(5);
  return bmp(256, 256, 8, [&](int x, int y) {
    const int grain = static_cast<int>(random.below(40)) - 20;
    const std::uint32_t along =
        static_cast<std::uint32_t>(x) * lean + static_cast<std::uint32_t>(y);
    if (along % 211 < 26) return shaded(Paint{0x66, 0x66, 0x66}, grain / 4);
    if (x / 36 % 3 == 1 && y / 28 % 4 == 2) return shaded(Paint{0x99, 0x66, 0x4c}, grain / 2);
    return shaded(Paint{0x4c, 0x7a, 0x38}, grain);
  });
}

std::string panelBmp(int width, int height, std::string_view seed) {
  Random random(seed);
  const int pitch = width / 8;
  return bmp(width, height, 24, [&](int x, int y) {
    if (y < height / 3) return Paint{0, 0, 0};  // what the simulator shows the world through
    const int dx = x % pitch - pitch / 2, dy = (y - height / 3) % pitch - pitch / 2;
    const int far = dx * dx + dy * dy;
    const int radius = pitch * 2 / 5;
    if (far < radius * radius) {
      const bool needle = dx > 0 && std::abs(dy - dx / 3) < 2;
      return needle ? Paint{0xf0, 0xf0, 0xe8} : Paint{0x0c, 0x0c, 0x10};
    }
    if (far < (radius + 2) * (radius + 2)) return Paint{0xd0, 0xd0, 0xd0};
    return shaded(Paint{0x4a, 0x50, 0x56}, static_cast<int>(random.below(6)));
  });
}

std::string hummingWav(double seconds, double hertz, std::string_view seed) {
  constexpr std::uint32_t rate = 11025;
  const auto samples = static_cast<std::uint32_t>(seconds * rate);
  std::string out = "RIFF";
  out.reserve(44 + samples);
  put32(out, 36 + samples);
  out += "WAVEfmt ";
  put32(out, 16);
  put16(out, 1);  // PCM
  put16(out, 1);  // channels
  put32(out, rate);
  put32(out, rate);
  put16(out, 1);
  put16(out, 8);
  out += "data";
  put32(out, samples);
  Random random(seed);
  for (std::uint32_t i = 0; i < samples; ++i) {
    const double turn = 2 * std::numbers::pi * hertz * i / rate;
    const double level = 60 * std::sin(turn) + 25 * std::sin(2.01 * turn) + 12 * std::sin(5 * turn);
    out += static_cast<char>(
        static_cast<unsigned char>(128 + level + static_cast<double>(random.below(16))));
  }
  if (samples % 2 != 0) out += '\0';  // chunks have even length
  return out;
}

std::string modelMdl(std::size_t size, std::string_view seed) {
  Random random(seed);
  std::string out = "RIFF";
  put32(out, static_cast<std::uint32_t>(size - 8));
  out += "SAMPmodl";
  put32(out, static_cast<std::uint32_t>(size - 20));
  fillBody(out, size, random);
  return out;
}

std::string dynamicsAir(std::string_view title, std::string_view seed) {
  Random random(seed);
  std::string out;
  put16(out, 0x0100);
  put16(out, 60);
  std::string name(title.substr(0, 59));
  name.resize(60, '\0');
  out += name;
  // Records: a token, the length, a body of doubles and of small numbers.
  for (std::uint32_t token = 0x0101; token < 0x0140; ++token) {
    const std::uint32_t length = 8 * (4 + random.below(24));
    put16(out, token);
    put16(out, length);
    for (std::uint32_t i = 0; i < length / 8; ++i) {
      put32(out, random.below(3) == 0 ? static_cast<std::uint32_t>(random.next()) : 0);
      put32(out, 0x3ff00000 + random.below(0x10000));
    }
  }
  return out;
}

std::string gaugeGau(std::size_t size, std::string_view seed) {
  Random random(seed);
  std::string out = "MZ";
  put16(out, 0x90);
  out.append(56, '\0');
  put32(out, 0x80);
  out += "sample gauge, no program inside";
  out.resize(0x80, '\0');
  out.append("PE\0\0", 4);
  fillBody(out, size, random);
  return out;
}

std::string sceneryBgl(std::size_t size, std::string_view seed) {
  Random random(seed);
  std::string out;
  put16(out, 0x0001);
  for (int i = 0; i < 4; ++i) put32(out, 0x00400000 + random.below(0x200000));  // N, S, E, W
  out.resize(0x80, '\0');
  fillBody(out, size, random);
  return out;
}

std::string effectFx(std::string_view name) {
  return windowsText(
      "[Library Effect]\nLifetime=5\nVersion=1.00\nDisplay Name=" + std::string(name) +
      "\n\n[Properties]\n\n[Emitter.0]\nLifetime=0.00, 0.00\nDelay=0.00, 0.00\n"
      "Rate=24.00, 24.00\n\n[Particle.0]\nLifetime=4.00, 6.00\nType=19\n"
      "X Scale=0.50, 0.75\nColor Start=200, 200, 210, 90\nColor End=255, 255, 255, "
      "0\n");
}

}  // namespace skv::sample
