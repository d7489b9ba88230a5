// The program's picture in memory, with direct access to its bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace skv {

// Somebody else's picture: rows from the top, each of blue, green, red for a pixel, and padded to
// `rowBytes`.
struct PictureView {
  int width = 0, height = 0;
  std::size_t rowBytes = 0;
  std::span<const std::uint8_t> rows;
};

// Where CopyToClipboard puts its picture and says what it cannot do.
struct ClipboardAccess {
  std::function<bool(const PictureView&)> put;  // whether the clipboard took it
  std::function<void(std::string_view)> tell;   // a box with an OK button and no icon
};

// Three bytes a pixel: blue, green, red. A scan line is padded to four bytes, and the bottom row of
// the picture comes first in memory. Places in the picture (x, y) are counted from its top left.
class cDIBSection {
 public:
  cDIBSection() = default;
  cDIBSection(cDIBSection&& other) noexcept;
  cDIBSection& operator=(cDIBSection&& other) noexcept;
  ~cDIBSection() = default;

  // Asked for a DIB, tells that it cannot and answers false.
  bool CopyToClipboard(bool asDIB, const ClipboardAccess& clipboard) const;
  // Replaces what the object held by a picture of the same, which stays empty when there is no
  // memory for it or when the view has less rows than it tells.
  void CreateFromPicture(const PictureView& picture);
  // Replaces what the object held by a black picture. False, and empty, for a size that has no
  // pixels, or of more bytes than a 32-bit number can tell or memory can hold.
  bool Create(int width, int height);
  int BytesPerScanLine() const { return width_ == 0 ? 0 : static_cast<int>(scanLine(width_)); }
  int Width() const { return width_; }
  int Height() const { return height_; }
  // Copies a part of the source to (0, 0) of this picture, as much as both have. A width or height
  // below 0 is that of this picture.
  void LoadPictureBlt(const cDIBSection& source, int sourceX = 0, int sourceY = 0, int width = -1,
                      int height = -1);
  // The other way, with the same rules.
  void PaintPicture(cDIBSection& target, int targetX = 0, int targetY = 0, int width = -1,
                    int height = -1, int sourceX = 0, int sourceY = 0) const;
  // Height() scan lines of BytesPerScanLine() bytes; nullptr when empty.
  std::uint8_t* DIBSectionBitsPtr() { return bits_.get(); }
  const std::uint8_t* DIBSectionBitsPtr() const { return bits_.get(); }
  // Fills the picture with noise: grey, or of green and red.
  void RandomiseBits(bool grey);
  void ClearUp();
  // Bilinear. None when there is no such size, or nothing to scale. The first argument is the
  // height.
  std::optional<cDIBSection> Resample(int newHeight, int newWidth) const;

 private:
  struct Free {
    void operator()(std::uint8_t* bytes) const { std::free(bytes); }
  };

  static constexpr std::int64_t scanLine(int width) {
    return (std::int64_t{width} * 3 + 3) & ~std::int64_t{3};
  }
  bool CreateDIB(int width, int height);
  // As Create, but the pixels are whatever the memory holds.
  bool createUnfilled(int width, int height);
  static bool isPossible(int width, int height);
  bool hold(void* bits, int width, int height);
  std::uint8_t* row(int fromTop) const;
  void ResampleInto(cDIBSection& target) const;

  std::unique_ptr<std::uint8_t[], Free> bits_;
  int width_ = 0, height_ = 0;
};

}  // namespace skv
