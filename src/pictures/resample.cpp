#include "pictures/resample.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <functional>
#include <system_error>
#include <thread>
#include <vector>

namespace skv {

namespace {

// Where a row or column of the target lies in the source: between `first` and the one after it, at
// `share` of the way.
struct Place {
  int first;
  float share;
};

std::vector<Place> places(int from, int to) {
  const float scale = static_cast<float>(from - 1) / static_cast<float>(to);
  std::vector<Place> all(static_cast<std::size_t>(to));
  for (int i = 0; i < to; ++i) {
    const float at = scale * static_cast<float>(i);
    const int first = static_cast<int>(at);
    // The last one has none after it. It is the only one of its kind, or reached where single
    // precision is too coarse for the size.
    all[static_cast<std::size_t>(i)] =
        first < from - 1 ? Place{first, at - static_cast<float>(first)} : Place{from - 1, 0};
  }
  return all;
}

// A mix of two bytes is one again, also before it is rounded, so there is nothing to clamp. The sum
// with this number has no binary places left: the processor rounds it to the nearest integer, ties
// to the even one, and the lowest byte of the sum's pattern is the result.
constexpr float roundingTo8Bits = 12582912.0F;  // 1.5 * 2^23

inline std::uint8_t mixed(std::uint8_t a, std::uint8_t b, float share) {
  const float value = (1 - share) * static_cast<float>(a) + share * static_cast<float>(b);
  return static_cast<std::uint8_t>(std::bit_cast<std::uint32_t>(value + roundingTo8Bits));
}

// Both are loops that the compiler turns into vector instructions, twice where a processor may have
// wider ones; which it has is found out when the program starts.
#if defined(__x86_64__) && defined(__gnu_linux__) && !defined(__clang__)
#define FOR_EACH_PROCESSOR __attribute__((target_clones("arch=x86-64-v4", "avx2", "default")))
#else
#define FOR_EACH_PROCESSOR
#endif

FOR_EACH_PROCESSOR void mixLines(const std::uint8_t* __restrict a, const std::uint8_t* __restrict b,
                                 float share, std::size_t count, std::uint8_t* __restrict out) {
  for (std::size_t i = 0; i < count; ++i) out[i] = mixed(a[i], b[i], share);
}

FOR_EACH_PROCESSOR void mixColumns(const std::uint8_t* __restrict a,
                                   const std::uint8_t* __restrict b, const float* __restrict shares,
                                   std::size_t count, std::uint8_t* __restrict out) {
  for (std::size_t i = 0; i < count; ++i) out[i] = mixed(a[i], b[i], shares[i]);
}

// The tables of a picture, and what one thread needs to fill lines of the target with them.
class Resampler {
 public:
  Resampler(const PixelRows<const std::uint8_t>& source, const PixelRows<std::uint8_t>& target)
      : source_(source), target_(target), lines_(places(source.height, target.height)) {
    for (const Place& column : places(source.width, target.width)) {
      offsets_.push_back(std::uint32_t{3} * static_cast<std::uint32_t>(column.first));
      shares_.insert(shares_.end(), 3, column.share);
    }
  }

  struct Buffers {
    std::vector<std::uint8_t> line, left, right;
  };
  // Pixels are moved by four bytes, which reaches beyond the last one, and the last one has a right
  // one after it, of no share.
  Buffers buffers() const {
    return {std::vector<std::uint8_t>(static_cast<std::size_t>(source_.width) * 3 + 4),
            std::vector<std::uint8_t>(shares_.size() + 1),
            std::vector<std::uint8_t>(shares_.size() + 1)};
  }

  void fill(int from, int to, Buffers& buffers) const {
    for (int y = from; y < to; ++y) {
      const Place& place = lines_[static_cast<std::size_t>(y)];
      const std::uint8_t* upper =
          source_.bytes + static_cast<std::size_t>(place.first) * source_.rowBytes;
      const std::uint8_t* lower =
          place.first + 1 < source_.height ? upper + source_.rowBytes : upper;
      mixLines(upper, lower, place.share, static_cast<std::size_t>(source_.width) * 3,
               buffers.line.data());
      spread(buffers);
      mixColumns(buffers.left.data(), buffers.right.data(), shares_.data(), shares_.size(),
                 target_.bytes + static_cast<std::size_t>(y) * target_.rowBytes);
    }
  }

 private:
  // Puts the two pixels that each pixel of the target lies between where it is itself.
  void spread(Buffers& buffers) const {
    const std::uint8_t* const line = buffers.line.data();
    std::uint8_t* left = buffers.left.data();
    std::uint8_t* right = buffers.right.data();
    for (const std::uint32_t offset : offsets_) {
      std::memcpy(left, line + offset, 4);
      std::memcpy(right, line + offset + 3, 4);
      left += 3;
      right += 3;
    }
  }

  PixelRows<const std::uint8_t> source_;
  PixelRows<std::uint8_t> target_;
  std::vector<Place> lines_;
  std::vector<std::uint32_t> offsets_;  // of the left one of two columns, in bytes
  std::vector<float> shares_;           // of the right one, for each byte
};

constexpr std::size_t worthAThread = 200000;  // bytes of the target
constexpr int linesAtOnce = 16;

}  // namespace

void resampleRows(const PixelRows<const std::uint8_t>& source,
                  const PixelRows<std::uint8_t>& target) {
  const Resampler resampler(source, target);
  const std::size_t bytes = target.rowBytes * static_cast<std::size_t>(target.height);
  const std::size_t threads = std::clamp<std::size_t>(
      bytes / worthAThread, 1, std::max(1U, std::thread::hardware_concurrency()));
  std::vector<Resampler::Buffers> buffers(threads, resampler.buffers());
  // Each thread takes the next lines that nobody has taken.
  std::atomic<std::int64_t> next = 0;
  const auto work = [&](Resampler::Buffers& own) {
    for (;;) {
      const std::int64_t from = next.fetch_add(linesAtOnce);
      if (from >= target.height) return;
      const std::int64_t to = std::min<std::int64_t>(from + linesAtOnce, target.height);
      resampler.fill(static_cast<int>(from), static_cast<int>(to), own);
    }
  };
  std::vector<std::jthread> mates;
  mates.reserve(threads);
  try {
    while (mates.size() + 1 < threads) mates.emplace_back(work, std::ref(buffers[mates.size()]));
  } catch (const std::system_error&) {
    // No more threads to be had: those that there are do it.
  }
  work(buffers.back());
}

}  // namespace skv
