#include "pictures/cdib_section.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <limits>
#include <new>
#include <random>
#include <utility>
#include <vector>

#include "pictures/resample.h"

namespace skv {

cDIBSection::cDIBSection(cDIBSection&& other) noexcept
    : bits_(std::move(other.bits_)),
      width_(std::exchange(other.width_, 0)),
      height_(std::exchange(other.height_, 0)) {}

cDIBSection& cDIBSection::operator=(cDIBSection&& other) noexcept {
  bits_ = std::move(other.bits_);
  width_ = std::exchange(other.width_, 0);
  height_ = std::exchange(other.height_, 0);
  return *this;
}

std::uint8_t* cDIBSection::row(int fromTop) const {
  return bits_.get() + static_cast<std::size_t>(height_ - 1 - fromTop) *
                           static_cast<std::size_t>(BytesPerScanLine());
}

bool cDIBSection::CopyToClipboard(bool asDIB, const ClipboardAccess& clipboard) const {
  if (asDIB) {
    clipboard.tell("I don't know how to put a DIB on the clipboard! Copy as bitmap instead!!!");
    return false;
  }
  if (!bits_) return false;
  const auto rowBytes = static_cast<std::size_t>(BytesPerScanLine());
  std::vector<std::uint8_t> rows;
  rows.reserve(rowBytes * static_cast<std::size_t>(height_));
  for (int y = 0; y < height_; ++y) rows.insert(rows.end(), row(y), row(y) + rowBytes);
  return clipboard.put({width_, height_, rowBytes, rows});
}

void cDIBSection::CreateFromPicture(const PictureView& picture) {
  ClearUp();
  if (picture.width <= 0 || picture.height <= 0) return;
  const std::size_t rowBytes = static_cast<std::size_t>(picture.width) * 3;
  const auto above = static_cast<std::size_t>(picture.height - 1);
  if (picture.rowBytes < rowBytes || picture.rows.size() < rowBytes ||
      (picture.rows.size() - rowBytes) / picture.rowBytes < above)
    return;
  if (!Create(picture.width, picture.height)) return;
  for (int y = 0; y < height_; ++y)
    std::memcpy(row(y), picture.rows.data() + static_cast<std::size_t>(y) * picture.rowBytes,
                rowBytes);
}

bool cDIBSection::Create(int width, int height) {
  ClearUp();
  return CreateDIB(width, height);
}

bool cDIBSection::CreateDIB(int width, int height) {
  if (!isPossible(width, height)) return false;
  return hold(
      std::calloc(static_cast<std::size_t>(height), static_cast<std::size_t>(scanLine(width))),
      width, height);
}

bool cDIBSection::createUnfilled(int width, int height) {
  ClearUp();
  if (!isPossible(width, height)) return false;
  const auto rowBytes = static_cast<std::size_t>(scanLine(width));
  if (!hold(std::malloc(static_cast<std::size_t>(height) * rowBytes), width, height)) return false;
  const std::size_t used = static_cast<std::size_t>(width) * 3;
  for (int y = 0; y < height; ++y) std::memset(row(y) + used, 0, rowBytes - used);
  return true;
}

bool cDIBSection::isPossible(int width, int height) {
  constexpr std::int64_t mostBytes = std::numeric_limits<std::int32_t>::max();
  return width > 0 && height > 0 && scanLine(width) <= mostBytes / height;
}

bool cDIBSection::hold(void* bits, int width, int height) {
  bits_.reset(static_cast<std::uint8_t*>(bits));
  if (!bits) return false;
  width_ = width;
  height_ = height;
  return true;
}

void cDIBSection::LoadPictureBlt(const cDIBSection& source, int sourceX, int sourceY, int width,
                                 int height) {
  source.PaintPicture(*this, 0, 0, width < 0 ? width_ : width, height < 0 ? height_ : height,
                      sourceX, sourceY);
}

namespace {

// One direction of a copy, cut to what both pictures have.
struct Stretch {
  std::int64_t from, to, length;

  void cut(int fromEnd, int toEnd) {
    const std::int64_t before = std::max<std::int64_t>({0, -from, -to});
    from += before;
    to += before;
    length = std::min({length - before, fromEnd - from, toEnd - to});
  }
};

}  // namespace

void cDIBSection::PaintPicture(cDIBSection& target, int targetX, int targetY, int width, int height,
                               int sourceX, int sourceY) const {
  Stretch x{sourceX, targetX, width < 0 ? width_ : width};
  Stretch y{sourceY, targetY, height < 0 ? height_ : height};
  x.cut(width_, target.width_);
  y.cut(height_, target.height_);
  if (x.length <= 0) return;
  // A picture that is copied into itself must not read what it has written.
  const bool fromBelow = y.to > y.from;
  for (std::int64_t i = 0; i < y.length; ++i) {
    const auto line = static_cast<int>(fromBelow ? y.length - 1 - i : i);
    std::memmove(target.row(static_cast<int>(y.to) + line) + x.to * 3,
                 row(static_cast<int>(y.from) + line) + x.from * 3,
                 static_cast<std::size_t>(x.length) * 3);
  }
}

void cDIBSection::RandomiseBits(bool grey) {
  std::mt19937 random(
      static_cast<std::uint32_t>(std::chrono::system_clock::now().time_since_epoch().count()));
  const auto pixel = [&](int x, int y) {
    return row(y) + std::size_t{3} * static_cast<unsigned>(x);
  };
  if (grey) {
    for (int y = 0; y < height_; ++y)
      for (int x = 0; x < width_; ++x)
        std::memset(pixel(x, y), static_cast<int>(random() >> 24), 3);
    return;
  }
  for (int x = 0; x < width_; ++x) {
    for (int y = 0; y < height_; ++y) {
      const auto noise = random();
      std::uint8_t* const bytes = pixel(x, y);
      bytes[0] = 0;
      bytes[1] = static_cast<std::uint8_t>(noise >> 24);
      bytes[2] = static_cast<std::uint8_t>(noise >> 16);
    }
  }
}

void cDIBSection::ClearUp() {
  bits_.reset();
  width_ = height_ = 0;
}

std::optional<cDIBSection> cDIBSection::Resample(int newHeight, int newWidth) const {
  cDIBSection target;
  if (!bits_ || !target.createUnfilled(newWidth, newHeight)) return std::nullopt;
  if (newWidth == width_ && newHeight == height_) {
    target.LoadPictureBlt(*this);
    return target;
  }
  try {
    ResampleInto(target);
  } catch (const std::bad_alloc&) {
    return std::nullopt;
  }
  return target;
}

void cDIBSection::ResampleInto(cDIBSection& target) const {
  resampleRows({bits_.get(), width_, height_, static_cast<std::size_t>(BytesPerScanLine())},
               {target.bits_.get(), target.width_, target.height_,
                static_cast<std::size_t>(target.BytesPerScanLine())});
}

}  // namespace skv
