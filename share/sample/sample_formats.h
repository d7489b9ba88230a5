// The simulator's kinds of files, drawn and filled by procedure: true in form as far as other
// programs look (BMP, WAV), plausible in weight and compressibility for the rest.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace skv::sample {

struct Paint {
  std::uint8_t red = 0, green = 0, blue = 0;
};
// A colour that goes with a name, strong enough to be told from another.
Paint paintOf(std::string_view name);

// 256 x 256: fuselage with windows and cheat line, wing, tail with an emblem. `seed` varies the
// dirt.
std::string liveryBmp(Paint body, Paint accent, int bitsPerPixel, std::string_view seed);
// The same for the ground: grass, taxiways, roofs.
std::string groundBmp(std::string_view seed);
// An instrument panel: a dark board with dials. width and height in pixels, 24 bits.
std::string panelBmp(int width, int height, std::string_view seed);

// Mono, 8 bits, 11,025 Hz: a hum with overtones.
std::string hummingWav(double seconds, double hertz, std::string_view seed);

// Aircraft model, flight dynamics, gauge library, scenery: a head with the marks of such a file,
// and a body of `size` bytes that packs to about half.
std::string modelMdl(std::size_t size, std::string_view seed);
std::string dynamicsAir(std::string_view title, std::string_view seed);
std::string gaugeGau(std::size_t size, std::string_view seed);
std::string sceneryBgl(std::size_t size, std::string_view seed);

std::string effectFx(std::string_view name);

}  // namespace skv::sample
