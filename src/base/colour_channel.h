// One of the colours within the number that a pixel is.
#pragma once

#include <bit>
#include <cstdint>

namespace skv {

class ColourChannel {
 public:
  // The bits of the number that tell the colour; 0 for a colour that it does not tell.
  explicit ColourChannel(std::uint32_t mask)
      : shift_(mask ? std::countr_zero(mask) : 0), largest_(mask >> shift_) {}
  bool usable() const { return largest_ > 0; }
  // From 0 to 255. Of a usable channel only.
  std::uint8_t of(std::uint32_t pixel) const {
    const std::uint32_t value = pixel >> shift_ & largest_;
    return static_cast<std::uint8_t>(
        largest_ == 255 ? value : (std::uint64_t{value} * 255 + largest_ / 2) / largest_);
  }

 private:
  int shift_;
  std::uint32_t largest_;
};

}  // namespace skv
