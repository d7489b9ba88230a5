#include "pictures/cdib_section.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace skv::test {

using Bytes = std::vector<std::uint8_t>;

Bytes memoryOf(const cDIBSection& dib) {
  const std::uint8_t* const bits = dib.DIBSectionBitsPtr();
  return {bits, bits + dib.BytesPerScanLine() * dib.Height()};
}

// Each memory row without its padding.
std::vector<Bytes> rowsOf(const cDIBSection& dib) {
  std::vector<Bytes> rows;
  for (int y = 0; y < dib.Height(); ++y) {
    const std::uint8_t* const row = dib.DIBSectionBitsPtr() + y * dib.BytesPerScanLine();
    rows.emplace_back(row, row + dib.Width() * 3);
  }
  return rows;
}

cDIBSection ofMemory(int width, int height, const Bytes& memory) {
  cDIBSection dib;
  EXPECT_TRUE(dib.Create(width, height));
  EXPECT_EQ(static_cast<std::size_t>(dib.BytesPerScanLine() * height), memory.size());
  std::copy(memory.begin(), memory.end(), dib.DIBSectionBitsPtr());
  return dib;
}

TEST(CDIBSectionTest, EachPictureReplacesTheOneBeforeAndImpossibleSizesLeaveNone) {
  cDIBSection dib;
  const struct {
    int width, height, scanLine;
  } sizes[] = {{1, 3, 4},  {0, 1, 0},         {4, 2, 12},         {5, 1, 16},
               {3, -1, 0}, {50000, 50000, 0}, {2147483647, 1, 0}, {2, 2, 8}};
  for (const auto& [width, height, scanLine] : sizes) {
    SCOPED_TRACE(width);
    EXPECT_EQ(dib.Create(width, height), scanLine > 0);
    EXPECT_EQ(dib.BytesPerScanLine(), scanLine);
    EXPECT_EQ(dib.Width(), scanLine > 0 ? width : 0);
    EXPECT_EQ(dib.Height(), scanLine > 0 ? height : 0);
    if (scanLine > 0) {
      EXPECT_EQ(memoryOf(dib), Bytes(static_cast<std::size_t>(scanLine * height), 0));
      dib.RandomiseBits(true);
    } else {
      EXPECT_EQ(dib.DIBSectionBitsPtr(), nullptr);
    }
  }
}

TEST(CDIBSectionTest, APictureGoesInFromTheTopAndOutToTheClipboardAgain) {
  const Bytes rows = {1, 2, 3, 9, 9, 4, 5, 6};  // one pixel above another, the last without padding
  cDIBSection dib;
  dib.CreateFromPicture({1, 2, 5, rows});
  EXPECT_EQ(memoryOf(dib), (Bytes{4, 5, 6, 0, 1, 2, 3, 0}));
  Bytes put;
  const auto take = [&](const PictureView& picture) {
    put.assign(picture.rows.begin(), picture.rows.end());
    return picture.width == 1 && picture.height == 2 && picture.rowBytes == 4;
  };
  const ClipboardAccess clipboard{take, [](std::string_view) {}};
  EXPECT_TRUE(dib.CopyToClipboard(false, clipboard));
  EXPECT_EQ(put, (Bytes{1, 2, 3, 0, 4, 5, 6, 0}));
  dib.CreateFromPicture({1, 3, 5, rows});  // has fewer rows
  EXPECT_EQ(dib.DIBSectionBitsPtr(), nullptr);
  EXPECT_FALSE(dib.CopyToClipboard(false, clipboard));
}

// The values come from another program, which rounds each step of the sums to single precision.
TEST(CDIBSectionTest, ResamplesAsSinglePrecisionDoes) {
  const cDIBSection three = ofMemory(3, 2, {0,   255, 10, 100, 0,   11,  255, 7,  200, 99, 99, 99,
                                            255, 0,   60, 3,   128, 250, 9,   90, 1,   99, 99, 99});
  EXPECT_EQ(
      rowsOf(*three.Resample(3, 5)),
      (std::vector<Bytes>{{0, 255, 10, 40, 153, 10, 80, 51, 11, 131, 1, 49, 193, 4, 124},
                          {85, 170, 27, 78, 119, 53, 71, 68, 78, 89, 41, 100, 131, 38, 117},
                          {170, 85, 43, 116, 85, 94, 62, 85, 145, 46, 80, 149, 69, 71, 108}}));
  // Halves go to the even neighbour.
  const cDIBSection two = ofMemory(2, 2, {0, 1, 3, 1, 4, 255, 9, 9, 1, 0, 6, 2, 255, 0, 9, 9});
  EXPECT_EQ(rowsOf(*two.Resample(4, 4)),
            (std::vector<Bytes>{{0, 1, 3, 0, 2, 66, 0, 2, 129, 1, 3, 192},
                                {0, 1, 4, 0, 18, 51, 0, 34, 98, 1, 50, 144},
                                {0, 0, 4, 0, 32, 35, 1, 65, 66, 2, 98, 97},
                                {1, 0, 5, 1, 48, 20, 2, 96, 34, 2, 144, 49}}));
  EXPECT_EQ(rowsOf(*two.Resample(2, 2)), rowsOf(two));
  EXPECT_EQ(rowsOf(*ofMemory(1, 1, {1, 2, 3, 0}).Resample(2, 1)),
            (std::vector<Bytes>{{1, 2, 3}, {1, 2, 3}}));
  EXPECT_FALSE(two.Resample(0, 4));
  EXPECT_FALSE(cDIBSection().Resample(4, 4));
}

// Large enough for several threads.
TEST(CDIBSectionTest, ResamplesEveryLineOfALargePicture) {
  cDIBSection steps;
  ASSERT_TRUE(steps.Create(300, 256));
  for (int y = 0; y < 256; ++y)
    std::fill_n(steps.DIBSectionBitsPtr() + y * steps.BytesPerScanLine(), 900,
                static_cast<std::uint8_t>(y));
  const auto scaled = steps.Resample(1021, 701);
  ASSERT_TRUE(scaled);
  const auto rows = rowsOf(*scaled);
  for (int y = 0; y < 1021; ++y) {
    const auto value = static_cast<std::uint8_t>((255 * y * 2 + 1021) / (1021 * 2));
    ASSERT_EQ(rows[static_cast<std::size_t>(y)], Bytes(701 * 3, value)) << y;
  }
}

}  // namespace skv::test
