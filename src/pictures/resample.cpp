#include "pictures/resample.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace skv {

namespace {

// Where a row or column of the target lies in the source: between `first` and `second`, at
// `share` of the way.
struct Between {
  int first, second;
  float share;
};

std::vector<Between> places(int from, int to) {
  const float scale = static_cast<float>(from - 1) / static_cast<float>(to);
  std::vector<Between> all(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i) {
    const float at = scale * static_cast<float>(i);
    const int first = std::min(static_cast<int>(at), from - 1);
    all[static_cast<std::size_t>(i)] = {first, std::min(first + 1, from - 1),
                                        at - static_cast<float>(first)};
  }
  return all;
}

float mix(float a, float b, float share) { return std::nearbyint((1 - share) * a + share * b); }

}  // namespace

void resampleRows(const PixelRows<const std::uint8_t>& source,
                  const PixelRows<std::uint8_t>& target) {
  const auto columns = places(source.width, target.width);
  const auto lines = places(source.height, target.height);
  for (int y = 0; y < target.height; ++y) {
    const Between& line = lines[static_cast<std::size_t>(y)];
    const std::uint8_t* upper =
        source.bytes + static_cast<std::size_t>(line.first) * source.rowBytes;
    const std::uint8_t* lower =
        source.bytes + static_cast<std::size_t>(line.second) * source.rowBytes;
    std::uint8_t* out = target.bytes + static_cast<std::size_t>(y) * target.rowBytes;
    for (const Between& column : columns) {
      for (int channel = 0; channel < 3; ++channel) {
        const int left = column.first * 3 + channel, right = column.second * 3 + channel;
        const float value = mix(mix(upper[left], lower[left], line.share),
                                mix(upper[right], lower[right], line.share), column.share);
        *out++ = static_cast<std::uint8_t>(std::clamp(value, 0.0F, 255.0F));
      }
    }
  }
}

}  // namespace skv
